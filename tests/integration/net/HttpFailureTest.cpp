#include "NetTest.h"
#include "support/Gzip.h"

namespace vellum::test {
namespace {

using HttpFailureTest = NetTest;

TEST_F(HttpFailureTest, OnlyAddressesOfTheWebAreFetched) {
  for (const char* address : {"", "file:///etc/hostname", "ftp://127.0.0.1/x", "data:text/plain,x",
                              "qrc:/x", "http://", "http:///path", "127.0.0.1", "magnet:?xt=x"}) {
    const Ending ending = get(QUrl(QLatin1String(address)));
    EXPECT_EQ(ending.error, QStringLiteral("Invalid URL")) << address;
    EXPECT_EQ(ending.body, "") << address;
  }
}

TEST_F(HttpFailureTest, ABrokenAnswerFailsWithTheWordsOfThePlatform) {
  QUrl refused;
  {
    ScriptedServer gone([](const QByteArray&) { return ScriptedServer::Answer{}; });
    refused = gone.url();
  }
  const Ending ending = get(refused);
  EXPECT_FALSE(ending.error.isEmpty());
  EXPECT_EQ(ending.status, 0);

  for (const char* head :
       {"", "SSH-2.0-nobody\r\n", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n",
        "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\nno gzip"}) {
    ScriptedServer server([&](const QByteArray&) { return ScriptedServer::Answer{head, "abc"}; });
    const Ending broken = get(server.url());
    EXPECT_FALSE(broken.error.isEmpty()) << head;
    EXPECT_EQ(broken.body, "") << head;
  }
}

TEST_F(HttpFailureTest, TheTimeOutBoundsTheWholeAndNotAPause) {
  ScriptedServer server([](const QByteArray&) {
    return ScriptedServer::Answer{"HTTP/1.1 200 OK\r\n\r\n", "x", 1000, 20ms};
  });
  const auto began = std::chrono::steady_clock::now();
  EXPECT_EQ(get(server.url(), 300ms).error, QStringLiteral("The request timed out"));
  EXPECT_LT(std::chrono::steady_clock::now() - began, 5s);
  EXPECT_TRUE(turnUntil([&] { return server.dropped() == 1; }));
}

TEST_F(HttpFailureTest, ABodyBeyondTheLimitIsDropped) {
  const QByteArray block(1 << 20, 'x');
  const QString tooLarge = QStringLiteral("The answer is too large");
  for (const QByteArray& head :
       {QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 2147483648\r\n\r\n"),
        QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 2147483648\r\n\r\n") + QByteArray(1, 'x'),
        QByteArray("HTTP/1.1 200 OK\r\n\r\n")}) {
    ScriptedServer server([&](const QByteArray&) {
      return ScriptedServer::Answer{head, block, 2048};
    });
    EXPECT_EQ(get(server.url()).error, tooLarge);
    EXPECT_TRUE(turnUntil([&] { return server.dropped() == 1; }));
  }
  ScriptedServer server([&](const QByteArray&) { return ScriptedServer::reply(200, block); });
  ScriptedServer packed([&](const QByteArray&) {
    return ScriptedServer::reply(200, gzip(block), "Content-Encoding: gzip\r\n");
  });
  EXPECT_EQ(get(server.url(), 8s, block.size()).body.size(), block.size());
  EXPECT_EQ(get(server.url(), 8s, block.size() - 1).error, tooLarge);
  EXPECT_EQ(get(packed.url(), 8s, block.size()).body, block);
  EXPECT_EQ(get(packed.url(), 8s, block.size() - 1).error, tooLarge);
}

} // namespace
} // namespace vellum::test
