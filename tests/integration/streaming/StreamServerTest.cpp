// A stream server, a torrent in memory behind it, and readers on loopback sockets.
#include "base/Clock.h"
#include "base/IoPool.h"
#include "streaming/ExtractFile.h"
#include "streaming/LocalStreamServer.h"
#include "world/HttpReader.h"
#include "world/MemorySource.h"
#include "world/Payload.h"
#include <QFile>
#include <QTemporaryDir>
#include <asio/use_future.hpp>
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;
namespace {

constexpr std::int64_t kBefore = 300'000;
constexpr std::int64_t kFilm = 16'000'000;
constexpr std::int64_t kChunk = 262144;
constexpr const char* k404 = "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n";
constexpr const char* k405 = "HTTP/1.1 405 Method Not Allowed\r\nContent-Length: 0\r\n\r\n";
constexpr const char* k416 = "HTTP/1.1 416 Range Not Satisfiable\r\n"
                             "Content-Range: bytes */16000000\r\nContent-Length: 0\r\n\r\n";
const std::string kPath = "/" + std::string(40, 'a') + "/";

std::string head(const char* status, const char* type, std::int64_t length) {
  return "HTTP/1.1 " + std::string(status) + "\r\nContent-Type: video/" + type +
         "\r\nAccept-Ranges: bytes\r\nContent-Length: " + std::to_string(length) +
         "\r\nConnection: close\r\n";
}
const std::string kHead = head("200 OK", "mp4", kFilm) + "\r\n"; // of the whole film
std::string head206(std::int64_t start, std::int64_t end) {
  return head("206 Partial Content", "mp4", end - start + 1) + "Content-Range: bytes " +
         std::to_string(start) + "-" + std::to_string(end) + "/16000000\r\n\r\n";
}

// A text, the film, an empty video, one of a byte. That the pool can end is a part of every test.
struct StreamServer : testing::Test {
  StreamServer() { url = urlOf(QStringLiteral("Film/film.mp4")); }

  QUrl urlOf(const QString& name) {
    auto made = asio::co_spawn(pool.io(), server->url(source, 1, name), asio::use_future);
    return made.get().value_or(QUrl());
  }
  std::string film(std::int64_t start, std::int64_t length) const {
    const ByteSpan bytes = source->bytes(kBefore + start, length);
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
  }

  IoPool pool;
  std::shared_ptr<MemorySource> source = std::make_shared<MemorySource>(
      pool.makeStrand(), pseudoRandomBytes(kBefore + kFilm + 1, 7),
      std::vector<TorrentFileEntry>{{QStringLiteral("Film/about.txt"), kBefore},
                                    {QStringLiteral("Film/film.mp4"), kFilm},
                                    {QStringLiteral("Film/empty.mkv"), 0},
                                    {QStringLiteral("Film/one.ts"), 1}});
  std::unique_ptr<LocalStreamServer> server = std::make_unique<LocalStreamServer>(pool);
  QUrl url;
};

TEST_F(StreamServer, ServesWholeFilesRangesAndHeadsAndRefusesAllElse) {
  source->arriveAll();
  const std::string line = kPath + "+1/any/name?query HTTP/1.1\r\nHost: LOCALHOST:1\r\n";
  const std::string end = " HTTP/1.1\r\n\r\n";
  const std::pair<std::string, std::string> cases[] = {
      {"GET " + line + "\r\n", kHead + film(0, kFilm)},
      {"GET " + line + "Range: bytes=262143-262144\r\n\r\n",
       head206(262143, 262144) + film(262143, 2)},
      {"GET " + line + "Range: bytes=9-9\r\n\r\nbehind the blank line", head206(9, 9) + film(9, 1)},
      {"HEAD " + line + "Range: bytes=7-\r\n\r\n", head206(7, kFilm - 1)},
      {"GET " + kPath + "3" + end, head("200 OK", "mp2t", 1) + "\r\n" + film(kFilm, 1)},
      {"\r\n\r\n", k405},
      {"POST " + line + "\r\n" + std::string(20'000, 'x'), k405},
      {"GET /" + std::string(40, 'b') + "/1/x" + end, k404},
      {"GET " + kPath + "1x/film.mp4" + end, k404},
      {"GET " + kPath + "2/empty.mkv" + end, k404},
      {"GET " + line + "Host: rebound.example:80\r\n\r\n", k404},
      {"GET " + line + "Range: bytes=16000000-\r\n\r\n", k416}};
  for (const auto& [request, expected] : cases) {
    HttpReader reader(url);
    reader.say(request);
    // Not EXPECT_EQ, which would print the film.
    EXPECT_TRUE(reader.readAll() == expected) << request.substr(0, 200);
    EXPECT_FALSE(reader.wasReset()) << request.substr(0, 200);
  }
}

TEST_F(StreamServer, ReadsAHeadHoweverItComesAndUpToItsLimit) {
  source->arriveAll();
  const std::string request = "GET " + kPath + "1/x HTTP/1.1\r\nRange: bytes=1-3\r\n";
  const std::string answer = head206(1, 3) + film(1, 3);
  const std::string longest = request + "X: " + std::string(32768 - request.size() - 3, 'x');
  for (const auto& [said, rest, expected] : {std::tuple(request + "\r", "\n", answer),
                                             {longest, "\r\n\r\n", answer},
                                             {longest, "x", std::string()}}) {
    HttpReader reader(url);
    for (const char letter : said.substr(0, 40)) reader.say({&letter, 1});
    reader.say(said.substr(40));
    reader.say(rest);
    EXPECT_EQ(reader.readAll(), expected) << said.size();
  }
}

TEST_F(StreamServer, NamesTheFileInAUrlThatEveryPlayerReads) {
  const std::string before = "http://127.0.0.1:" + std::to_string(url.port()) + kPath + "1/";
  for (const auto& [name, encoded] :
       {std::pair("a/..", "video"),
        {"a/Film [1080p] #1 50%?", "Film%20%5B1080p%5D%20%231%2050%25%3F"},
        {"映 (b) & c's, d.mp4", "%E6%98%A0%20(b)%20&%20c's,%20d.mp4"}})
    EXPECT_EQ(urlOf(QString::fromUtf8(name)).toEncoded().toStdString(), before + encoded);
}

TEST_F(StreamServer, CutsOutAFileThatIsCompleteAndSmallEnough) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("subs/about.txt"));
  const auto isCutOut = [&](int file) {
    return asio::co_spawn(pool.io(), extractFile(source, file, path), asio::use_future).get();
  };
  const auto whole = source;
  for (const auto size : {kExtractLimit - 1, kExtractLimit}) {
    source = std::make_shared<MemorySource>(
        pool.makeStrand(), ByteVector(std::size_t(size)),
        std::vector<TorrentFileEntry>{{QStringLiteral("large.srt"), size}});
    source->arriveAll();
    EXPECT_EQ(isCutOut(0), size < kExtractLimit) << size;
    EXPECT_EQ(QFile::remove(path), size < kExtractLimit);
  }
  source = whole;
  source->arrive(0, kBefore - 1 - MemorySource::kPiece);
  EXPECT_FALSE(isCutOut(0)) << "its last piece is missing";
  source->arriveAll();
  source->limitReads(1000);
  for (const int file : {0, 9}) EXPECT_FALSE(isCutOut(file)) << "unread, not there";
  EXPECT_FALSE(QFile::exists(path));
  source->limitReads(SIZE_MAX);
  EXPECT_TRUE(isCutOut(2)) << "empty";
  EXPECT_TRUE(isCutOut(0));
  QFile written(path);
  ASSERT_TRUE(written.open(QIODevice::ReadOnly));
  EXPECT_TRUE(written.readAll().toStdString() == film(-kBefore, kBefore));
}

TEST_F(StreamServer, TheHeadComesAtOnceAndTheBodyAsItsPiecesArrive) {
  HttpReader reader(url);
  reader.get(url);
  EXPECT_EQ(reader.readHead(), kHead);
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
TEST_F(StreamServer, AWaitingReaderClaimsThePlayheadAgainEveryTwoSeconds) {
  HttpReader reader(url);
  reader.get(url, "Range: bytes=5000-5009\r\n");
  ASSERT_TRUE(source->waitForQuestions(19));
  EXPECT_EQ(source->playheads(), (std::vector<std::int64_t>{5000}));
  ASSERT_TRUE(source->waitForQuestions(22));
  EXPECT_EQ(source->playheads(), (std::vector<std::int64_t>{5000, 5000}));
}

TEST_F(StreamServer, ADroppedReaderIsForgotten) {
  std::optional<HttpReader> reader(url);
  reader->get(url);
  reader->readHead(); // closing with unread bytes would reset the connection
  ASSERT_TRUE(source->waitForQuestions(1));
  reader.reset();
  const SystemClock clock;
  const TimePoint dropped = clock.now();
  while (source.use_count() > 2 && secondsBetween(dropped, clock.now()) < 20)
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  // 100 ms and some patience for a busy machine.
  EXPECT_LT(secondsBetween(dropped, clock.now()), 1);
}

TEST_F(StreamServer, AStoppedTorrentOrAFailedReadEndsTheBodyShort) {
  source->arrive(kBefore, 2 * kChunk - 1 - MemorySource::kPiece);
  HttpReader waiting(url), unreadable(url), slow(url), gone(url);
  waiting.get(url);
  EXPECT_EQ(waiting.readHead(), kHead);
  ASSERT_TRUE(source->waitForQuestions(3));
  source->limitReads(0);
  unreadable.get(url);
  EXPECT_EQ(unreadable.readAll(), kHead);
  source->limitReads(1); // read on, however little comes
  slow.get(url, "Range: bytes=100-199\r\n");
  EXPECT_EQ(slow.readAll(), head206(100, 199) + film(100, 100));
  server->unregisterSource(source->key());
  gone.get(url);
  EXPECT_EQ(gone.readAll(), k404);
  source->stop(); // who is served stays so until then
  EXPECT_TRUE(waiting.readAll() == film(0, kChunk));
  server->registerSource(source);
  HttpReader again(url);
  again.get(url);
  EXPECT_EQ(again.readAll(), kHead);
}

TEST_F(StreamServer, OneAddressOfTheMachineAnswersUntilTheServerGoes) {
  // A server bound to all addresses would answer here as well.
  asio::ip::tcp::socket elsewhere(pool.io());
  asio::error_code error;
  elsewhere.connect({asio::ip::make_address("127.0.0.2"), std::uint16_t(url.port())}, error);
  EXPECT_EQ(error, asio::error::connection_refused);
  HttpReader waiting(url), late;
  waiting.get(url);
  ASSERT_TRUE(source->waitForQuestions(1));
  server.reset();
  EXPECT_EQ(waiting.readAll(), kHead);
  EXPECT_THROW(late.connect(url), std::system_error);
}

} // namespace
} // namespace vellum::test
