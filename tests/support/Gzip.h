// Bytes as a server packs them, in one member of gzip. Pure.
#pragma once
#include <QByteArray>
#include <zlib.h>

namespace vellum::test {

inline QByteArray gzip(QByteArray bytes) {
  z_stream stream{};
  deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
  QByteArray packed(qsizetype(deflateBound(&stream, uLong(bytes.size()))), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(bytes.data());
  stream.avail_in = uInt(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = uInt(packed.size());
  deflate(&stream, Z_FINISH);
  packed.truncate(qsizetype(stream.total_out));
  deflateEnd(&stream);
  return packed;
}

} // namespace vellum::test
