#include "net/HttpClient.h"
#include "providers/ProviderHealthChecker.h"
#include "providers/SearchAggregator.h"
#include "support/Gzip.h"
#include "world/MainThread.h"
#include "world/ScriptedServer.h"
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;

namespace {

using namespace std::chrono_literals;

struct FailoverTest : testing::Test, MainThread {
  IoPool pool;
  PreferenceStore memory;
  std::optional<HttpClient> client{std::in_place, main};
  SystemClock clock;
};

TEST_F(FailoverTest, EveryMisbehaviourIsToldAndPassedOver) {
  using Answer = ScriptedServer::Answer;
  const QByteArray packed = "Content-Encoding: gzip\r\n";
  const QByteArray bomb = gzip(QByteArray(HttpClient::kLargestBody + 1, '['));
  const auto told = [](const char* words) { return QLatin1String(words); };
  struct Mirror {
    Answer answer;
    QString detail; // how it begins
    bool reachable = true;
  };
  const QString page = told("Provider returned a web page instead of API data");
  const QString good = told("Reachable, API format OK");
  const std::vector<Mirror> mirrors{
      {{"HTTP/1.1 200 OK\r\n\r\n", "[", 1, {}, true}, told("Failed: timed out"), false},
      {{"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n", "[]"}, told("Failed: "), false},
      {ScriptedServer::reply(503, "[]"), told("Failed: HTTP 503")},
      {ScriptedServer::reply(302, "[]"), told("Failed: HTTP 302")},
      {ScriptedServer::reply(200, bomb, packed), told("Failed: returned a non-API response")},
      {ScriptedServer::reply(200, "[]", "Content-Type: text/html\r\n"), page},
      {ScriptedServer::reply(403, "<html>no"), page},
      {ScriptedServer::reply(302, "", "Location: /8/\r\n"), good},
      {ScriptedServer::reply(200, gzip("[]"), packed), good}};
  ScriptedServer server([&](const QByteArray& request) { // for "/3/…" the fourth mirror's answer
    return mirrors[std::size_t(request.mid(5, 1).toInt())].answer;
  });
  ProviderConfig config{
      .name = told("P"), .kind = ProviderKind::Apibay, .baseURL = {}, .apiKey = {}, .mirrors = {}};
  for (std::size_t i = 0; i < mirrors.size(); ++i)
    config.mirrors.append(server.url(QStringLiteral("/%1").arg(i)).toString());
  std::optional<ScriptedServer> gone(std::in_place, [](const QByteArray&) { return Answer(); });
  config.mirrors.append(gone->url().toString());
  gone.reset();
  config.mirrors.append(told("http://vellum.invalid"));

  FlowGroup flows(main.executor());
  std::vector<MirrorHealth> lines;
  const auto check = [&]() -> Flow<> {
    lines = co_await flowOn(
        pool.makeWorkerStrand(),
        ProviderHealthChecker::check(config, client->transport(500ms), memory, clock));
  };
  flows.spawn(check());
  ASSERT_TRUE(turnUntil([&] { return !lines.empty(); }));
  ASSERT_EQ(lines.size(), mirrors.size() + 2);
  for (std::size_t i = 0; i < mirrors.size(); ++i) {
    EXPECT_TRUE(lines[i].detail.startsWith(mirrors[i].detail)) << lines[i].detail.toStdString();
    EXPECT_EQ(lines[i].reachable, mirrors[i].reachable) << i;
    EXPECT_EQ(lines[i].formatOK, mirrors[i].detail == good) << i;
  }
  EXPECT_EQ(lines[mirrors.size()].detail, told("Failed: connection refused"));
  EXPECT_EQ(lines.back().detail, told("Failed: DNS lookup failed"));

  // The same walk as a search: past all that fail, to the first that is good.
  SearchAggregator aggregator(main, pool);
  const auto provider = std::make_shared<IndexerProvider>(config, client->transport(500ms), memory);
  aggregator.search(told("x"), {provider});
  ASSERT_TRUE(turnUntil([&] { return !aggregator.isSearching(); }));
  EXPECT_EQ(aggregator.statuses()[0].state, ProviderStatus::State::Ok);
  EXPECT_EQ(ProviderClient::lastWorking(memory, config.id), config.mirrors[7]);

  // The network goes first: the search fails, nothing hangs.
  config.mirrors.resize(1);
  const int before = server.requests();
  aggregator.search(told("y"),
                    {std::make_shared<IndexerProvider>(config, client->transport(), memory)});
  ASSERT_TRUE(turnUntil([&] { return server.requests() == before + 1; }));
  client.reset();
  EXPECT_TRUE(turnUntil([&] { return !aggregator.isSearching(); }));
  EXPECT_EQ(aggregator.statuses()[0].state, ProviderStatus::State::Failed);
}

} // namespace
} // namespace vellum::test
