#include "Fuzz.h"
#include "formats/TorrentMetadata.h"

namespace vellum::fuzz {

static void checkInvariant(const TorrentMeta& meta) {
  require(meta.pieceLength > 0 && !meta.files.empty());
  require(meta.offsets.size() == meta.files.size());
  std::int64_t sum = 0;
  for (std::size_t i = 0; i < meta.files.size(); ++i) {
    require(meta.files[i].size >= 0 && meta.offsets[i] == sum);
    require(!__builtin_add_overflow(sum, meta.files[i].size, &sum));
  }
  std::int64_t covered = 0;
  require(!__builtin_mul_overflow(meta.pieceCount(), meta.pieceLength, &covered));
  require(sum == meta.total && sum <= covered);
}

// What the engine takes the inspector can show, under the same hash.
void check(ByteSpan input) {
  if (const auto meta = TorrentMeta::parse(input)) checkInvariant(*meta);
  const auto file = TorrentMeta::parseTorrentFile(input);
  if (file) checkInvariant(file->meta);
  try {
    const TorrentInfo info = TorrentMetadata::parseTorrent(input);
    const auto total = info.totalSize();
    require(TorrentMetadata::parseMagnet(info.magnet.value())->infoHash == info.infoHash);
    require(!file || (info.infoHash == toHex(file->hash) && total == file->meta.total));
    require(!file || info.files.size() == file->meta.files.size());
  } catch (const TorrentParseError&) {
    require(!file);
  }
}

} // namespace vellum::fuzz
