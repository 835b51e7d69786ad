// The home screen: its shelves, and what stands in place of those that are not there.
#pragma once
#include "app/CatalogState.h"
#include "app/PlayEntryPoints.h"
#include "storage/LibraryStore.h"
#include "ui/catalog/MediaRows.h"

namespace vellum::ui {

// Main thread. A shelf without rows is not shown.
class HomeModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The window has the only one.")
  Q_PROPERTY(vellum::ui::MediaList* continueWatching READ continueWatching CONSTANT)
  Q_PROPERTY(vellum::ui::MediaList* featured READ featured CONSTANT)
  Q_PROPERTY(vellum::ui::MediaList* popular READ popular CONSTANT)
  Q_PROPERTY(vellum::ui::MediaList* recentlyViewed READ recentlyViewed CONSTANT)
  Q_PROPERTY(vellum::ui::MediaList* local READ local CONSTANT)
  Q_PROPERTY(QStringList suggestions READ suggestions NOTIFY catalogChanged)
  Q_PROPERTY(bool loading READ isLoading NOTIFY catalogChanged)      // nothing is featured yet
  Q_PROPERTY(bool empty READ isEmpty NOTIFY catalogChanged)          // it answered with nothing
  Q_PROPERTY(QString errorText READ errorText NOTIFY catalogChanged) // "" unless shown

public:
  // All outlive it.
  struct Services {
    CatalogState& catalog;
    LibraryStore& library;
    PlayEntryPoints& entries;
    Navigation& navigation;
    std::function<LocalVideos()> saved; // those on disk, the newest first
  };
  explicit HomeModel(Services services);

  MediaList* continueWatching() { return &m_continueWatching; }
  MediaList* featured() { return &m_featured; }
  MediaList* popular() { return &m_popular; }
  MediaList* recentlyViewed() { return &m_recentlyViewed; }
  MediaList* local() { return &m_local; }
  const QStringList& suggestions() const { return m_suggestions; }
  bool isLoading() const;
  bool isEmpty() const;
  QString errorText() const;

  // When the screen appears, and to try again.
  Q_INVOKABLE void load() { m_services.catalog.loadHome(); }
  Q_INVOKABLE void searchFor(const QString& suggestion);

public Q_SLOTS:
  void savedChanged();

Q_SIGNALS:
  void catalogChanged();

private:
  void catalogTold();
  void historyTold();
  void openItem(const QString& id);
  void resume(const QString& key);

  Services m_services;
  MediaList m_continueWatching;
  MediaList m_featured;
  MediaList m_popular;
  MediaList m_recentlyViewed;
  MediaList m_local;
  QStringList m_suggestions;
};

} // namespace vellum::ui
