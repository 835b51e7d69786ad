// A stream server, a torrent in memory behind it, and readers on loopback sockets.
#pragma once
#include "base/Clock.h"
#include "base/IoPool.h"
#include "streaming/ExtractFile.h"
#include "streaming/LocalStreamServer.h"
#include "world/HttpReader.h"
#include "world/MemorySource.h"
#include "world/Payload.h"
#include <asio/use_future.hpp>
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;

// A text, the film, an empty video, one of a byte, a file that is never there. That the pool can
// end is a part of every test.
struct StreamWorld : testing::Test {
  static constexpr std::int64_t kBefore = 300'000;
  static constexpr std::int64_t kFilm = 16'000'000;

  StreamWorld() { url = urlOf(1, QStringLiteral("Film/film.mp4")); }

  QUrl urlOf(int file, const QString& name) {
    return asio::co_spawn(pool.io(), server->url(source, file, name), asio::use_future)
        .get()
        .value_or(QUrl());
  }
  std::string film(std::int64_t start, std::int64_t length) const {
    const ByteSpan bytes = source->bytes(kBefore + start, length);
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
  }
  // Of a GET of the whole film.
  static std::string wholeHead() {
    return "HTTP/1.1 200 OK\r\nContent-Type: video/mp4\r\nAccept-Ranges: bytes\r\n"
           "Content-Length: 16000000\r\nConnection: close\r\n\r\n";
  }
  // Seconds until no connection holds the source; 20 if that does not happen.
  double secondsUntilReleased() const {
    const SystemClock clock;
    const TimePoint begin = clock.now();
    while (source.use_count() > 2 && secondsBetween(begin, clock.now()) < 20) // ours, the server's
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return secondsBetween(begin, clock.now());
  }

  IoPool pool;
  std::shared_ptr<MemorySource> source = std::make_shared<MemorySource>(
      pool.makeStrand(), pseudoRandomBytes(kBefore + kFilm + 1, 7),
      std::vector<TorrentFileEntry>{{QStringLiteral("Film/about.txt"), kBefore},
                                    {QStringLiteral("Film/film.mp4"), kFilm},
                                    {QStringLiteral("Film/empty.mkv"), 0},
                                    {QStringLiteral("Film/one.ts"), 1},
                                    {QStringLiteral("Film/large.srt"), kExtractLimit}});
  std::unique_ptr<LocalStreamServer> server = std::make_unique<LocalStreamServer>(pool);
  QUrl url;
};

} // namespace vellum::test
