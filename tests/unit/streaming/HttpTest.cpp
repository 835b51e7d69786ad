#include "streaming/HttpAnswer.h"
#include "streaming/HttpRequest.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(HttpRange, AsTheTableOfRangesSays) {
  struct Case {
    const char* header; // nullptr: none
    std::int64_t length;
    std::optional<ByteRange> expected;
  };
  const Case cases[] = {
      {nullptr, 50, ByteRange{0, 49}},
      {"items=1-2", 50, ByteRange{0, 49}},
      {"", 50, ByteRange{0, 49}},
      {"bytes=0-", 50, ByteRange{0, 49}},
      {"BYTES=0-0", 50, ByteRange{0, 0}},
      {"bytes=10-19", 50, ByteRange{10, 19}},
      {"bytes=10-999", 50, ByteRange{10, 49}},
      {"bytes=49-", 50, ByteRange{49, 49}},
      {"bytes=50-", 50, std::nullopt},
      {"bytes=5-2", 50, std::nullopt},
      {"bytes=10-x", 50, ByteRange{10, 49}},
      {"bytes=10-99999999999999999999", 50, ByteRange{10, 49}},
      {"bytes=99999999999999999999-", 50, std::nullopt},
      {"bytes=+3-+4", 50, ByteRange{3, 4}},
      {"bytes=-100", 50, ByteRange{0, 49}},
      {"bytes=-1", 50, ByteRange{49, 49}},
      {"bytes=-0", 50, std::nullopt},
      {"bytes=-x", 50, std::nullopt},
      {"bytes=--5", 50, std::nullopt},
      {"bytes=7", 50, std::nullopt},
      {"bytes=x-9", 50, std::nullopt},
      {"bytes=1-2,40-41", 50, ByteRange{1, 2}},
      {"bytes=,,3-4", 50, ByteRange{3, 4}},
      {"bytes=,", 50, std::nullopt},
      {"bytes=", 50, std::nullopt},
      {"bytes=0-0", 1, ByteRange{0, 0}},
  };
  for (const auto& [header, length, expected] : cases)
    EXPECT_EQ(
        parseRange(header != nullptr ? std::optional<std::string>(header) : std::nullopt, length),
        expected)
        << (header != nullptr ? header : "none");
}

TEST(HttpRequest, ReadsMethodPathAndTheLastOfEachHeader) {
  const auto request = HttpRequest::parse("GET  /abc//1/film.mkv?x HTTP/1.1\r\nRANGE : bytes=1-\r\n"
                                          "range:  bytes=2- \r\nno colon here\r\nHost: localhost");
  EXPECT_EQ(request.method, "GET");
  EXPECT_EQ(request.path, (std::vector<std::string>{"abc", "1", "film.mkv?x"}));
  EXPECT_EQ(request.range, "bytes=2-");
  EXPECT_TRUE(request.isReadable());
  for (const char* head : {"", "GET", "get / HTTP/1.1", "POST / HTTP/1.1", " \r\nGET / x"})
    EXPECT_FALSE(HttpRequest::parse(head).isReadable()) << head;
}

TEST(HttpRequest, OnlyNamesOfThisMachineAreAnswered) {
  const auto isForLoopback = [](const std::string& host) {
    return HttpRequest::parse("GET / HTTP/1.1\r\nHost: " + host).isForLoopback();
  };
  EXPECT_TRUE(HttpRequest::parse("GET / HTTP/1.0").isForLoopback());
  for (const char* good :
       {"127.0.0.1", "127.0.0.1:8080", "127.9.8.7", "LocalHost:1", "[::1]", "[::1]:80"})
    EXPECT_TRUE(isForLoopback(good)) << good;
  for (const char* bad : {"", "example.com", "127.0.0.1.example.com", "127.0.0.1example.com",
                          "localhost.evil", "128.0.0.1", "127.0.0", "127.0.0.256", "127.0.0.0001",
                          "127..0.1", "[::1", "[::2]", "[::1].evil:80", "evil@127.0.0.1"})
    EXPECT_FALSE(isForLoopback(bad)) << bad;
}

TEST(HttpAnswer, HeadsByteForByte) {
  EXPECT_EQ(answers::head({0, 49}, 50, "video/mp4", false),
            "HTTP/1.1 200 OK\r\nContent-Type: video/mp4\r\nAccept-Ranges: bytes\r\n"
            "Content-Length: 50\r\nConnection: close\r\n\r\n");
  EXPECT_EQ(answers::head({10, 19}, 50, "video/mp4", true),
            "HTTP/1.1 206 Partial Content\r\nContent-Type: video/mp4\r\nAccept-Ranges: bytes\r\n"
            "Content-Length: 10\r\nConnection: close\r\nContent-Range: bytes 10-19/50\r\n\r\n");
  EXPECT_EQ(answers::rangeNotSatisfiable(50),
            "HTTP/1.1 416 Range Not Satisfiable\r\nContent-Range: bytes */50\r\n"
            "Content-Length: 0\r\n\r\n");
}

TEST(HttpAnswer, TypesFollowTheExtension) {
  for (const auto& [path, type] :
       {std::pair{"a/B.MP4", "video/mp4"}, std::pair{"a.m4v", "video/mp4"},
        std::pair{"a.mov", "video/quicktime"}, std::pair{"a.mkv", "video/x-matroska"},
        std::pair{"a.webm", "video/webm"}, std::pair{"a.avi", "video/x-msvideo"},
        std::pair{"a.ts", "video/mp2t"}, std::pair{"a.mp4/b", "application/octet-stream"},
        std::pair{"mp4", "application/octet-stream"}})
    EXPECT_EQ(answers::mime(QString::fromUtf8(path)), type) << path;
}

} // namespace
} // namespace vellum
