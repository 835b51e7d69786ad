// Writes the info dictionary of a torrent (BEP 3, version 1): for the self-test, and for a world to
// stream from.
#pragma once
#include "base/Bytes.h"
#include <QByteArray>
#include <QString>
#include <vector>

namespace vellum {

struct WrittenFile {
  QString path;          // components joined with "/"
  std::int64_t size = 0; // bytes
};

// The multi-file form, also for one file. `payload` is the files one behind the other;
// `pieceLength` is above 0.
QByteArray writeInfo(const QString& name, const std::vector<WrittenFile>& files,
                     std::int64_t pieceLength, ByteSpan payload);
// The single-file form.
QByteArray writeInfo(const QString& name, std::int64_t pieceLength, ByteSpan payload);

// A byte string and an integer as bencode has them.
QByteArray bencoded(const QString& text);
QByteArray bencoded(std::int64_t value);

} // namespace vellum
