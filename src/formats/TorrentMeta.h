// The info dictionary as a session works from it (BEP 3, version 1 only). Pure; any thread.
#pragma once
#include "base/Bytes.h"
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace vellum {

// One file of a torrent.
struct TorrentFileEntry {
  QString path;          // components joined with "/"
  std::int64_t size = 0; // bytes
  bool operator==(const TorrentFileEntry&) const = default;
};

// Invariant: hashes.size() * pieceLength >= total; files is never empty; every size is 0 or more
// and all sums fit 64 bits.
struct TorrentMeta {
  QString name;
  std::int64_t pieceLength = 0; // bytes, above 0
  std::vector<Hash20> hashes;   // one per piece
  std::vector<TorrentFileEntry> files;
  std::vector<std::int64_t> offsets; // offsets[i] = where file i begins in the payload
  std::int64_t total = 0;            // bytes of all files

  std::int64_t pieceCount() const { return static_cast<std::int64_t>(hashes.size()); }

  // From the raw bytes of an info dictionary, as peers supply them.
  static std::optional<TorrentMeta> parse(ByteSpan infoRaw);

  struct TorrentFile;
  // From the bytes of a .torrent file. Trackers in file order, neither sorted nor made unique.
  static std::optional<TorrentFile> parseTorrentFile(ByteSpan data);
};

struct TorrentMeta::TorrentFile {
  Hash20 hash; // SHA-1 of the info dictionary's bytes as they stand in the file
  TorrentMeta meta;
  QStringList trackers;
};

} // namespace vellum
