// What the stream server answers, byte for byte.
#include "integration/streaming/StreamWorld.h"

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

TEST_F(StreamServer, RefusesWhatItCannotServe) {
  source->arriveAll();
  const std::string film = kPath + "1/film.mp4 HTTP/1.1\r\n";
  const std::pair<std::string, std::string> cases[] = {
      {"\r\n\r\n", k405},
      {"GET\r\n\r\n", k405},
      {"POST " + film + "\r\n", k405},
      {"get " + film + "\r\n", k405},
      {"POST " + film + "\r\n" + std::string(20'000, 'x'), k405},
      {"GET / HTTP/1.1\r\n\r\n", k404},
      {"GET " + kPath + " HTTP/1.1\r\n\r\n", k404},
      {"GET /" + std::string(40, 'b') + "/1/x HTTP/1.1\r\n\r\n", k404},
      {"GET " + kPath + "x/film.mp4 HTTP/1.1\r\n\r\n", k404},
      {"GET " + kPath + "1x/film.mp4 HTTP/1.1\r\n\r\n", k404},
      {"GET " + kPath + "-1/film.mp4 HTTP/1.1\r\n\r\n", k404},
      {"GET " + kPath + "3/film.mp4 HTTP/1.1\r\n\r\n", k404},
      {"GET " + kPath + "9223372036854775808/film.mp4 HTTP/1.1\r\n\r\n", k404},
      {"GET " + kPath + "9223372036854775807/film.mp4 HTTP/1.1\r\n\r\n", k404},
      {"GET " + kPath + "2/empty.mkv HTTP/1.1\r\n\r\n", k404},
      {"GET " + film + "Host: rebound.example:80\r\n\r\n", k404},
      {"POST " + film + "Host: rebound.example\r\n\r\n", k405},
      {"GET " + film + "Range: bytes=16000000-\r\n\r\n", k416},
      {"GET " + film + "range: bytes=5-2\r\n\r\n", k416},
      {"GET " + film + "Range: bytes=\r\n\r\n", k416},
      {"HEAD " + film + "Range: bytes=,\r\n\r\n", k416},
  };
  for (const auto& [request, expected] : cases) {
    HttpReader reader(url);
    reader.say(request);
    EXPECT_EQ(reader.readAll(), expected) << request.substr(0, 200);
    EXPECT_FALSE(reader.wasReset()) << request.substr(0, 200);
  }
}

TEST_F(StreamServer, ServesWholeFilesRangesAndHeads) {
  source->arriveAll();
  const std::string line = kPath + "+1/any/name?query HTTP/1.1\r\nHost: LOCALHOST:1\r\n";
  const std::pair<std::string, std::string> cases[] = {
      {"GET " + line + "\r\n", wholeHead() + film(0, kFilm)},
      {"GET " + line + "Range: bytes=0-\r\n\r\n", head206(0, kFilm - 1) + film(0, kFilm)},
      {"GET " + line + "Range: lines=1-2\r\n\r\n", head206(0, kFilm - 1) + film(0, kFilm)},
      {"GET " + line + "Range: bytes=262143-262144\r\n\r\n",
       head206(262143, 262144) + film(262143, 2)},
      {"GET " + line + "Range: bytes=-1\r\n\r\n",
       head206(kFilm - 1, kFilm - 1) + film(kFilm - 1, 1)},
      {"GET " + line + "Range: bytes=-99999999\r\n\r\n", head206(0, kFilm - 1) + film(0, kFilm)},
      {"GET " + line + "Range: bytes=9-9\r\n\r\nbehind the blank line", head206(9, 9) + film(9, 1)},
      {"HEAD " + line + "\r\n", wholeHead()},
      {"HEAD " + line + "Range: bytes=7-\r\n\r\n", head206(7, kFilm - 1)},
  };
  for (const auto& [request, expected] : cases) {
    HttpReader reader(url);
    reader.say(request);
    // Not EXPECT_EQ, which would print the film.
    EXPECT_TRUE(reader.readAll() == expected) << request;
  }
}

TEST_F(StreamServer, ReadsAHeadHoweverItComesAndUpToItsLimit) {
  source->arriveAll();
  const std::string request = "GET " + kPath + "1/x HTTP/1.1\r\nRange: bytes=1-3\r\n";
  HttpReader dribbling(url);
  for (const char c : request + "\r\n") dribbling.say({&c, 1});
  EXPECT_EQ(dribbling.readAll(), head206(1, 3) + film(1, 3));

  std::string longest = request + "X: " + std::string(32768 - request.size() - 3, 'x');
  HttpReader atTheLimit(url);
  atTheLimit.say(longest);
  atTheLimit.say("\r\n\r\n");
  EXPECT_EQ(atTheLimit.readAll(), head206(1, 3) + film(1, 3));

  HttpReader beyond(url);
  beyond.say(longest + "x");
  EXPECT_EQ(beyond.readAll(), "") << "closed without an answer, though the client says no more";

  HttpReader brokenOff(url);
  brokenOff.say(request);
  brokenOff.endSaying();
  EXPECT_EQ(brokenOff.readAll(), "");

  HttpReader halfClosed(url);
  halfClosed.say(request + "\r\n");
  halfClosed.endSaying();
  EXPECT_EQ(halfClosed.readAll(), head206(1, 3) + film(1, 3));
}

TEST_F(StreamServer, NamesTheFileInAUrlThatEveryPlayerReads) {
  const auto path = [&](const char* name) {
    const QByteArray encoded = urlOf(1, QString::fromUtf8(name)).toEncoded();
    const QByteArray before =
        "http://127.0.0.1:" + QByteArray::number(url.port()) + QByteArray::fromStdString(kPath);
    EXPECT_TRUE(encoded.startsWith(before)) << encoded.toStdString();
    return encoded.mid(before.size()).toStdString();
  };
  EXPECT_EQ(path("Some Film/Film [1080p] #1 50%?.mkv"),
            "1/Film%20%5B1080p%5D%20%231%2050%25%3F.mkv");
  EXPECT_EQ(path("映画%20.mkv"), "1/%E6%98%A0%E7%94%BB%2520.mkv");
  EXPECT_EQ(path("a (b) & c's, d.mp4"), "1/a%20(b)%20&%20c's,%20d.mp4");
  for (const char* bad : {"", "/", "..", "a/."}) EXPECT_EQ(path(bad), "1/video") << bad;
}

TEST_F(StreamServer, AnUnregisteredTorrentIsNotFound) {
  source->arriveAll();
  server->unregisterSource(source->key());
  HttpReader gone(url);
  gone.get(url);
  EXPECT_EQ(gone.readAll(), k404);
  server->registerSource(source);
  HttpReader back(url);
  back.get(url, "Range: bytes=0-0\r\n");
  EXPECT_EQ(back.readAll(), head206(0, 0) + film(0, 1));
}

} // namespace
} // namespace vellum::test
