// A made torrent as a session core sees it: its metadata beside its bytes.
#pragma once
#include "formats/TorrentMeta.h"
#include "world/SeededTorrent.h"
#include <memory>
#include <string>

namespace vellum::test {

using namespace world;

struct MadeTorrent {
  std::shared_ptr<const TorrentMeta> meta;
  ByteSpan bytes;
  ByteVector infoRaw;
  Hash20 infoHash{};
  SeededTorrent torrent; // owns the bytes

  ByteSpan block(std::int64_t piece, std::int64_t begin, std::int64_t length) const {
    return bytes.subspan(static_cast<std::size_t>(piece * meta->pieceLength + begin),
                         static_cast<std::size_t>(length));
  }
};

struct MadeFile {
  const char* name;
  std::int64_t size = 0;
};

inline MadeTorrent makeTorrent(const std::vector<MadeFile>& files, std::int64_t pieceLength) {
  std::vector<TestFile> contents;
  for (const auto& [name, size] : files)
    contents.push_back({QString::fromUtf8(name),
                        pseudoRandomBytes(static_cast<std::size_t>(size), contents.size() + 1)});
  MadeTorrent made;
  made.torrent = SeededTorrent::make(QStringLiteral("Film"), contents, pieceLength);
  made.bytes = made.torrent.payload->bytes();
  made.infoRaw = toVector(asBytes(made.torrent.infoRaw));
  made.infoHash = made.torrent.infoHash;
  made.meta = std::make_shared<const TorrentMeta>(*TorrentMeta::parse(made.infoRaw));
  return made;
}

} // namespace vellum::test
