#include "Require.h"
#include "formats/Bencode.h"
#include "formats/TorrentMetadata.h"

using namespace vellum;
using fuzz::require;

namespace {

void checkInvariant(const TorrentMeta& meta) {
  require(meta.pieceLength > 0 && !meta.files.empty());
  require(meta.offsets.size() == meta.files.size());
  std::int64_t sum = 0;
  for (std::size_t i = 0; i < meta.files.size(); ++i) {
    require(meta.files[i].size >= 0 && meta.offsets[i] == sum);
    require(!__builtin_add_overflow(sum, meta.files[i].size, &sum));
  }
  require(sum == meta.total);
  std::int64_t covered = 0;
  require(!__builtin_mul_overflow(meta.pieceCount(), meta.pieceLength, &covered));
  require(meta.total <= covered);
}

std::optional<TorrentInfo> shown(ByteSpan input) {
  try {
    return TorrentMetadata::parseTorrent(input);
  } catch (const TorrentParseError&) {
    return std::nullopt;
  }
}

} // namespace

// Reads the input as a dictionary of a peer and as a file; what the engine takes the inspector can
// show, under the same hash.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const ByteSpan input = std::as_bytes(std::span(data, size));
  if (const auto meta = TorrentMeta::parse(input)) checkInvariant(*meta);

  const auto info = shown(input);
  const auto file = TorrentMeta::parseTorrentFile(input);
  if (file) {
    checkInvariant(file->meta);
    require(info && info->infoHash == toHex(file->hash));
    require(info->files.size() == file->meta.files.size());
    require(info->totalSize() == file->meta.total);
  }
  if (info) {
    info->totalSize();
    require(info->magnet &&
            TorrentMetadata::parseMagnet(*info->magnet)->infoHash == info->infoHash);
  }
  return 0;
}
