// How the stream server treats readers that wait, vanish, dribble, or never read.
#include "integration/streaming/StreamWorld.h"
#include <list>

namespace vellum::test {
namespace {

using namespace std::chrono_literals;
using StreamReaders = StreamWorld;

constexpr std::int64_t kChunk = 262144;

TEST_F(StreamReaders, TheHeadComesAtOnceAndTheBodyAsItsPiecesArrive) {
  HttpReader reader(url);
  reader.get(url);
  EXPECT_EQ(reader.readHead(), wholeHead());
  ASSERT_TRUE(source->waitForQuestions(1));
  source->arrive(kBefore, kChunk);
  EXPECT_TRUE(reader.read(kChunk) == film(0, kChunk));
  source->arriveAll();
  EXPECT_TRUE(reader.readAll() == film(kChunk, kFilm - kChunk));
  const auto playheads = source->playheads();
  for (std::size_t i = 0; i < playheads.size(); ++i)
    EXPECT_EQ(playheads[i], static_cast<std::int64_t>(i) * kChunk) << "chunk by chunk";
  EXPECT_EQ(playheads.size(), (kFilm + kChunk - 1) / kChunk);
}

// Takes 2 s, which is the rule.
TEST_F(StreamReaders, AWaitingReaderClaimsThePlayheadAgainEveryTwoSeconds) {
  HttpReader reader(url);
  reader.get(url, "Range: bytes=5000-5009\r\n");
  ASSERT_TRUE(source->waitForQuestions(19));
  EXPECT_EQ(source->playheads(), (std::vector<std::int64_t>{5000}));
  ASSERT_TRUE(source->waitForQuestions(22));
  EXPECT_EQ(source->playheads(), (std::vector<std::int64_t>{5000, 5000}));
}

TEST_F(StreamReaders, ADroppedReaderIsForgotten) {
  const std::tuple<const char*, bool, bool> rows[] = {{"closes while it waits", true, false},
                                                      {"resets while it waits", true, true},
                                                      {"resets in mid-body", false, true}};
  for (const auto& [what, isWaiting, isReset] : rows) {
    if (!isWaiting) source->arriveAll();
    const std::size_t before = source->playheads().size();
    {
      HttpReader reader(url, HttpReader::Buffer::Small);
      reader.get(url);
      if (!isReset) reader.readHead(); // closing with unread bytes resets the connection
      while (source->playheads().size() == before) std::this_thread::sleep_for(1ms);
    }
    // 100 ms and some patience for a busy machine.
    EXPECT_LT(secondsUntilReleased(), 1.0) << what;
  }
  EXPECT_LT(source->bytesRead(), kFilm);
}

TEST_F(StreamReaders, AStoppedTorrentOrAFailedReadEndsTheBodyShort) {
  source->arrive(kBefore, 2 * kChunk - 1 - MemorySource::kPiece);
  HttpReader waiting(url), unreadable(url), slow(url);
  waiting.get(url);
  EXPECT_EQ(waiting.readHead(), wholeHead());
  ASSERT_TRUE(source->waitForQuestions(3));
  source->limitReads(0);
  unreadable.get(url);
  EXPECT_EQ(unreadable.readAll(), wholeHead());
  source->limitReads(1); // read on, however little comes
  slow.get(url, "Range: bytes=100-199\r\n");
  slow.readHead();
  EXPECT_EQ(slow.readAll(), film(100, 100));
  source->stop();
  EXPECT_TRUE(waiting.readAll() == film(0, kChunk));
}

TEST_F(StreamReaders, IdleAndStuckReadersDelayNobody) {
  source->arriveAll();
  std::list<HttpReader> others;
  for (int i = 0; i < 200; ++i)
    others.emplace_back(url).say(i % 2 == 0 ? "" : "GET /unfinished HTTP/1.1\r\n");
  HttpReader& stuck = others.emplace_back(url, HttpReader::Buffer::Small);
  stuck.get(url);
  ASSERT_TRUE(source->waitForQuestions(2));
  HttpReader one(url), two(url);
  one.get(url);
  two.get(url);
  for (HttpReader* reader : {&one, &two})
    EXPECT_TRUE(reader->readAll() == wholeHead() + film(0, kFilm));
  EXPECT_LT(source->bytesRead(), 3 * kFilm) << "what the stuck reader does not take is not read";
  EXPECT_EQ(source.use_count(), 3) << "the stuck one is still served";
  EXPECT_TRUE(stuck.readAll() == wholeHead() + film(0, kFilm));
}

TEST_F(StreamReaders, OneAddressOfTheMachineAnswersUntilTheServerGoes) {
  // A server bound to all addresses would answer here as well.
  asio::io_context io;
  asio::ip::tcp::socket elsewhere(io);
  asio::error_code error;
  const auto port = static_cast<std::uint16_t>(url.port());
  elsewhere.connect({asio::ip::make_address("127.0.0.2"), port}, error);
  EXPECT_EQ(error, asio::error::connection_refused);
  HttpReader idle(url), waiting(url), late;
  waiting.get(url);
  ASSERT_TRUE(source->waitForQuestions(1));
  server.reset();
  EXPECT_EQ(idle.readAll(), "");
  EXPECT_EQ(waiting.readAll(), wholeHead());
  EXPECT_THROW(late.connect(url), std::system_error);
}

} // namespace
} // namespace vellum::test
