#include "formats/InfoWriter.h"
#include "base/Sha1.h"
#include <algorithm>

namespace vellum {

namespace {

QByteArray bencodedBytes(const QByteArray& bytes) {
  return QByteArray::number(bytes.size()) + ':' + bytes;
}

QByteArray fileList(const std::vector<WrittenFile>& files) {
  QByteArray list("5:filesl");
  for (const WrittenFile& file : files) {
    list += "d6:length" + bencoded(file.size) + "4:pathl";
    for (const QString& component : file.path.split(u'/')) list += bencoded(component);
    list += "ee";
  }
  return list + 'e';
}

QByteArray pieceHashes(ByteSpan payload, std::size_t pieceLength) {
  QByteArray hashes;
  for (ByteSpan rest = payload; !rest.empty();) {
    const auto size = std::min(rest.size(), pieceLength);
    hashes += toByteArray(Sha1::of(rest.first(size)));
    rest = rest.subspan(size);
  }
  return hashes;
}

// `files` is the part that tells single from multi-file; it sorts first.
QByteArray dictionary(const QByteArray& files, const QString& name, std::int64_t pieceLength,
                      ByteSpan payload) {
  return 'd' + files + "4:name" + bencoded(name) + "12:piece length" + bencoded(pieceLength) +
         "6:pieces" + bencodedBytes(pieceHashes(payload, std::size_t(pieceLength))) + 'e';
}

} // namespace

QByteArray bencoded(const QString& text) { return bencodedBytes(text.toUtf8()); }
QByteArray bencoded(std::int64_t value) { return 'i' + QByteArray::number(qint64(value)) + 'e'; }

QByteArray writeInfo(const QString& name, const std::vector<WrittenFile>& files,
                     std::int64_t pieceLength, ByteSpan payload) {
  return dictionary(fileList(files), name, pieceLength, payload);
}

QByteArray writeInfo(const QString& name, std::int64_t pieceLength, ByteSpan payload) {
  return dictionary("6:length" + bencoded(std::int64_t(payload.size())), name, pieceLength,
                    payload);
}

} // namespace vellum
