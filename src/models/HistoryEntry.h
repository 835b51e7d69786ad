// One row of the watch history, and its JSON. Plain value; any thread.
#pragma once
#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <optional>
#include <vector>

namespace vellum {

struct HistoryEntry {
  QString key;    // itemID, "|", and the file's name or path: what makes two rows the same
  QString itemID; // a torrent's info hash, or a catalog item's id
  QString title;
  QString source;                   // a magnet link, a file path, or an address
  bool isLocal = false;             // source is a file path
  std::optional<QString> thumbnail; // an address
  double position = 0;              // seconds
  double duration = 0;              // seconds, 0 while unknown
  double lastPlayed = 0;            // seconds since 2001-01-01 00:00:00 UTC
  bool operator==(const HistoryEntry&) const = default;
};

using HistoryEntries = std::vector<HistoryEntry>; // newest first

// A date as a row keeps it.
double secondsSince2001(const QDateTime& time);

// A JSON array in the order given, without the key of a thumbnail that is not there. Nothing if a
// number is infinite or none, which JSON cannot say.
std::optional<QByteArray> toJson(const HistoryEntries& history);
// Nothing if any row is bad: a key is missing, the thumbnail's excepted, or has another type.
std::optional<HistoryEntries> historyFromJson(const QByteArray& bytes);

} // namespace vellum
