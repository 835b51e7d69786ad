#include "selftest/TestTorrent.h"
#include "base/Sha1.h"
#include <algorithm>

namespace vellum::selftest {

namespace {

QByteArray bencoded(const QByteArray& text) { return QByteArray::number(text.size()) + ':' + text; }

QByteArray bencodedFile(const QString& path, qsizetype length) {
  QByteArray file = "d6:lengthi" + QByteArray::number(length) + "e4:pathl";
  for (const QString& component : path.split(u'/')) file += bencoded(component.toUtf8());
  return file + "ee";
}

QByteArray pieceHashes(const QByteArray& payload, std::int64_t pieceLength) {
  QByteArray hashes;
  for (ByteSpan rest = asBytes(payload); !rest.empty();) {
    const auto size = std::min(rest.size(), std::size_t(pieceLength));
    hashes += toByteArray(Sha1::of(rest.first(size)));
    rest = rest.subspan(size);
  }
  return hashes;
}

} // namespace

TestTorrent TestTorrent::make(const QString& name, const Files& files, std::int64_t pieceLength) {
  TestTorrent torrent;
  torrent.pieceLength = pieceLength;
  QByteArray list;
  for (const auto& [path, bytes] : files) {
    torrent.payload += bytes;
    list += bencodedFile(path, bytes.size());
  }
  torrent.infoRaw = "d5:filesl" + list + "e4:name" + bencoded(name.toUtf8()) + "12:piece lengthi" +
                    QByteArray::number(qint64(pieceLength)) + "e6:pieces" +
                    bencoded(pieceHashes(torrent.payload, pieceLength)) + 'e';
  torrent.infoHash = Sha1::of(asBytes(torrent.infoRaw));
  return torrent;
}

} // namespace vellum::selftest
