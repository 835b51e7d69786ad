// The table of a torrent search, as a list model.
#pragma once
#include "playback/StreamState.h"
#include "ui/torrents/TableRows.h"
#include <QAbstractListModel>

namespace vellum::ui {

// Main thread. A change of results or order keeps the view's scroll position: rows come and go at
// the end, and all are told to have changed. What is selected is remembered by row key.
class TorrentTable final : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(int total READ total NOTIFY changed)
  Q_PROPERTY(QString countText READ countText NOTIFY changed)
  Q_PROPERTY(QStringList allSources READ allSources NOTIFY changed)

public:
  enum Role {
    KeyRole = Qt::UserRole, // the row's key, by which playing and selection know it
    TitleRole,
    SizeRole,
    SeedsRole,
    PeersRole,
    QualityRole,
    FormatRole,
    SourceRole,
    NoteRole,      // under the title of a catalog item
    PlayableRole,  // whether there is anything to play
    PlayStateRole, // "", "starting", "playing" or "failed"
    FailureRole    // the sentence, when it failed
  };

  using QAbstractListModel::QAbstractListModel;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  void setResults(const TorrentResults& results);
  void setRowStates(const QHash<QString, RowState>& states);
  void setFilter(const ResultFilter& filter);
  void setOrder(const ResultOrder& order);
  const ResultFilter& filter() const { return m_filter; }
  const ResultOrder& order() const { return m_order; }

  int total() const { return int(m_list.rows().size()); }
  QString countText() const; // "12 of 345 results"
  QStringList allSources() const { return m_list.allSources(); }
  // The shown row with that key, or -1.
  Q_INVOKABLE int indexOf(const QString& key) const;
  const TorrentResult* result(const QString& key) const; // nothing for an unknown key

Q_SIGNALS:
  void changed();

private:
  const ResultRow& row(int index) const { return m_list.rows()[m_shown[std::size_t(index)]]; }
  void update();
  static QString noteOf(const TorrentResult& result);

  TableRows m_list;
  ResultFilter m_filter;
  ResultOrder m_order;
  std::vector<std::size_t> m_shown;
  QHash<QString, RowState> m_states;
};

} // namespace vellum::ui
