// A torrent made for a test or the demo: payload, info dictionary, .torrent file, magnet link.
#pragma once
#include "base/Bytes.h"
#include "world/Payload.h"
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

namespace vellum::world {

struct TestFile {
  QString path; // components joined with "/"
  ByteVector content;
};

// A value; its payload is shared. Version 1 of BEP 3.
struct SeededTorrent {
  struct Entry {
    QString path;
    std::int64_t offset = 0; // in the payload, bytes
    std::int64_t size = 0;   // bytes
  };

  QString name;
  std::int64_t pieceLength = 0; // bytes
  std::vector<Entry> files;
  std::shared_ptr<const Payload> payload;
  QByteArray infoRaw; // the bencoded info dictionary
  Hash20 infoHash{};

  // Always the multi-file form, also for one file.
  static SeededTorrent make(const QString& name, const std::vector<TestFile>& files,
                            std::int64_t pieceLength);
  // A file of the disk in the single-file form, mapped and not read into memory; a folder in the
  // multi-file form, sorted by path. Throws std::system_error.
  static SeededTorrent fromDisk(const std::filesystem::path& path, std::int64_t pieceLength);

  ByteSpan fileBytes(std::size_t index) const;
  std::int64_t pieceCount() const;
  QByteArray torrentFile(const QStringList& trackers = {}) const;
  // `peers` as "host:port", each in an x.pe item.
  QString magnet(const QStringList& trackers = {}, const QStringList& peers = {}) const;
};

} // namespace vellum::world
