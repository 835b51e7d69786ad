// One row of a torrent search. Plain value; any thread.
#pragma once
#include <QString>
#include <QStringList>
#include <QUrl>
#include <optional>
#include <vector>

namespace vellum {

// After merging, one title that several providers returned.
struct TorrentResult {
  QString id; // the info hash where there is one
  QString title;
  std::optional<qint64> size; // bytes
  std::optional<qint64> seeders;
  std::optional<qint64> leechers;
  QStringList sources;              // names of the providers
  std::optional<QString> infoHash;  // lower case
  std::optional<QString> magnet;    // as text: a QUrl would rewrite some of its escapes
  std::optional<QUrl> torrentURL;   // of a .torrent file
  std::optional<QString> archiveID; // of a catalog item; such a row is no torrent
  std::optional<QUrl> pageURL;
  std::optional<QString> year;
  std::optional<QString> license;   // an address, as text
  std::optional<QString> baseTitle; // what the qualities of one film share
  bool operator==(const TorrentResult&) const = default;

  // To sort by a column with gaps: what is absent comes before every real value.
  qint64 sizeSort() const { return size.value_or(-1); }
  qint64 seedersSort() const { return seeders.value_or(-1); }
  qint64 leechersSort() const { return leechers.value_or(-1); }
  QString sourceSort() const; // "A, B"
  // Read from the title; an em dash if it says nothing.
  QString quality() const; // "2160p", "1080p", "720p", "480p", "SD" or "HD"
  QString format() const;  // "mkv", "mp4", "avi", "m4v", "mov", "webm" or "ogv"
};

using TorrentResults = std::vector<TorrentResult>;

} // namespace vellum
