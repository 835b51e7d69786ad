#include "providers/ProviderClient.h"
#include "providers/ProviderError.h"
#include "providers/ProviderHealthChecker.h"
#include "providers/ProviderSearch.h"
#include "support/ManualClock.h"
#include "support/RunFlow.h"
#include "support/ScriptedTransport.h"
#include <gtest/gtest.h>

namespace vellum::test {
namespace {

using Reason = NetError::Reason;

struct ProviderClientTest : testing::Test {
  ProviderClientTest() {
    config.name = QStringLiteral("Some %1");
    config.kind = ProviderKind::Apibay;
    config.baseURL = QStringLiteral(" http://base ");
    config.mirrors = {QStringLiteral("http://one"), QStringLiteral("no address"),
                      QStringLiteral("http://one "), QStringLiteral("http://two")};
    net.hosts = {{QStringLiteral("base"), failure(Reason::CannotConnect)},
                 {QStringLiteral("one"), reply("<html>")},
                 {QStringLiteral("two"), reply("[]")}};
  }
  TorrentResults search() {
    net.asked.clear();
    return runFlow(ProviderSearch::run(config, QStringLiteral("x"), net.transport(), memory));
  }
  QString searchFailure() {
    try {
      search();
    } catch (const ProviderError& error) {
      detail = error.detail();
      return error.errorDescription();
    }
    return {};
  }
  QString hostsAsked() const {
    QStringList hosts;
    for (const QString& url : net.asked) hosts.append(QUrl(url).host());
    return hosts.join(u' ');
  }
  QString remembered() const {
    return ProviderClient::lastWorking(memory, config.id).value_or(QString());
  }

  ScriptedTransport net;
  PreferenceStore memory;
  ProviderConfig config;
  QString detail;
};

TEST_F(ProviderClientTest, WalksOverTheAddressesAndRemembersTheOneThatWorked) {
  EXPECT_TRUE(search().empty());
  EXPECT_EQ(hostsAsked(), QStringLiteral("base one two"));
  EXPECT_EQ(memory.string(QStringLiteral("lastWorking.") +
                          config.id.toString(QUuid::WithoutBraces).toUpper()),
            QStringLiteral("http://two"));
  search();
  EXPECT_EQ(hostsAsked(), QStringLiteral("two"));

  net.hosts.at(QStringLiteral("two")) = failure(Reason::TimedOut);
  EXPECT_FALSE(searchFailure().isEmpty());
  EXPECT_EQ(hostsAsked(), QStringLiteral("two base one"));
  EXPECT_EQ(remembered(), QStringLiteral("http://two"));

  config.mirrors.removeLast(); // what is remembered is no longer among them
  EXPECT_EQ(ProviderClient::candidates(config, memory),
            QStringList({QStringLiteral("http://base"), QStringLiteral("http://one")}));
}

TEST_F(ProviderClientTest, SaysWhatOutweighsWhatWhenNoAddressWorks) {
  struct Case {
    Scripted base, one, two;
    QString sentence;
    QString detail;
  };
  const QString page =
      QStringLiteral("Provider returned a web page instead of API data (Some %1 at "
                     "base). Try another mirror in Settings → Providers");
  const QString other = QStringLiteral(
      "Some %1 at base didn't return API data. Check the address in Settings → Providers");
  const QString dead =
      QStringLiteral("Some %1 unreachable at base. Check the address in Settings → Providers");
  const auto refused = failure(Reason::CannotConnect);
  for (const Case& one :
       {Case{reply("<html>", 403), reply("x"), refused, page, {}},
        Case{reply(""), refused, reply("[]", 500), other, {}},
        Case{NetError::tooLarge(), refused, refused, other, {}},
        Case{reply("<rss>"), refused, refused, other, {}},
        Case{refused, refused, reply("{}", 300), dead, QStringLiteral("two: HTTP 300")},
        Case{refused, refused, failure(Reason::NoConnection), dead,
             QStringLiteral("two: no internet connection")},
        Case{refused, reply("[]", 503), failure(Reason::Tls), dead,
             QStringLiteral("two: TLS error")}}) {
    net.hosts = {{QStringLiteral("base"), one.base},
                 {QStringLiteral("one"), one.one},
                 {QStringLiteral("two"), one.two}};
    EXPECT_EQ(searchFailure(), one.sentence);
    EXPECT_EQ(detail, one.detail);
    EXPECT_EQ(hostsAsked(), QStringLiteral("base one two"));
    EXPECT_TRUE(remembered().isEmpty());
  }
  net.hosts = {{QStringLiteral("base"), reply("{}")}}; // JSON of another shape: no mirror is asked
  EXPECT_EQ(searchFailure(),
            QStringLiteral("Some %1 answered, but not in the expected API format. Check the "
                           "provider type and address in Settings → Providers"));
  EXPECT_EQ(hostsAsked(), QStringLiteral("base"));
  EXPECT_EQ(remembered(), QStringLiteral("http://base"));
  net.hosts = {{QStringLiteral("base"), reply("[1")}};
  EXPECT_TRUE(searchFailure().contains(QStringLiteral("expected API format")));

  config.baseURL.clear();
  config.mirrors.clear();
  EXPECT_EQ(searchFailure(),
            QStringLiteral("Some %1 has no address yet. Set one in Settings → Providers"));
  config.kind = ProviderKind::ArchiveOrg;
  EXPECT_TRUE(search().empty());
  EXPECT_TRUE(net.asked.isEmpty());
}

TEST_F(ProviderClientTest, ACancellationEndsTheWalkAndStaysOne) {
  int asked = 0;
  const Transport cancelled = [&](QUrl) -> Flow<HttpResponse> {
    ++asked;
    throw asio::system_error(asio::error::operation_aborted);
    co_return HttpResponse();
  };
  EXPECT_THROW(runFlow(ProviderSearch::run(config, QStringLiteral("x"), cancelled, memory)),
               asio::system_error);
  EXPECT_EQ(asked, 1);
}

TEST_F(ProviderClientTest, AsksOverHttpsOnceWhereTheSystemRefusesPlainHttp) {
  config.mirrors.clear();
  net.hosts = {{QStringLiteral("http://base"), failure(Reason::PlainHttpBlocked)},
               {QStringLiteral("https://base"), reply("[]")}};
  search();
  EXPECT_EQ(net.asked, QStringList({QStringLiteral("http://base/q.php?q=x&cat=200"),
                                    QStringLiteral("https://base/q.php?q=x&cat=200")}));
  EXPECT_EQ(remembered(), QStringLiteral("http://base"));
  net.hosts.at(QStringLiteral("https://base")) = failure(Reason::PlainHttpBlocked);
  searchFailure();
  EXPECT_EQ(net.asked.size(), 2);
  EXPECT_EQ(detail, QStringLiteral("base: plain http is blocked by the system; use https"));
}

TEST_F(ProviderClientTest, ChecksEveryAddressAndRemembersNone) {
  ManualClock clock;
  config.mirrors = {QStringLiteral("http://page"), QStringLiteral("http://shape"),
                    QStringLiteral("http://busy"), QStringLiteral("http://nowhere"),
                    QStringLiteral("http://late")};
  net.hosts = {{QStringLiteral("base"), reply("[]")},
               {QStringLiteral("page"), reply("<html>")},
               {QStringLiteral("shape"), reply("{}")},
               {QStringLiteral("busy"), reply("{}", 503)},
               {QStringLiteral("late"), failure(Reason::TimedOut)}};
  const Transport plain = net.transport();
  const Transport slow = [&](QUrl url) {
    clock.advance(0.0129);
    return plain(std::move(url));
  };
  using Lines = std::vector<MirrorHealth>;
  const auto check = [&] {
    return runFlow(ProviderHealthChecker::check(config, slow, memory, clock));
  };
  const auto line = [](const char* url, std::optional<qint64> millis, bool good, const char* what) {
    return MirrorHealth{QLatin1String(url), millis.has_value(), millis, good, QLatin1String(what)};
  };
  EXPECT_EQ(
      check(),
      Lines({line("http://base", 12, true, "Reachable, API format OK"),
             line("http://page", 12, false, "Provider returned a web page instead of API data"),
             line("http://shape", 12, false,
                  "Reachable, but the response doesn't match the expected API format"),
             line("http://busy", 12, false, "Failed: HTTP 503"),
             line("http://nowhere", std::nullopt, false, "Failed: DNS lookup failed"),
             line("http://late", std::nullopt, false, "Failed: timed out")}));
  EXPECT_TRUE(net.asked.first().endsWith(QStringLiteral("?q=test&cat=200")));
  EXPECT_TRUE(remembered().isEmpty());

  config.mirrors.clear();
  config.baseURL = QStringLiteral("xyz");
  EXPECT_EQ(check(), Lines({line("xyz", std::nullopt, false, "Not a valid http(s) address")}));
  config.baseURL.clear();
  EXPECT_EQ(check().front().url, QStringLiteral("(no address)"));
  config.kind = ProviderKind::ArchiveOrg;
  EXPECT_EQ(check(),
            Lines({MirrorHealth{QStringLiteral("Built-in catalog"), true, std::nullopt, true,
                                QStringLiteral("Vidarium catalog uses a fixed built-in host")}}));
}

} // namespace
} // namespace vellum::test
