// Who reaches the stream server, and for how long.
#include "integration/streaming/StreamWorld.h"

namespace vellum::test {
namespace {

using StreamReach = StreamWorld;

TEST_F(StreamReach, OnlyOneAddressOfTheMachineAnswers) {
  // A server bound to all addresses would answer here as well.
  asio::io_context io;
  asio::ip::tcp::socket elsewhere(io);
  asio::error_code error;
  const auto port = static_cast<std::uint16_t>(url.port());
  elsewhere.connect({asio::ip::make_address("127.0.0.2"), port}, error);
  EXPECT_EQ(error, asio::error::connection_refused);
}

TEST_F(StreamReach, AReaderThatVanishesInMidBodyIsForgotten) {
  source->arriveAll();
  {
    HttpReader reader(url, HttpReader::Buffer::Small);
    reader.get(url);
    EXPECT_TRUE(reader.readHead().starts_with("HTTP/1.1 200 OK"));
    EXPECT_EQ(reader.read(1000).size(), 1000U);
    EXPECT_EQ(source.use_count(), 3);
  }
  EXPECT_LT(secondsUntilReleased(), 1.0);
  EXPECT_LT(source->bytesRead(), kFilm);
}

TEST_F(StreamReach, ABodyOutlivesItsRegistrationUntilItsTorrentStops) {
  HttpReader running(url);
  running.get(url);
  running.readHead();
  server->unregisterSource(source->key());
  source->arrive(kBefore, 262144);
  EXPECT_TRUE(running.read(262144) == film(0, 262144));
  source->stop();
  EXPECT_EQ(running.readAll(), "");

  const auto successor = std::make_shared<MemorySource>(
      pool.makeStrand(), ByteVector(10, std::byte{'x'}),
      std::vector<TorrentFileEntry>{{QStringLiteral("a"), 0}, {QStringLiteral("b.ts"), 10}});
  successor->arriveAll();
  server->registerSource(source);
  server->registerSource(successor);
  HttpReader next(url);
  next.get(url);
  EXPECT_TRUE(next.readAll().ends_with("\r\n\r\nxxxxxxxxxx"));
}

} // namespace
} // namespace vellum::test
