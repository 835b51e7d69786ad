// A torrent in memory: files of repeatable noise, their metadata and their info dictionary.
#pragma once
#include "base/Sha1.h"
#include "formats/TorrentMeta.h"
#include <memory>
#include <random>
#include <string>

namespace vellum::test {

struct Payload {
  std::shared_ptr<TorrentMeta> meta = std::make_shared<TorrentMeta>();
  ByteVector bytes;
  ByteVector infoRaw;
  Hash20 infoHash{};

  ByteSpan range(std::int64_t offset, std::int64_t length) const {
    return ByteSpan(bytes).subspan(static_cast<std::size_t>(offset),
                                   static_cast<std::size_t>(length));
  }
  ByteSpan block(std::int64_t piece, std::int64_t begin, std::int64_t length) const {
    return range(piece * meta->pieceLength + begin, length);
  }
};

struct PayloadFile {
  std::string name;
  std::int64_t size = 0;
};

inline Payload makePayload(const std::vector<PayloadFile>& files, std::int64_t pieceLength) {
  Payload payload;
  TorrentMeta& meta = *payload.meta;
  meta.name = QStringLiteral("Film");
  meta.pieceLength = pieceLength;
  std::string list;
  for (const auto& [name, size] : files) {
    meta.files.push_back({QStringLiteral("Film/") + QString::fromStdString(name), size});
    meta.offsets.push_back(meta.total);
    meta.total += size;
    list += "d6:lengthi" + std::to_string(size) + "e4:pathl" + std::to_string(name.size()) + ":" +
            name + "ee";
  }
  std::mt19937_64 noise(42);
  payload.bytes.resize(static_cast<std::size_t>(meta.total));
  for (auto& byte : payload.bytes) byte = std::byte(noise());
  std::string hashes;
  for (std::int64_t at = 0; at < meta.total; at += pieceLength) {
    meta.hashes.push_back(Sha1::of(payload.range(at, std::min(pieceLength, meta.total - at))));
    hashes.append(reinterpret_cast<const char*>(meta.hashes.back().data()), 20);
  }
  const std::string info = "d5:filesl" + list + "e4:name4:Film12:piece lengthi" +
                           std::to_string(pieceLength) + "e6:pieces" +
                           std::to_string(hashes.size()) + ":" + hashes + "e";
  payload.infoRaw = toVector(asBytes(info));
  payload.infoHash = Sha1::of(payload.infoRaw);
  return payload;
}

} // namespace vellum::test
