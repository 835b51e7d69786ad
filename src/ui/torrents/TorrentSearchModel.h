// The torrent search screen behind its controls.
#pragma once
#include "app/LinkOpener.h"
#include "playback/PlaybackCoordinator.h"
#include "providers/ProviderRegistry.h"
#include "providers/SearchAggregator.h"
#include "ui/torrents/TorrentTable.h"
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace vellum::ui {

// Main thread. Results live in the aggregator; filters and order live as long as this.
class TorrentSearchModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The window has one for each time that the screen is opened.")
  Q_PROPERTY(vellum::ui::TorrentTable* table READ table CONSTANT)
  Q_PROPERTY(QString query MEMBER m_query NOTIFY queryChanged)
  Q_PROPERTY(QString magnetText MEMBER m_magnetText NOTIFY magnetTextChanged)
  Q_PROPERTY(bool hasProviders READ hasProviders NOTIFY providersChanged)
  Q_PROPERTY(QVariantList statuses READ statuses NOTIFY statusesChanged) // {name, state, text}
  Q_PROPERTY(QVariantList banners READ banners NOTIFY statusesChanged)   // {text, offersSettings}
  Q_PROPERTY(bool searching READ isSearching NOTIFY emptyTextChanged)
  Q_PROPERTY(QString emptyText READ emptyText NOTIFY emptyTextChanged) // "" when there are rows
  Q_PROPERTY(QString resolution READ resolution WRITE setResolution NOTIFY filterChanged)
  Q_PROPERTY(QString format READ format WRITE setFormat NOTIFY filterChanged)
  Q_PROPERTY(int maxSizeGB READ maxSizeGB WRITE setMaxSizeGB NOTIFY filterChanged)
  Q_PROPERTY(QStringList hiddenSources READ hiddenSources NOTIFY filterChanged)
  Q_PROPERTY(int sortColumn READ sortColumn NOTIFY filterChanged)
  Q_PROPERTY(bool sortAscending READ sortAscending NOTIFY filterChanged)
  // What the filters offer: {text, value}
  Q_PROPERTY(QVariantList resolutions READ resolutions CONSTANT)
  Q_PROPERTY(QVariantList formats READ formats CONSTANT)
  Q_PROPERTY(QVariantList maxSizes READ maxSizes CONSTANT)

public:
  // As sortBy() knows the columns.
  enum Column {
    TitleColumn = int(ResultColumn::Title),
    SizeColumn = int(ResultColumn::Size),
    SeedsColumn = int(ResultColumn::Seeds),
    PeersColumn = int(ResultColumn::Peers),
    SourceColumn = int(ResultColumn::Source)
  };
  Q_ENUM(Column)

  // All outlive it.
  struct Services {
    SearchAggregator& aggregator;
    ProviderRegistry& registry;
    PlaybackCoordinator& playback;
    LinkOpener& links;
    Navigation& navigation;
    std::function<void(const QString&)> copy;  // onto the clipboard
    std::function<void(const QUrl&)> openPage; // in the browser; http and https only
  };
  explicit TorrentSearchModel(Services services);

  TorrentTable* table() { return &m_table; }
  bool hasProviders() const { return !m_services.registry.enabledProviders().empty(); }
  QVariantList statuses() const;
  QVariantList banners() const;
  bool isSearching() const { return m_services.aggregator.isSearching(); }
  QString emptyText() const;

  static QVariantList resolutions();
  static QVariantList formats();
  static QVariantList maxSizes();
  QString resolution() const { return m_table.filter().resolution; }
  QString format() const { return m_table.filter().format; }
  int maxSizeGB() const { return m_table.filter().maxSizeGB; }
  QStringList hiddenSources() const;
  int sortColumn() const { return int(m_table.order().column); }
  bool sortAscending() const { return m_table.order().ascending; }
  void setResolution(const QString& resolution);
  void setFormat(const QString& format);
  void setMaxSizeGB(int gigabytes);
  Q_INVOKABLE void showSource(const QString& source, bool shown);
  // By that column; by the same once more, the other way round.
  Q_INVOKABLE void sortBy(int column);

  Q_INVOKABLE void search();
  Q_INVOKABLE void inspectMagnet();
  Q_INVOKABLE void openSettings();
  // Rows are named by their keys.
  // Nothing for a row without anything to play.
  Q_INVOKABLE void play(const QString& key);
  // {id, text}; empty unless there is more than one.
  Q_INVOKABLE QVariantList variants(const QString& key) const;
  Q_INVOKABLE void playVariant(const QString& key, const QString& variantId);
  // What the menu of a row offers: {id, text}.
  Q_INVOKABLE QVariantList actions(const QString& key) const;
  Q_INVOKABLE void act(const QString& key, const QString& actionId);

Q_SIGNALS:
  void queryChanged();
  void magnetTextChanged();
  void providersChanged();
  void statusesChanged();
  void emptyTextChanged();
  void filterChanged();

private:
  struct Action;
  std::vector<Action> actionsOf(const TorrentResult& result) const;
  template <class Change>
  void changeFilter(Change change);
  void playResult(const TorrentResult& result);
  void showItem(const TorrentResult& result) const;

  Services m_services;
  TorrentTable m_table;
  QString m_query;
  QString m_magnetText;
};

} // namespace vellum::ui
