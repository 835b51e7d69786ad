#include "NetTest.h"
#include "support/Gzip.h"
#include <QDir>
#include <QTemporaryDir>

namespace vellum::test {
namespace {

using HttpClientTest = NetTest;

TEST_F(HttpClientTest, TheStatusDecidesWhetherAnAnswerIsGood) {
  struct Case {
    int status;
    QByteArray body;
    QString error;
  };
  for (const auto& [status, body, error] :
       {Case{199, "early", QStringLiteral("HTTP 199")}, Case{200, "good", {}}, Case{200, "", {}},
        Case{299, "also good", {}}, Case{300, "choose", QStringLiteral("HTTP 300")},
        Case{304, "", QStringLiteral("HTTP 304")}, Case{401, "who", QStringLiteral("HTTP 401")},
        Case{404, "none", QStringLiteral("HTTP 404")},
        Case{500, "broken", QStringLiteral("HTTP 500")}}) {
    ScriptedServer server([&](const QByteArray&) { return ScriptedServer::reply(status, body); });
    const Ending ending = get(server.url());
    EXPECT_EQ(ending.error, error) << status;
    EXPECT_EQ(ending.status, error.isEmpty() ? 0 : status);
    EXPECT_EQ(ending.body, error.isEmpty() ? body : QByteArray()) << status;
  }
  ScriptedServer server([](const QByteArray&) { // the status also before what the body may be
    return ScriptedServer::reply(404, "not packed", "Content-Encoding: gzip\r\n");
  });
  EXPECT_EQ(get(server.url()).error, QStringLiteral("HTTP 404"));
}

TEST_F(HttpClientTest, AsksWithTheNameOfTheProgramAndFollowsRedirects) {
  QByteArray asked; // read once the server has answered
  ScriptedServer server([&](const QByteArray& request) {
    asked = request;
    if (request.startsWith("GET /old "))
      return ScriptedServer::reply(302, "moved", "Location: /new?a=b\r\n");
    if (request.startsWith("GET /loop "))
      return ScriptedServer::reply(302, "again", "Location: /loop\r\n");
    if (request.startsWith("GET /disk "))
      return ScriptedServer::reply(302, "down", "Location: file:///etc/hostname\r\n");
    return ScriptedServer::reply(200, "arrived");
  });
  EXPECT_EQ(get(server.url(QStringLiteral("/old"))).body, "arrived");
  EXPECT_TRUE(asked.startsWith("GET /new?a=b HTTP/1.1\r\n")) << asked.toStdString();
  EXPECT_TRUE(asked.contains("User-Agent: VellumApp/1.0 (macOS)\r\n")) << asked.toStdString();

  for (const auto& path : {QStringLiteral("/loop"), QStringLiteral("/disk")}) {
    const Ending ending = get(server.url(path));
    EXPECT_FALSE(ending.error.isEmpty()) << path.toStdString();
    EXPECT_EQ(ending.body, "");
  }
  EXPECT_LT(server.requests(), 100);
}

TEST_F(HttpClientTest, KeepsAnswersOnDiskUntilToldToForgetThem) {
  const QTemporaryDir folder;
  ScriptedServer server([](const QByteArray& request) {
    EXPECT_TRUE(request.contains("Accept-Encoding: gzip\r\n")) << request.toStdString();
    return ScriptedServer::reply(200, gzip("kept"),
                                 "Cache-Control: max-age=1000\r\nContent-Encoding: gzip\r\n");
  });
  const auto fetchTwice = [&] {
    EXPECT_EQ(get(server.url()).body, "kept");
    EXPECT_EQ(get(server.url()).body, "kept");
    return server.requests();
  };
  EXPECT_EQ(fetchTwice(), 2) << "without a folder nothing is kept";
  EXPECT_EQ(client->clearCache(), QString());
  client->setCacheDirectory(folder.path());
  EXPECT_EQ(fetchTwice(), 3);
  const QString forgotten = client->clearCache();
  EXPECT_TRUE(forgotten.startsWith(folder.path() + u'/'));
  EXPECT_EQ(fetchTwice(), 4);
  EXPECT_TRUE(QDir(forgotten).removeRecursively());
  EXPECT_EQ(fetchTwice(), 4);

  client.emplace(main);
  client->setCacheDirectory(folder.path());
  EXPECT_EQ(fetchTwice(), 4) << "what another run has kept";
  client.emplace(main);
  client->setCacheDirectory(folder.path());
  client->clearCache(); // before there is a network stack
  EXPECT_EQ(fetchTwice(), 5);
}

TEST_F(HttpClientTest, TheCacheMovesAndIsClearedUnderRunningRequests) {
  const QTemporaryDir folder;
  const QByteArray headers = "HTTP/1.1 200 OK\r\nCache-Control: max-age=1000\r\n";
  ScriptedServer server([&](const QByteArray& request) {
    const bool isLong = request.startsWith("GET /long ");
    return isLong ? ScriptedServer::Answer{headers + "Content-Length: 6000000\r\n\r\n",
                                           QByteArray(300'000, 'x'), 20, 10ms}
                  : ScriptedServer::Answer{headers + "Content-Length: 20\r\n\r\n", "x", 20, 10ms};
  });
  const QUrl urls[] = {server.url(QStringLiteral("/long")), server.url(QStringLiteral("/short"))};
  const auto changes = {
      std::function([&] { client->setCacheDirectory(folder.filePath(QStringLiteral("b"))); }),
      std::function([&] { client->clearCache(); })};
  client->setCacheDirectory(folder.filePath(QStringLiteral("a")));
  int asked = 0;
  for (const auto& change : changes) {
    std::array<std::promise<Ending>, 2> promises;
    for (int i = 0; i < 2; ++i) start(client->fetchData(urls[i], 1h), promises[i]);
    asked += 2;
    ASSERT_TRUE(turnUntil([&] { return server.requests() == asked; }));
    change();
    for (auto& promise : promises) EXPECT_EQ(ending(promise).error, QString());
    for (const QUrl& url : urls) EXPECT_GE(get(url).body.size(), 20);
    asked = server.requests(); // an answer under way may be kept or not
    for (const QUrl& url : urls) EXPECT_GE(get(url).body.size(), 20);
    EXPECT_EQ(server.requests(), asked) << "what comes after the change is kept";
    client->clearCache();
  }
}

TEST_F(HttpClientTest, ACancelledCoroutineGoesOnAtOnceAndTheConnectionIsDropped) {
  ScriptedServer server([](const QByteArray&) {
    return ScriptedServer::Answer{"HTTP/1.1 200 OK\r\n\r\n", "half", 1, 0ms, true};
  });
  std::promise<Ending> promise;
  start(client->fetchData(server.url(), 1h), promise);
  ASSERT_TRUE(turnUntil([&] { return server.requests() == 1; }));
  asio::post(strand, [this] { flows.cancelAll(); });
  EXPECT_EQ(ending(promise).code, asio::error::operation_aborted);
  EXPECT_TRUE(turnUntil([&] { return server.dropped() == 1; }));
}

TEST_F(HttpClientTest, ACancellationMayMeetTheAnswerAtAnyMoment) {
  ScriptedServer server([](const QByteArray&) { return ScriptedServer::reply(200, "good"); });
  int good = 0;
  int cancelled = 0;
  constexpr int kRounds = 150;
  for (int round = 0; round < kRounds; ++round) {
    std::promise<Ending> promise;
    asio::steady_timer timer(pool.io());
    timer.expires_after(std::chrono::microseconds(round * round));
    timer.async_wait(asio::bind_executor(strand, [this](asio::error_code stopped) {
      if (!stopped) flows.cancelAll();
    }));
    start(client->fetchData(server.url(), 1h), promise);
    const Ending result = ending(promise);
    EXPECT_EQ(result.error, QString());
    good += result.body == "good" ? 1 : 0;
    cancelled += result.code == asio::error::operation_aborted ? 1 : 0;
    EXPECT_TRUE(turnUntil([&] { return syncOn(strand, [&] { return flows.isIdle(); }); }));
  }
  EXPECT_EQ(good + cancelled, kRounds);
  EXPECT_GT(cancelled, 0);
  EXPECT_GT(good, 0);
}

TEST_F(HttpClientTest, FetchesEndWithTheClientAndNoneBeginsAfterIt) {
  ScriptedServer server([](const QByteArray&) {
    return ScriptedServer::Answer{"HTTP/1.1 200 OK\r\n\r\n", "half", 1, 0ms, true};
  });
  const FetchData fetch = client->fetcher();
  std::array<std::promise<Ending>, 3> promises;
  for (auto& promise : promises) start(fetch(server.url(), 1h), promise);
  ASSERT_TRUE(turnUntil([&] { return server.requests() == 3; }));
  client.reset();
  for (auto& promise : promises) EXPECT_EQ(ending(promise).code, asio::error::operation_aborted);
  EXPECT_TRUE(turnUntil([&] { return server.dropped() == 3; }));

  std::promise<Ending> late;
  start(fetch(server.url(), 1h), late);
  EXPECT_EQ(ending(late).code, asio::error::operation_aborted);
  EXPECT_EQ(server.requests(), 3);
}

} // namespace
} // namespace vellum::test
