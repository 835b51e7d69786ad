// What the stream server answers, byte for byte, and what it gives of files that still arrive.
#include "integration/streaming/StreamWorld.h"
#include <QFile>
#include <QTemporaryDir>

namespace vellum::test {
namespace {

using StreamServer = StreamWorld;

constexpr const char* k404 = "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n";
constexpr const char* k405 = "HTTP/1.1 405 Method Not Allowed\r\nContent-Length: 0\r\n\r\n";
constexpr const char* k416 = "HTTP/1.1 416 Range Not Satisfiable\r\n"
                             "Content-Range: bytes */16000000\r\nContent-Length: 0\r\n\r\n";
const std::string kPath = "/" + std::string(40, 'a') + "/";

std::string head206(std::int64_t start, std::int64_t end) {
  return "HTTP/1.1 206 Partial Content\r\nContent-Type: video/mp4\r\nAccept-Ranges: bytes\r\n"
         "Content-Length: " +
         std::to_string(end - start + 1) + "\r\nConnection: close\r\nContent-Range: bytes " +
         std::to_string(start) + "-" + std::to_string(end) + "/16000000\r\n\r\n";
}

TEST_F(StreamServer, ServesWholeFilesRangesAndHeadsAndRefusesAllElse) {
  source->arriveAll();
  const std::string line = kPath + "+1/any/name?query HTTP/1.1\r\nHost: LOCALHOST:1\r\n";
  const std::string end = " HTTP/1.1\r\n\r\n";
  const std::pair<std::string, std::string> cases[] = {
      {"GET " + line + "\r\n", wholeHead() + film(0, kFilm)},
      {"GET " + line + "Range: lines=1-2\r\n\r\n", head206(0, kFilm - 1) + film(0, kFilm)},
      {"GET " + line + "Range: bytes=262143-262144\r\n\r\n",
       head206(262143, 262144) + film(262143, 2)},
      {"GET " + line + "Range: bytes=-1\r\n\r\n",
       head206(kFilm - 1, kFilm - 1) + film(kFilm - 1, 1)},
      {"GET " + line + "Range: bytes=9-9\r\n\r\nbehind the blank line", head206(9, 9) + film(9, 1)},
      {"HEAD " + line + "\r\n", wholeHead()},
      {"HEAD " + line + "Range: bytes=7-\r\n\r\n", head206(7, kFilm - 1)},
      {"GET " + kPath + "3" + end, "HTTP/1.1 200 OK\r\nContent-Type: video/mp2t\r\n"
                                   "Accept-Ranges: bytes\r\nContent-Length: 1\r\n"
                                   "Connection: close\r\n\r\n" +
                                       film(kFilm, 1)},
      {"\r\n\r\n", k405},
      {"POST " + line + "\r\n" + std::string(20'000, 'x'), k405},
      {"GET /" + end, k404},
      {"GET " + kPath + end, k404},
      {"GET /" + std::string(40, 'b') + "/1/x" + end, k404},
      {"GET " + kPath + "1x/film.mp4" + end, k404},
      {"GET " + kPath + "-1/film.mp4" + end, k404},
      {"GET " + kPath + "5/film.mp4" + end, k404},
      {"GET " + kPath + "9223372036854775808/film.mp4" + end, k404},
      {"GET " + kPath + "2/empty.mkv" + end, k404},
      {"GET " + line + "Host: rebound.example:80\r\n\r\n", k404},
      {"GET " + line + "Range: bytes=16000000-\r\n\r\n", k416},
      {"HEAD " + line + "Range: bytes=,\r\n\r\n", k416}};
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
  const std::tuple<std::string, bool, std::string> cases[] = {
      {request + "\r\n", false, answer},
      {longest + "\r\n\r\n", false, answer},
      {longest + "x", false, ""}, // closed without an answer, though the client says no more
      {request, true, ""},
      {request + "\r\n", true, answer}};
  for (const auto& [said, isEnded, expected] : cases) {
    HttpReader reader(url);
    for (const char letter : said.substr(0, 40)) reader.say({&letter, 1});
    reader.say(said.substr(40, 32768 - 40));
    if (said.size() > 32768) reader.say(said.substr(32768));
    if (isEnded) reader.endSaying();
    EXPECT_EQ(reader.readAll(), expected) << said.size();
  }
}

TEST_F(StreamServer, NamesTheFileInAUrlThatEveryPlayerReads) {
  const std::string before = "http://127.0.0.1:" + std::to_string(url.port()) + kPath + "1/";
  const std::pair<const char*, const char*> names[] = {
      {"Some Film/Film [1080p] #1 50%?.mkv", "Film%20%5B1080p%5D%20%231%2050%25%3F.mkv"},
      {"映画%20.mkv", "%E6%98%A0%E7%94%BB%2520.mkv"},
      {"a (b) & c's, d.mp4", "a%20(b)%20&%20c's,%20d.mp4"}};
  for (const auto& [name, encoded] : names)
    EXPECT_EQ(urlOf(1, QString::fromUtf8(name)).toEncoded().toStdString(), before + encoded);
  for (const QString& bad : {QString(), QStringLiteral("/"), QStringLiteral("."),
                             QStringLiteral("a/.."), QString(QChar(0xd800))})
    EXPECT_EQ(urlOf(1, bad).toEncoded().toStdString(), before + "video");
}

TEST_F(StreamServer, ATorrentIsFoundAsLongAsItIsRegisteredAndServedUntilItStops) {
  HttpReader running(url);
  running.get(url);
  running.readHead();
  server->unregisterSource(source->key());
  HttpReader gone(url);
  gone.get(url);
  EXPECT_EQ(gone.readAll(), k404);
  source->arrive(kBefore, 262144);
  EXPECT_TRUE(running.read(262144) == film(0, 262144));
  source->stop();
  EXPECT_EQ(running.readAll(), "");

  server->registerSource(source);
  HttpReader again(url);
  again.get(url);
  EXPECT_EQ(again.readAll(), wholeHead());
}

TEST_F(StreamServer, CutsOutAFileThatIsCompleteAndSmallEnough) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("subs/about.txt"));
  const auto isCutOut = [&](int file) {
    return asio::co_spawn(pool.io(), extractFile(source, file, path), asio::use_future).get();
  };
  source->arrive(0, kBefore - 1 - MemorySource::kPiece);
  EXPECT_FALSE(isCutOut(0)) << "its last piece is missing";
  source->arriveAll();
  source->limitReads(1000);
  for (const int file : {0, 4, 9}) EXPECT_FALSE(isCutOut(file)) << "unread, too large, not there";
  EXPECT_FALSE(QFile::exists(path));
  source->limitReads(SIZE_MAX);
  EXPECT_TRUE(isCutOut(2)) << "empty";
  EXPECT_TRUE(isCutOut(0));
  QFile written(path);
  ASSERT_TRUE(written.open(QIODevice::ReadOnly));
  EXPECT_TRUE(written.readAll().toStdString() == film(-kBefore, kBefore));
}

} // namespace
} // namespace vellum::test
