#include "ui/catalog/ItemFiles.h"
#include "base/Text.h"
#include "ui/catalog/MediaRows.h"

namespace vellum::ui {

ItemContents::ItemContents(const ArchiveDetails& details)
    : item(details.item), restricted(details.restricted), subtitles(details.subtitles()),
      torrent(details.torrent()) {
  for (const ArchiveFile& file : details.playable()) rows.push_back({file, true});
  const bool plays = !rows.empty();
  for (const ArchiveFile& file : details.otherVideos()) rows.push_back({file, false});
  warning = restricted     ? ItemWarning::Restricted
            : rows.empty() ? ItemWarning::NoVideo
            : !plays       ? ItemWarning::DownloadOnly
                           : ItemWarning::None;
}

int ItemFiles::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

QVariant ItemFiles::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= count()) return {};
  const ItemContents::Row& row = m_contents.rows[std::size_t(index.row())];
  switch (role) {
  case Qt::DisplayRole:
  case NameRole: return oneLine(row.file.name);
  case FormatRole: return oneLine(row.file.format);
  case SizeRole: return row.file.size ? formatByteCount(*row.file.size) : QString();
  case GroupRole: return group(row);
  case CanPlayRole: return canPlay(index.row());
  default: return {};
  }
}

QHash<int, QByteArray> ItemFiles::roleNames() const {
  return {{NameRole, "name"},
          {FormatRole, "format"},
          {SizeRole, "size"},
          {GroupRole, "group"},
          {CanPlayRole, "canPlay"}};
}

QString ItemFiles::group(const ItemContents::Row& row) const {
  if (row.isPlayable) return tr("Play");
  return m_contents.restricted ? QString() : tr("Other video files (download only)");
}

void ItemFiles::setContents(ItemContents contents) {
  beginResetModel();
  m_contents = std::move(contents);
  endResetModel();
  Q_EMIT countChanged();
}

const ArchiveFile* ItemFiles::file(int row) const {
  return row < 0 || row >= count() ? nullptr : &m_contents.rows[std::size_t(row)].file;
}

bool ItemFiles::canPlay(int row) const {
  return file(row) != nullptr && m_contents.rows[std::size_t(row)].isPlayable &&
         !m_contents.restricted;
}

} // namespace vellum::ui
