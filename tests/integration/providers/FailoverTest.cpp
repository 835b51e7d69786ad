#include "net/HttpClient.h"
#include "providers/ProviderClient.h"
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
};

TEST_F(FailoverTest, EveryMisbehaviourIsPassedOver) {
  const QByteArray packed = "Content-Encoding: gzip\r\n";
  const QByteArray bomb = gzip(QByteArray(HttpClient::kLargestBody + 1, '['));
  const std::vector<ScriptedServer::Answer> answers{
      {"HTTP/1.1 200 OK\r\n\r\n", "[", 1, {}, true},
      {"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n", "[]"},
      ScriptedServer::reply(503, "[]"),
      ScriptedServer::reply(302, "[]"),
      ScriptedServer::reply(200, bomb, packed),
      ScriptedServer::reply(200, "[]", "Content-Type: text/html\r\n"),
      ScriptedServer::reply(403, "<html>no"),
      ScriptedServer::reply(302, "", "Location: /8/\r\n"),
      ScriptedServer::reply(200, gzip("[]"), packed)};
  ScriptedServer server([&](const QByteArray& request) { // "/3/…" has the fourth answer
    return answers[std::size_t(request.mid(5, 1).toInt())];
  });
  ProviderConfig config{
      .name = QStringLiteral("P"),
      .kind = ProviderKind::Apibay,
      .baseURL = QStringLiteral("http://vellum.invalid"),
      .apiKey = {},
      .mirrors = {ScriptedServer([](auto) { return ScriptedServer::Answer(); }).url().toString()}};
  for (int i = 0; i < 8; ++i)
    config.mirrors.append(server.url(QStringLiteral("/%1").arg(i)).toString());
  SearchAggregator aggregator(main, pool);
  const auto search = [&](std::chrono::milliseconds patience) {
    aggregator.search(QStringLiteral("x"), {std::make_shared<IndexerProvider>(
                                               config, client->transport(patience), memory)});
  };
  search(500ms);
  ASSERT_TRUE(turnUntil([&] { return !aggregator.isSearching(); }));
  EXPECT_EQ(aggregator.statuses()[0].state, ProviderStatus::State::Ok);
  EXPECT_EQ(ProviderClient::lastWorking(memory, config.id), config.mirrors.last());
  EXPECT_EQ(server.requests(), 9);

  config.mirrors.resize(8); // without the good one
  search(500ms);
  ASSERT_TRUE(turnUntil([&] { return !aggregator.isSearching(); }));
  EXPECT_EQ(
      aggregator.statuses()[0].text,
      QStringLiteral("Provider returned a web page instead of API data (P at vellum.invalid). "
                     "Try another mirror in Settings → Providers"));

  // The network goes first: the search fails, nothing hangs.
  config.mirrors = {config.mirrors[1]};
  const int before = server.requests();
  search(1h);
  ASSERT_TRUE(turnUntil([&] { return server.requests() == before + 1; }));
  client.reset();
  EXPECT_TRUE(turnUntil([&] { return !aggregator.isSearching(); }));
  EXPECT_EQ(aggregator.statuses()[0].state, ProviderStatus::State::Failed);
}

} // namespace
} // namespace vellum::test
