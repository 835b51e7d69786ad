// The table of a torrent search, as a list model.
#pragma once
#include "playback/StreamState.h"
#include "ui/torrents/RowSelection.h"
#include "ui/torrents/TableRows.h"
#include <QAbstractListModel>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace vellum::ui {

// Main thread. A change of results or order keeps the view's scroll position: rows come and go at
// the end, and all are told to have changed. What is selected is remembered by row key.
class TorrentTable : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The search screen's model has it.")
  Q_PROPERTY(int total READ total NOTIFY changed)
  Q_PROPERTY(QString countText READ countText NOTIFY changed)
  Q_PROPERTY(QStringList allSources READ allSources NOTIFY changed)
  // Where the keyboard stands: -1 and "" while that row is not shown.
  Q_PROPERTY(int currentRow READ currentRow NOTIFY currentChanged)
  Q_PROPERTY(QString currentKey READ currentKey NOTIFY currentChanged)

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
    NoteRole,        // under the title of a catalog item
    PlayableRole,    // whether there is anything to play
    PlayStateRole,   // "", "starting", "playing" or "failed"
    FailureRole,     // the sentence, when it failed
    HasVariantsRole, // whether there are other qualities to choose
    SelectedRole
  };
  enum PickKind { PickOnly, PickToggle, PickExtend };
  Q_ENUM(PickKind)

  explicit TorrentTable(QObject* parent = nullptr);

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

  const RowSelection& selection() const { return m_selection; }
  int currentRow() const { return m_currentRow; }
  QString currentKey() const { return m_currentRow < 0 ? QString() : m_selection.current(); }
  // Selects the shown row nearest to the index; nothing where there are no rows.
  Q_INVOKABLE void pick(int index, vellum::ui::TorrentTable::PickKind how);
  Q_INVOKABLE void pickAll();

Q_SIGNALS:
  void changed();
  void currentChanged();

private:
  const ResultRow& row(int index) const { return m_list.rows()[m_shown[std::size_t(index)]]; }
  RowSelection::Rows keys() const;
  void update();
  void selected();
  static QString noteOf(const TorrentResult& result);

  TableRows m_list;
  QTimer m_reading; // of the rows' texts, a turn of the loop for some of them
  ResultFilter m_filter;
  ResultOrder m_order;
  std::vector<std::size_t> m_shown;
  QHash<QString, RowState> m_states;
  RowSelection m_selection;
  int m_currentRow = -1;
};

} // namespace vellum::ui
