#include "net/HttpClient.h"
#include "base/IoPool.h"
#include "integration/net/OwnCertificate.h"
#include "support/Gzip.h"
#include "world/MainThread.h"
#include "world/ScriptedServer.h"
#include <QDir>
#include <QSslServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;

namespace {

using namespace std::chrono_literals;
using Answer = ScriptedServer::Answer;
using Reason = NetError::Reason;

// How a request ended.
struct Ending {
  std::string how; // "=" and the body, the words of a failure, or "cancelled"
  HttpResponse response = {};
  Reason reason = Reason::Empty;
};

struct HttpClientTest : testing::Test, MainThread {
  static Flow<> await(Flow<HttpResponse> request, std::shared_ptr<std::promise<Ending>> promise) {
    Ending ending{"?"};
    try {
      ending.response = co_await std::move(request);
      ending.how = '=' + ending.response.body.toStdString();
    } catch (const NetError& error) {
      ending = {error.errorDescription().toStdString(), {{}, {}, error.status()}, error.reason()};
    } catch (const asio::system_error& error) {
      if (error.code() == asio::error::operation_aborted) ending.how = "cancelled";
    }
    promise->set_value(std::move(ending));
  }
  static Flow<HttpResponse> answer(Flow<QByteArray> fetch) {
    co_return HttpResponse{co_await std::move(fetch), {}, 0};
  }

  std::future<Ending> start(Flow<HttpResponse> request) {
    const auto promise = std::make_shared<std::promise<Ending>>();
    syncOn(strand, [&] { flows.spawn(await(std::move(request), promise)); });
    return promise->get_future();
  }
  std::future<Ending> start(Flow<QByteArray> fetch) { return start(answer(std::move(fetch))); }
  static Ending ending(std::future<Ending> future) {
    if (!turnUntil([&] { return future.wait_for(0s) == std::future_status::ready; }))
      return {"never"};
    return future.get();
  }
  Ending get(const QUrl& url, std::chrono::milliseconds timeout = 8s,
             std::int64_t maxBytes = HttpClient::kLargestBody) {
    return ending(start(client->fetchData(url, timeout, maxBytes)));
  }

  IoPool pool;
  Strand strand = pool.makeStrand();
  FlowGroup flows{strand};
  std::optional<HttpClient> client{std::in_place, main};
};

TEST_F(HttpClientTest, TheStatusDecidesWhetherAnAnswerIsGood) {
  QByteArrayList parts; // asked for; read once the server has gone
  std::optional<ScriptedServer> server;
  server.emplace([&](const QByteArray& request) { // which names the status
    if (request.contains("\r\nRange: bytes=0-6\r\n")) parts.append(request);
    return ScriptedServer::reply(request.mid(5, 3).toInt(), "plain",
                                 "Content-Type: text/x\r\nLocation: /200\r\n");
  });
  for (const int asked : {199, 200, 299, 300, 302, 404, 500}) {
    const QUrl url = server->url(u'/' + QString::number(asked));
    const int status = asked == 302 ? 200 : asked; // where that leads
    const bool isGood = status / 100 == 2;
    const Ending fetched = get(url);
    EXPECT_EQ(fetched.how, isGood ? "=plain" : "HTTP " + std::to_string(status));
    EXPECT_EQ(fetched.response.status, isGood ? 0 : status);
    const Ending part = ending(start(client->transport(8s, "bytes=0-6")(url)));
    EXPECT_EQ(part.how[0], '=') << "a transport leaves the judging to others: " << part.how;
    EXPECT_EQ(part.response.status, status);
    EXPECT_EQ(part.response.contentType, QStringLiteral("text/x"));
  }
  server.reset();
  EXPECT_EQ(parts.size(), 8) << "one is asked for twice, where it leads to";
  for (const QByteArray& part : parts)
    for (const char* line :
         {"\r\nUser-Agent: VellumApp/1.0 (macOS)\r\n", "\r\nAccept-Encoding: gzip\r\n"})
      EXPECT_TRUE(part.contains(line)) << part.toStdString();
}

TEST_F(HttpClientTest, KeepsAnswersOnDiskUntilToldToForgetThem) {
  const QTemporaryDir folder;
  ScriptedServer server([](const QByteArray&) {
    return ScriptedServer::reply(200, gzip("kept"),
                                 "Cache-Control: max-age=1000\r\nContent-Encoding: gzip\r\n");
  });
  const auto fetchTwice = [&] {
    for (int i = 0; i < 2; ++i) EXPECT_EQ(get(server.url()).how, "=kept");
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
  client->setCacheDirectory(folder.filePath(QStringLiteral("elsewhere")));
  EXPECT_EQ(fetchTwice(), 5);

  client.emplace(main);
  client->setCacheDirectory(folder.path());
  EXPECT_EQ(fetchTwice(), 5) << "what another run has kept";
  client.emplace(main);
  client->setCacheDirectory(folder.path());
  client->clearCache(); // before there is a network stack
  EXPECT_EQ(fetchTwice(), 6);
}

TEST_F(HttpClientTest, ACancellationMayMeetTheAnswerAtAnyMoment) {
  ScriptedServer server([](const QByteArray&) { return ScriptedServer::reply(200, "good"); });
  std::map<std::string, int> ends;
  for (int round = 0; round < 150; ++round) {
    asio::steady_timer timer(pool.io());
    timer.expires_after(std::chrono::microseconds(round * round));
    timer.async_wait(asio::bind_executor(strand, [this](asio::error_code stopped) {
      if (!stopped) flows.cancelAll();
    }));
    ++ends[ending(start(client->fetchData(server.url(), 1h))).how];
    EXPECT_TRUE(turnUntil([&] { return syncOn(strand, [&] { return flows.isIdle(); }); }));
  }
  EXPECT_EQ(ends["=good"] + ends["cancelled"], 150);
  EXPECT_EQ(ends.size(), 2U);
}

TEST_F(HttpClientTest, FetchesEndWithWhoeverAskedOrTheClientAndNoneBeginsAfterIt) {
  ScriptedServer server([](const QByteArray&) {
    return Answer{"HTTP/1.1 200 OK\r\n\r\n", "half", 1, 0ms, true};
  });
  const FetchData fetch = client->fetcher();
  for (const bool byClient : {false, true}) {
    std::vector<std::future<Ending>> running;
    for (int i = 0; i < 3; ++i) running.push_back(start(fetch(server.url(), 1h)));
    const int all = byClient ? 6 : 3;
    ASSERT_TRUE(turnUntil([&] { return server.requests() == all; }));
    if (byClient)
      client.reset();
    else
      asio::post(strand, [this] { flows.cancelAll(); });
    for (auto& one : running) EXPECT_EQ(ending(std::move(one)).how, "cancelled");
    EXPECT_TRUE(turnUntil([&] { return server.dropped() == all; }));
  }
  EXPECT_EQ(ending(start(fetch(server.url(), 1h))).how, "cancelled");
  EXPECT_EQ(server.requests(), 6);
}

TEST_F(HttpClientTest, AFailureSaysWhatTheNetworkDid) {
  for (const char* address : {"", "file:///etc/hostname", "ftp://127.0.0.1/x", "http:///path"})
    EXPECT_EQ(get(QUrl(QLatin1String(address))).how, "Invalid URL") << address;
  const QByteArray ok = "HTTP/1.1 200 OK\r\n";
  for (const QByteArray& head :
       {QByteArray(), QByteArray("SSH-2.0-nobody\r\n"), ok + "Content-Length: 100\r\n\r\n",
        ok + "Content-Encoding: gzip\r\n\r\nno gzip"}) {
    ScriptedServer server([&](const QByteArray&) { return Answer{head, "abc"}; });
    const Ending broken = get(server.url());
    EXPECT_EQ(broken.reason, Reason::Other) << head.toStdString() << broken.how;
  }
  const QUrl refused = ScriptedServer([](auto) { return Answer(); }).url();
  QSslServer stranger;
  stranger.setSslConfiguration(ownCertificate());
  ASSERT_TRUE(stranger.listen(QHostAddress::LocalHost));
  const QUrl untrusted(QStringLiteral("https://127.0.0.1:%1").arg(stranger.serverPort()));
  for (const auto& [url, reason, words] :
       {std::tuple(refused, Reason::CannotConnect, "Connection refused"),
        {QUrl(QStringLiteral("http://vellum.invalid")), Reason::HostNotFound, "not found"},
        {untrusted, Reason::Tls, "self-signed"}}) {
    const Ending ending = get(url);
    EXPECT_EQ(ending.reason, reason) << ending.how;
    EXPECT_NE(ending.how.find(words), std::string::npos) << ending.how;
    EXPECT_EQ(ending.response.status, 0);
  }
  ScriptedServer slow([&](const QByteArray&) { return Answer{ok + "\r\n", "x", 1000, 20ms}; });
  const Ending late = get(slow.url(), 300ms);
  EXPECT_EQ(late.how, "The request timed out") << "the whole takes too long, no pause does";
  EXPECT_EQ(late.reason, Reason::TimedOut);
  EXPECT_TRUE(turnUntil([&] { return slow.dropped() == 1; }));
}

TEST_F(HttpClientTest, ABodyBeyondTheLimitIsDropped) {
  const QByteArray block(1 << 20, 'x');
  const char* tooLarge = "The answer is too large";
  for (const bool isPacked : {false, true}) {
    ScriptedServer server([&](const QByteArray&) {
      return ScriptedServer::reply(200, isPacked ? gzip(block) : block,
                                   isPacked ? "Content-Encoding: gzip\r\n" : "");
    });
    EXPECT_EQ(get(server.url(), 8s, block.size()).response.body, block);
    EXPECT_EQ(get(server.url(), 8s, block.size() - 1).how, tooLarge);
  }
  ScriptedServer endless([&](const QByteArray&) {
    return Answer{"HTTP/1.1 200 OK\r\n\r\n", block, 2, 0ms, true};
  });
  EXPECT_EQ(get(endless.url(), 1h, block.size()).how, tooLarge);
  EXPECT_TRUE(turnUntil([&] { return endless.dropped() == 1; }));
}

} // namespace
} // namespace vellum::test
