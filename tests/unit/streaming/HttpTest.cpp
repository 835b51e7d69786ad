#include "streaming/HttpRequest.h"
#include <gtest/gtest.h>
#include <sstream>

namespace vellum {
namespace {

using Rows = std::istringstream; // words, in pairs

TEST(HttpRange, AsTheTableOfRangesSays) {
  const auto asked = [](const std::optional<std::string>& header, std::int64_t length = 50) {
    const auto range = parseRange(header, length);
    return range ? std::to_string(range->start) + "-" + std::to_string(range->end) : "none";
  };
  Rows rows(R"(
    items=1-2     0-49    bytes=0-      0-49    BYTES=0-0     0-0     bytes=10-19     10-19
    bytes=10-999  10-49   bytes=49-     49-49   bytes=50-     none    bytes=50-60     none
    bytes=5-2     none    bytes=-100    0-49    bytes=-1      49-49   bytes=-0        none
    bytes=10-x    10-49   bytes=-x      none    bytes=--5     none    bytes=-+-5      none
    bytes=7       none    bytes=x-9     none    bytes=+3-+4   3-4     bytes=1-2,40-41 1-2
    bytes=,,3-4   3-4     bytes=,       none    bytes=        none
    bytes=10-99999999999999999999 10-49         bytes=99999999999999999999- none )");
  for (std::string header, range; rows >> header >> range;)
    EXPECT_EQ(asked(header), range) << header;
  EXPECT_EQ(asked({}), "0-49");
  EXPECT_EQ(asked("bytes=0-0", 1), "0-0");
}

TEST(HttpRequest, ReadsMethodPathAndTheLastOfEachHeader) {
  const auto request =
      HttpRequest::parse("GET  /abc//1/film.mkv?x HTTP/1.1\r\nRANGE : bytes=1-\r\n"
                         "range: \t bytes=2-\v \r\nno colon here\r\nHost:localhost");
  EXPECT_EQ(request.path, (std::vector<std::string>{"abc", "1", "film.mkv?x"}));
  EXPECT_EQ(request.range, "bytes=2-");
  EXPECT_EQ(request.host, "localhost");
  for (const char* head : {"GET /", "HEAD / HTTP/1.1"})
    EXPECT_TRUE(HttpRequest::parse(head).isReadable()) << head;
  for (const char* head : {"", "GET", "get / HTTP/1.1", "POST / HTTP/1.1", " \r\nGET / x"})
    EXPECT_FALSE(HttpRequest::parse(head).isReadable()) << head;
}

TEST(HttpRequest, OnlyNamesOfThisMachineAreAnswered) {
  const auto isForLoopback = [](const std::string& host) {
    return HttpRequest::parse("GET / HTTP/1.1\r\nHost: " + host).isForLoopback();
  };
  EXPECT_TRUE(HttpRequest::parse("GET / HTTP/1.0").isForLoopback());
  Rows good("127.0.0.1 127.0.0.1:8080 127.9.8.255 LocalHost:1 [::1] [::1]:80");
  for (std::string host; good >> host;) EXPECT_TRUE(isForLoopback(host)) << host;
  Rows bad(R"(
    example.com 127.0.0.1.example.com 127.0.0.1example.com localhost.evil 128.0.0.1 127.0.0
    127.0.0.1.1 127.0.0.256 127.0.0.0001 127..0.1 127.0.0.1. 127.0.0./ [::1 [::2] [::1].evil:80
    evil@127.0.0.1 )");
  for (std::string host; bad >> host;) EXPECT_FALSE(isForLoopback(host)) << host;
}

} // namespace
} // namespace vellum
