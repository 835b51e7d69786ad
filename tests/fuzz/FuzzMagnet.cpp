#include "Fuzz.h"
#include "formats/TorrentMetadata.h"

// A link that is accepted has a real hash, and a link made of what it says is read back the same.
void vellum::fuzz::check(ByteSpan input) {
  const QString text = QString::fromUtf8(toByteArray(input));
  if (const auto bytes = TorrentMetadata::base32ToHex(text)) require(bytes->size() % 2 == 0);

  const auto torrent = TorrentMetadata::parseMagnet(text);
  if (!torrent) return;
  require(hash20FromHex(torrent->infoHash) && torrent->infoHash == torrent->infoHash.toLower());
  require(torrent->files.empty() && torrent->magnet == text.trimmed());

  const auto again = TorrentMetadata::parseMagnet(makeMagnet(torrent->infoHash, torrent->name));
  require(again && again->infoHash == torrent->infoHash && again->name == torrent->name);
  require(again->trackers.size() == 4);
}
