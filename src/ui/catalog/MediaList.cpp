#include "ui/catalog/MediaList.h"
#include <QSet>
#include <algorithm>

namespace vellum::ui {

int MediaList::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

QVariant MediaList::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= count()) return {};
  const MediaRow& row = m_rows[std::size_t(index.row())];
  switch (role) {
  case KeyRole: return row.key;
  case Qt::DisplayRole:
  case TitleRole: return row.title;
  case SubtitleRole: return row.subtitle;
  case PosterRole: return row.poster;
  case ProgressRole: return row.progress;
  default: return {};
  }
}

QHash<int, QByteArray> MediaList::roleNames() const {
  return {{KeyRole, "key"},
          {TitleRole, "title"},
          {SubtitleRole, "subtitle"},
          {PosterRole, "poster"},
          {ProgressRole, "progress"}};
}

void MediaList::setRows(MediaRows rows) {
  if (rows == m_rows) return;
  const int before = count();
  removeOthers(rows);
  if (m_rows.empty()) {
    // Something else altogether: to be looked at from its beginning.
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
  } else {
    for (std::size_t i = 0; i < rows.size(); ++i) place(int(i), rows[i]);
    if (m_rows.size() > rows.size()) {
      beginRemoveRows({}, int(rows.size()), count() - 1);
      m_rows.resize(rows.size());
      endRemoveRows();
    }
  }
  if (count() != before) Q_EMIT countChanged();
}

void MediaList::removeOthers(const MediaRows& wanted) {
  QSet<QString> keys;
  for (const MediaRow& row : wanted) keys.insert(row.key);
  for (int i = count() - 1; i >= 0; --i) {
    if (keys.contains(m_rows[std::size_t(i)].key)) continue;
    beginRemoveRows({}, i, i);
    m_rows.erase(m_rows.begin() + i);
    endRemoveRows();
  }
}

// Everything before `at` is as it shall be.
void MediaList::place(int at, const MediaRow& row) {
  const auto here = m_rows.begin() + at;
  const auto found =
      std::find_if(here, m_rows.end(), [&](const MediaRow& one) { return one.key == row.key; });
  if (found == m_rows.end()) {
    beginInsertRows({}, at, at);
    m_rows.insert(here, row);
    endInsertRows();
    return;
  }
  if (found != here) {
    const int from = int(found - m_rows.begin());
    beginMoveRows({}, from, from, {}, at);
    std::rotate(here, found, found + 1);
    endMoveRows();
  }
  if (*here == row) return;
  *here = row;
  Q_EMIT dataChanged(index(at), index(at));
}

void MediaList::open(int row) const {
  if (row < 0 || row >= count()) return;
  const QString key = m_rows[std::size_t(row)].key; // the row may go meanwhile
  m_open(key);
}

} // namespace vellum::ui
