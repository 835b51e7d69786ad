#include "ui/manage/LibraryModel.h"
#include "base/Fmt.h"
#include "base/Text.h"
#include <QFileInfo>

namespace vellum::ui {

LibraryModel::LibraryModel(LibraryStore& library, DownloadManager& downloads,
                           PlayEntryPoints& entries)
    : m_library(library), m_downloads(downloads), m_entries(entries) {
  connect(&library, &LibraryStore::historyChanged, this, &LibraryModel::updateHistory);
  connect(&downloads, &DownloadManager::savedChanged, this, &LibraryModel::updateSaved);
  updateSaved();
  updateHistory();
}

void LibraryModel::updateSaved() {
  std::vector<SavedRowItem> rows;
  for (const SavedFile& file : m_downloads.saved())
    rows.push_back(
        {file.url.toString(), file.url.fileName(QUrl::FullyDecoded), formatByteCount(file.size)});
  m_saved.setRows(rows);
  Q_EMIT changed();
}

void LibraryModel::updateHistory() {
  std::vector<HistoryRowItem> rows;
  for (const HistoryEntry& entry : m_library.history()) {
    const double watched = entry.duration > 0 ? entry.position / entry.duration : 0;
    rows.push_back({entry.key, entry.title,
                    tr("%1 / %2").arg(Fmt::time(entry.position), Fmt::time(entry.duration)),
                    std::clamp(watched, 0.0, 1.0), entry.position > 0});
  }
  m_history.setRows(rows);
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
