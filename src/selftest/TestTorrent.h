// A torrent built in memory (BEP 3, version 1).
#pragma once
#include "base/Bytes.h"
#include <utility>
#include <vector>

namespace vellum::selftest {

// A value; any thread.
struct TestTorrent {
  using Files = std::vector<std::pair<QString, QByteArray>>; // path, components joined with "/"

  static TestTorrent make(const QString& name, const Files& files, std::int64_t pieceLength);
  std::int64_t pieceCount() const { return (payload.size() + pieceLength - 1) / pieceLength; }

  QByteArray infoRaw; // the bencoded info dictionary
  Hash20 infoHash{};
  std::int64_t pieceLength = 0; // bytes
  QByteArray payload;
};

} // namespace vellum::selftest
