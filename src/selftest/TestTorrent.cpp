#include "selftest/TestTorrent.h"
#include "base/Sha1.h"
#include "formats/InfoWriter.h"

namespace vellum::selftest {

TestTorrent TestTorrent::make(const QString& name, const Files& files, std::int64_t pieceLength) {
  TestTorrent torrent;
  torrent.pieceLength = pieceLength;
  std::vector<WrittenFile> written;
  for (const auto& [path, bytes] : files) {
    torrent.payload += bytes;
    written.push_back({path, bytes.size()});
  }
  torrent.infoRaw = writeInfo(name, written, pieceLength, asBytes(torrent.payload));
  torrent.infoHash = Sha1::of(asBytes(torrent.infoRaw));
  return torrent;
}

} // namespace vellum::selftest
