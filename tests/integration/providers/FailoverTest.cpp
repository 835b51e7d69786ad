#include "base/IoPool.h"
#include "net/HttpClient.h"
#include "providers/ProviderHealthChecker.h"
#include "providers/SearchAggregator.h"
#include "support/Gzip.h"
#include "world/LoopbackThread.h"
#include "world/MainThread.h"
#include "world/ScriptedServer.h"
#include <asio/write.hpp>
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;
namespace {

using namespace std::chrono_literals;

QString text(const char* latin1) { return QString::fromLatin1(latin1); }

// Speaks first, and not TLS.
class PlainTalker {
public:
  PlainTalker() {
    m_thread.run([this] { m_flows.spawn(talk()); });
  }
  ~PlainTalker() {
    m_thread.run([this] { m_acceptor.close(); });
    m_thread.join();
  }
  QString address() const {
    return text("https://127.0.0.1:%1").arg(m_acceptor.local_endpoint().port());
  }

private:
  Flow<> talk() {
    for (;;) {
      auto socket = co_await m_acceptor.async_accept(asio::use_awaitable);
      co_await asio::async_write(socket, asio::buffer("SSH-2.0-nobody\r\n", 16),
                                 asio::use_awaitable);
    }
  }
  LoopbackThread m_thread;
  asio::ip::tcp::acceptor m_acceptor{m_thread.io(),
                                     asio::ip::tcp::endpoint(asio::ip::address_v4::loopback(), 0)};
  FlowGroup m_flows{m_thread.io().get_executor()};
};

struct FailoverTest : testing::Test, MainThread {
  FailoverTest() {
    config.name = text("P");
    config.kind = ProviderKind::Apibay;
  }

  // Made before it is asked for, which has its time-out.
  static const QByteArray& bomb() {
    static const QByteArray packed = gzip(QByteArray(HttpClient::kLargestBody + 1, '['));
    return packed;
  }
  static ScriptedServer::Answer answer(const QByteArray& request) {
    const auto is = [&](const char* path) {
      return request.startsWith(QByteArray("GET /") + path);
    };
    if (is("page/"))
      return ScriptedServer::reply(200, "<!doctype html>", "Content-Type: text/html\r\n");
    if (is("forbidden/")) return ScriptedServer::reply(403, "<html>no");
    if (is("challenge/"))
      return ScriptedServer::reply(200, "{\"t\":\"Just a moment...\"}",
                                   "Content-Type: application/json\r\n");
    if (is("busy/")) return ScriptedServer::reply(503, "[]");
    if (is("empty/")) return ScriptedServer::reply(200, "");
    if (is("liar/"))
      return {"HTTP/1.1 200 OK\r\nContent-Length: 2147483648\r\n\r\n", QByteArray(1 << 20, '['),
              2048};
    if (request.contains("/mute/")) return {"HTTP/1.1 200 OK\r\n\r\n", "[", 1, {}, true};
    if (is("short/")) return {"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n", "[]"};
    if (is("nowhere/")) return ScriptedServer::reply(302, "[]");
    if (is("moved/")) return ScriptedServer::reply(302, "", "Location: /good/q.php\r\n");
    if (is("packed/")) return ScriptedServer::reply(200, gzip("[]"), "Content-Encoding: gzip\r\n");
    if (is("bomb/")) return ScriptedServer::reply(200, bomb(), "Content-Encoding: gzip\r\n");
    return ScriptedServer::reply(200, "[]");
  }

  IoPool pool;
  ScriptedServer server{answer};
  PreferenceStore memory;
  std::optional<HttpClient> client{std::in_place, main};
  ProviderConfig config;
  SystemClock clock;
};

TEST_F(FailoverTest, EveryMisbehaviourIsToldAndPassedOver) {
  bomb();
  QString refused;
  {
    const ScriptedServer gone(answer);
    refused = gone.url(QString()).toString();
  }
  const PlainTalker talker;
  struct Mirror {
    QString address;
    const char* detail; // what follows "Failed: "; nothing for a good one
    bool reachable = true;
  };
  const auto at = [&](const char* path) { return server.url(text(path)).toString(); };
  const std::vector<Mirror> mirrors{{refused, "connection refused", false},
                                    {text("http://vellum.invalid"), "DNS lookup failed", false},
                                    {talker.address(), "TLS error", false},
                                    {at("/mute"), "timed out", false},
                                    {at("/short"), "", false},
                                    {at("/busy"), "HTTP 503"},
                                    {at("/nowhere"), "HTTP 302"},
                                    {at("/empty"), "returned a non-API response"},
                                    {at("/liar"), "returned a non-API response"},
                                    {at("/bomb"), "returned a non-API response"},
                                    {at("/page"), "page"},
                                    {at("/forbidden"), "page"},
                                    {at("/challenge"), "page"},
                                    {at("/moved"), nullptr},
                                    {at("/packed"), nullptr}};
  for (const Mirror& mirror : mirrors) config.mirrors.append(mirror.address);
  FlowGroup flows(main.executor());
  std::vector<MirrorHealth> lines;
  const auto check = [](FailoverTest& test, std::vector<MirrorHealth>& out) -> Flow<> {
    out = co_await flowOn(test.pool.makeWorkerStrand(),
                          ProviderHealthChecker::check(test.config, test.client->transport(500ms),
                                                       test.memory, test.clock));
  };
  flows.spawn(check(*this, lines));
  ASSERT_TRUE(turnUntil([&] { return !lines.empty(); }));
  ASSERT_EQ(lines.size(), mirrors.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const auto& [address, detail, reachable] = mirrors[i];
    const bool isPage = detail != nullptr && text(detail) == text("page");
    EXPECT_EQ(lines[i].reachable, reachable) << address.toStdString();
    EXPECT_EQ(lines[i].formatOK, detail == nullptr) << address.toStdString();
    const QString expected = detail == nullptr ? text("Reachable, API format OK")
                             : isPage ? text("Provider returned a web page instead of API data")
                                      : text("Failed: ") + text(detail);
    EXPECT_TRUE(lines[i].detail.startsWith(expected)) << lines[i].detail.toStdString();
  }

  // The same walk as a search: past all that fail, to the first that is good.
  SearchAggregator aggregator(main, pool);
  aggregator.search(text("x"),
                    {std::make_shared<IndexerProvider>(config, client->transport(500ms), memory)});
  ASSERT_TRUE(turnUntil([&] { return !aggregator.isSearching(); }));
  EXPECT_EQ(aggregator.statuses()[0].state, ProviderStatus::State::Ok);
  EXPECT_EQ(ProviderClient::lastWorking(memory, config.id), at("/moved"));
}

TEST_F(FailoverTest, RequestsUnderWayEndWithWhoeverAsked) {
  config.baseURL = server.url(text("/mute")).toString();
  const auto provider = std::make_shared<IndexerProvider>(config, client->transport(), memory);
  std::optional<SearchAggregator> aggregator(std::in_place, main, pool);
  const auto requests = [&](int count) {
    return [this, count] { return server.requests() == count; };
  };
  aggregator->search(text("a"), {provider, provider});
  ASSERT_TRUE(turnUntil(requests(2)));
  aggregator->search(text("b"), {provider}); // drops the connections of the search before
  EXPECT_TRUE(turnUntil([&] { return server.requests() == 3 && server.dropped() >= 2; }));
  aggregator.reset();
  EXPECT_TRUE(turnUntil([&] { return server.dropped() == 3; }));
  aggregator.emplace(main, pool);
  aggregator->search(text("c"), {provider});
  ASSERT_TRUE(turnUntil(requests(4)));
  client.reset(); // the network goes first: the search fails, nothing hangs
  EXPECT_TRUE(turnUntil([&] { return !aggregator->isSearching(); }));
  EXPECT_EQ(aggregator->statuses()[0].state, ProviderStatus::State::Failed);
}

TEST_F(FailoverTest, ACancelledWalkAsksNobodyElse) {
  for (int i = 0; i < 4; ++i)
    config.mirrors.append(server.url(text("/%1/mute/").arg(i)).toString());
  const auto provider = std::make_shared<IndexerProvider>(config, client->transport(40ms), memory);
  for (int step = 1; step <= 4; ++step) {
    SearchAggregator aggregator(main, pool);
    const int before = server.requests();
    aggregator.search(text("x"), {provider});
    ASSERT_TRUE(turnUntil([&] { return server.requests() == before + step; }));
    aggregator.search(QString(), {});
    EXPECT_FALSE(turnUntil([&] { return server.requests() > before + step; }, 0s));
    ASSERT_TRUE(turnUntil([&] { return server.dropped() == server.requests(); }));
    EXPECT_EQ(server.requests(), before + step);
  }
}

} // namespace
} // namespace vellum::test
