// The light description of a torrent that the inspector shows, and magnet links. Pure; any thread.
#pragma once
#include "formats/Bencode.h"
#include "formats/TorrentMeta.h"
#include <QUrl>

namespace vellum {

struct TorrentInfo {
  QString name;
  QString infoHash;                    // 40 lower-case hexadecimal digits
  std::vector<TorrentFileEntry> files; // empty for a magnet link
  QStringList trackers;
  std::optional<QString> magnet;  // as text: a QUrl would rewrite some of its escapes
  std::optional<QUrl> fileUrl;    // the .torrent file on disk; set by the caller, never by a parser
  qsizetype videos = 0;           // how many of the files; set by the caller
  std::int64_t totalSize() const; // bytes; a sum beyond 64 bits stops at their end
};

struct TorrentMetadata {
  // Throws TorrentParseError. Shows also torrents that the engine would refuse.
  static TorrentInfo parseTorrent(ByteSpan data);
  // Nothing if the text is no valid magnet link.
  static std::optional<TorrentInfo> parseMagnet(const QString& text);
  // RFC 4648 alphabet, either case, no padding; nothing for a character outside it.
  static std::optional<QString> base32ToHex(const QString& text);
};

// A magnet link with xt, dn and the four default trackers, every value percent-encoded but for
// letters and digits.
QString makeMagnet(const QString& hash, const QString& name);

// The raw query items of a magnet link, in link order, percent-decoded. An item without "=" has no
// value, which is not the same as an empty one. Nothing if the link has no query.
struct QueryItem {
  QString name;
  std::optional<QString> value;
};
std::optional<std::vector<QueryItem>> queryItems(const QString& url);

} // namespace vellum
