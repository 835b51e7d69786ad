#include "storage/LibraryStore.h"
#include "base/ReplaceFile.h"
#include <QFile>
#include <QFileInfo>
#include <algorithm>

namespace vellum {

namespace {

bool isToContinue(const HistoryEntry& entry) {
  return entry.position > LibraryStore::kNotBegun &&
         (!(entry.duration > 0) || entry.position < LibraryStore::kFinished * entry.duration);
}

auto hasKey(const QString& key) {
  return [key](const HistoryEntry& entry) { return entry.key == key; };
}

} // namespace

LibraryStore::LibraryStore(QString file) : m_file(std::move(file)) { load(); }

void LibraryStore::load() {
  QFile file(m_file);
  // What is no plain file, as a pipe, may have no end.
  if (!QFileInfo(m_file).isFile() || !file.open(QIODevice::ReadOnly)) return;
  if (file.size() > kLargestFile) return;
  m_history = historyFromJson(file.read(file.size())).value_or(HistoryEntries());
}

void LibraryStore::publishAndSave() {
  Q_EMIT historyChanged();
  const auto json = toJson(m_history);
  if (!json) return;
  replaceFile(m_file, *json, Privacy::OwnerOnly);
}

HistoryEntries LibraryStore::continueWatching() const {
  HistoryEntries rows;
  std::copy_if(m_history.begin(), m_history.end(), std::back_inserter(rows), isToContinue);
  return rows;
}

std::optional<HistoryEntry> LibraryStore::entry(const QString& key) const {
  const auto found = std::find_if(m_history.begin(), m_history.end(), hasKey(key));
  return found == m_history.end() ? std::nullopt : std::optional(*found);
}

void LibraryStore::record(const HistoryEntry& entry) {
  // A row of ours may be handed in.
  HistoryEntry row = entry;
  std::erase_if(m_history, hasKey(row.key));
  m_history.insert(m_history.begin(), std::move(row));
  if (m_history.size() > kMostRows) m_history.resize(kMostRows);
  publishAndSave();
}

void LibraryStore::updateProgress(const QString& key, double position, double duration) {
  const auto found = std::find_if(m_history.begin(), m_history.end(), hasKey(key));
  if (found == m_history.end()) return;
  found->position = position;
  if (duration > 0) found->duration = duration;
  publishAndSave();
}

void LibraryStore::remove(const QString& key) {
  std::erase_if(m_history, hasKey(key));
  publishAndSave();
}

void LibraryStore::clear() {
  m_history.clear();
  publishAndSave();
}

} // namespace vellum
