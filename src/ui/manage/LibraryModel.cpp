#include "ui/manage/LibraryModel.h"
#include "base/Fmt.h"
#include "base/Text.h"
#include <QFileInfo>

namespace vellum::ui {

namespace {

LibraryRowItem rowOf(const SavedFile& file) {
  return {.id = file.url.toString(),
          .group = QStringLiteral("saved"),
          .title = oneLine(file.url.fileName(QUrl::FullyDecoded)),
          .detail = formatByteCount(file.size)};
}

LibraryRowItem rowOf(const HistoryEntry& entry) {
  const double watched = entry.duration > 0 ? entry.position / entry.duration : 0;
  return {.id = entry.key,
          .group = QStringLiteral("history"),
          .title = oneLine(entry.title),
          .detail =
              LibraryModel::tr("%1 / %2").arg(Fmt::time(entry.position), Fmt::time(entry.duration)),
          .progress = std::clamp(watched, 0.0, 1.0),
          .resumes = entry.position > 0};
}

} // namespace

LibraryModel::LibraryModel(LibraryStore& library, DownloadManager& downloads,
                           PlayEntryPoints& entries)
    : m_library(library), m_downloads(downloads), m_entries(entries) {
  connect(&library, &LibraryStore::historyChanged, this, &LibraryModel::update);
  connect(&downloads, &DownloadManager::savedChanged, this, &LibraryModel::update);
  update();
}

void LibraryModel::update() {
  std::vector<LibraryRowItem> rows;
  for (const SavedFile& file : m_downloads.saved()) rows.push_back(rowOf(file));
  for (const HistoryEntry& entry : m_library.history()) rows.push_back(rowOf(entry));
  m_rows.setRows(rows);
  Q_EMIT changed();
}

void LibraryModel::playSaved(const QString& key) {
  for (const SavedFile& file : m_downloads.saved())
    if (file.url.toString() == key) return m_entries.playLocal(QUrl(file.url));
}

void LibraryModel::resume(const QString& key) {
  if (const auto entry = m_library.entry(key)) m_entries.resume(*entry);
}

// By value in effect: the row that names the key goes with it.
void LibraryModel::remove(const QString& key) { m_library.remove(QString(key)); }

} // namespace vellum::ui
