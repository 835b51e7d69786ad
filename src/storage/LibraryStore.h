// What was played and how far, kept in one small JSON file.
#pragma once
#include "models/HistoryEntry.h"
#include <QObject>

namespace vellum {

// Main thread, where it also reads and writes. Every change replaces the file as a whole,
// atomically; a failure to write is passed over, and the list in memory stays. A file that cannot
// be read counts as empty and is left alone until then.
class LibraryStore final : public QObject {
  Q_OBJECT

public:
  static constexpr std::size_t kMostRows = 200;
  static constexpr qint64 kLargestFile = 32 * 1024 * 1024; // bytes
  // Seconds: up to here a position counts as not begun.
  static constexpr double kNotBegun = 10.0;
  // Of a known duration: from here on a position counts as finished.
  static constexpr double kFinished = 0.95;

  // Reads the file; makes none.
  explicit LibraryStore(QString file);

  const HistoryEntries& history() const { return m_history; } // newest first
  // The rows that were begun and are not nearly finished, in the same order.
  HistoryEntries continueWatching() const;
  std::optional<HistoryEntry> entry(const QString& key) const;

  // Puts a row in front, in place of those with its key, and drops what exceeds kMostRows.
  void record(const HistoryEntry& entry);
  // Seconds. A duration of 0 leaves the known one. Does nothing, not even write, for an unknown
  // key.
  void updateProgress(const QString& key, double position, double duration);
  void remove(const QString& key);
  void clear();

Q_SIGNALS:
  void historyChanged();

private:
  void load();
  void publishAndSave();

  const QString m_file;
  HistoryEntries m_history;
};

} // namespace vellum
