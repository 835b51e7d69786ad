#include "Require.h"
#include "formats/TorrentMetadata.h"

using namespace vellum;
using fuzz::require;

// A link that is accepted has a real hash, and a link made of what it says is read back the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QString text =
      QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  if (const auto bytes = TorrentMetadata::base32ToHex(text)) require(bytes->size() % 2 == 0);

  const auto torrent = TorrentMetadata::parseMagnet(text);
  if (!torrent) return 0;
  require(hash20FromHex(torrent->infoHash) && torrent->infoHash == torrent->infoHash.toLower());
  require(torrent->files.empty() && torrent->magnet == text.trimmed());

  const auto again = TorrentMetadata::parseMagnet(makeMagnet(torrent->infoHash, torrent->name));
  require(again && again->infoHash == torrent->infoHash && again->name == torrent->name);
  require(again->trackers.size() == 4);
  return 0;
}
