#include "providers/ProviderClient.h"
#include "providers/ProviderError.h"
#include "providers/ProviderHealthChecker.h"
#include "providers/ProviderSearch.h"
#include "providers/ResponseClassifier.h"
#include "support/ManualClock.h"
#include "support/RunFlow.h"
#include "support/ScriptedTransport.h"
#include <gtest/gtest.h>

namespace vellum::test {
namespace {

using Reason = NetError::Reason;

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

TEST(ProviderURL, AddsPathAndQueryToAnAddressOfTheWeb) {
  using Four = std::array<const char*, 4>;
  for (const auto& [base, path, q, url] :
       {Four{" HTTP://h/ \n", "/q.php", "a b", "http://h/q.php?q=a%20b"},
        Four{"https://u:p@h:8080/x//", "/y", "", "https://u:p@h:8080/x//y?q="},
        Four{"http://[::1]/a%2Fb/?k=1&l", "/p", "2", "http://[::1]/a%2Fb/p?k=1&l&q=2"},
        Four{"http://h/api/", "", "x", "http://h/api/?q=x"},
        Four{"http://h", "", "&=#%+;/?:@!$'()*,[]\"<>",
             "http://h?q=%26%3D%23%25+;/?:@!$'()*,%5B%5D%22%3C%3E"},
        Four{"http://h/", "", "ü-._~%41", "http://h/?q=%C3%BC-._~%2541"}})
    EXPECT_EQ(ProviderURL::build(text(base), text(path), {{text("q"), text(q)}})->toEncoded(), url);
  EXPECT_EQ(ProviderURL::build(text("http://h"), text("/p"), {})->toEncoded(), "http://h/p");
  for (const char* bad : {"", "h.example", "//h.example", "ftp://h", "http:///x", "http:a",
                          "http://a b", "http://h/\tx", "https://h:99999/", "http://a\xc2\xa0/"})
    EXPECT_FALSE(ProviderURL::build(text(bad), text("/p"), {})) << bad;
}

TEST(ResponseClassifier, LooksAtTheBytes) {
  using Kind = ResponseKind;
  const QByteArray far(ResponseClassifier::kWindow, ' '), late = '{' + far.first(4085);
  const auto kind = [](const QByteArray& body, const char* type = "application/json") {
    return ResponseClassifier::classify(body, text(type));
  };
  const std::pair<Kind, std::vector<QByteArray>> kinds[] = {
      {Kind::Json, {"{ ", " \r\n[1]", "\xef\xbb\xbf\n{", late + " ddos-guard", "[\"<html>\"]"}},
      {Kind::Html,
       {" <!DOCTYPE HTML>", "<Head>", "<body", "<html", "{\"Just a MOMENT...\"}",
        "<?xml?><x>challenge-platform", "[\"Attention Required! | Cloudflare\"]",
        "[\"cf-browser-verification\"]", late + "ddos-guard"}},
      {Kind::Xml, {"<?XML", "<rss>", "<error code='1'/>", "<caps> \r"}},
      {Kind::Unknown, {"<feed>", "", far + '{', "\xff\xfe{", "ok"}}};
  for (const auto& [expected, bodies] : kinds)
    for (const QByteArray& body : bodies)
      EXPECT_EQ(kind(body), expected) << body.left(40).toStdString();
  EXPECT_EQ(kind("{}", "Text/HTML; charset=x"), Kind::Html);
}

struct ProviderClientTest : testing::Test {
  ProviderClientTest() { answer(failure(Reason::CannotConnect), reply("<html>"), reply("[]")); }
  void answer(const Scripted& base, const Scripted& one, const Scripted& two) {
    net.hosts = {{text("base"), base}, {text("one"), one}, {text("two"), two}};
  }
  // The hosts that were asked, then the first words of the failure and its detail, if it failed.
  std::string search() {
    net.asked.clear();
    QString how;
    try {
      runFlow(ProviderSearch::run(config, text("a b"), net.transport(), memory));
    } catch (const ProviderError& error) {
      how = u'|' + error.errorDescription().section(u'.', 0, 0) + u'|' + error.detail();
    }
    QString hosts;
    for (const QString& url : net.asked) hosts += QUrl(url).host() + u' ';
    return (hosts + how).toStdString();
  }
  std::string remembered() const {
    return ProviderClient::lastWorking(memory, config.id).value_or(QString()).toStdString();
  }

  ScriptedTransport net;
  PreferenceStore memory;
  ProviderConfig config{
      .name = text("Some %1"),
      .kind = ProviderKind::Apibay,
      .baseURL = text(" http://base "),
      .apiKey = {},
      .mirrors = {text("http://one"), text("xyz"), text("http://one "), text("http://two")}};
};

TEST_F(ProviderClientTest, WalksOverTheAddressesAndRemembersTheOneThatWorked) {
  EXPECT_EQ(search(), "base one two ");
  EXPECT_EQ(
      memory.string(text("lastWorking.") + config.id.toString(QUuid::WithoutBraces).toUpper()),
      text("http://two"));
  EXPECT_EQ(search(), "two ");
  answer(failure(Reason::CannotConnect), failure(Reason::CannotConnect), failure(Reason::TimedOut));
  EXPECT_EQ(search(), "two base one |Some %1 unreachable at two|one: connection refused");
  EXPECT_EQ(remembered(), "http://two");
  config.mirrors.removeLast(); // what is remembered is no longer among them
  EXPECT_EQ(ProviderClient::candidates(config, memory),
            QStringList({text("http://base"), text("http://one")}));
}

TEST_F(ProviderClientTest, SaysWhatOutweighsWhatWhenNoAddressWorks) {
  const std::string page = "|Provider returned a web page instead of API data (Some %1 at base)|";
  const std::string other = "|Some %1 at base didn't return API data|";
  const std::string dead = "|Some %1 unreachable at base|two: ";
  const auto refused = failure(Reason::CannotConnect);
  using Case = std::tuple<Scripted, Scripted, Scripted, std::string>;
  for (const auto& [base, one, two, ending] :
       {Case{reply("<html>", 403), reply("x"), refused, page},
        Case{reply(""), reply("<html>"), reply("[]", 500), page},
        Case{NetError::tooLarge(), refused, reply("[]", 500), other},
        Case{refused, refused, reply("<rss>"), other},
        Case{refused, refused, reply("{}", 300), dead + "HTTP 300"},
        Case{refused, refused, reply("{}", 199), dead + "HTTP 199"},
        Case{refused, refused, failure(Reason::HostNotFound), dead + "DNS lookup failed"},
        Case{refused, refused, failure(Reason::Other), dead + "in other words"}}) {
    answer(base, one, two);
    EXPECT_EQ(search(), "base one two " + ending);
    EXPECT_EQ(remembered(), "");
  }
  for (const char* body : {"{}", "[1"}) { // JSON of another shape: no mirror is asked
    answer(reply(body), reply("[]"), refused);
    EXPECT_EQ(search(), "base |Some %1 answered, but not in the expected API format|");
    EXPECT_EQ(remembered(), "http://base");
  }
  answer(reply("[]", 299), refused, refused);
  EXPECT_EQ(search(), "base ");
  config.baseURL.clear();
  config.mirrors.clear();
  EXPECT_EQ(search(), "|Some %1 has no address yet|");
}

TEST_F(ProviderClientTest, AsksEachKindExactly) {
  using Asking = std::tuple<ProviderKind, const char*, const char*>;
  config.mirrors.clear();
  net.hosts = {{text("base"), reply("<rss/>")}};
  for (const auto& [kind, key, url] :
       {Asking{ProviderKind::Apibay, "k", "http://base/q.php?q=a%20b&cat=200"},
        Asking{ProviderKind::Yts, "k",
               "http://base/api/v2/list_movies.json?query_term=a%20b&limit=30"},
        Asking{ProviderKind::ArchiveOrg, "", ""},
        Asking{ProviderKind::Torznab, "k&", "http://base?t=search&q=a%20b&apikey=k%26"},
        Asking{ProviderKind::Torznab, "", "http://base?t=search&q=a%20b"}}) {
    config.kind = kind;
    config.apiKey = text(key);
    search();
    EXPECT_EQ(net.asked.join(u' '), text(url));
  }
  EXPECT_EQ(search(), "base ");
}

TEST_F(ProviderClientTest, AsksOverHttpsOnceWhereTheSystemRefusesPlainHttp) {
  config.mirrors.clear();
  net.hosts = {{text("http://base"), failure(Reason::PlainHttpBlocked)},
               {text("https://base"), reply("[]")}};
  EXPECT_EQ(search(), "base base ");
  EXPECT_EQ(net.asked.last(), text("https://base/q.php?q=a%20b&cat=200"));
  EXPECT_EQ(remembered(), "http://base");
  net.hosts.at(text("https://base")) = failure(Reason::PlainHttpBlocked);
  EXPECT_EQ(search(), "base base |Some %1 unreachable at base|"
                      "base: plain http is blocked by the system; use https");
}

TEST_F(ProviderClientTest, ChecksEveryAddressAndRemembersNone) {
  ManualClock clock;
  answer(reply("{}"), reply("<html>"), reply("[]"));
  net.hosts[text("late")] = failure(Reason::TimedOut);
  net.hosts[text("busy")] = reply("{}", 503);
  config.mirrors += {text("http://late"), text("http://busy")};
  const Transport slow = [&](QUrl url) {
    clock.advance(0.0129);
    return net.transport()(std::move(url));
  };
  const auto check = [&] {
    std::string lines;
    for (const auto& [url, reachable, millis, formatOK, detail] :
         runFlow(ProviderHealthChecker::check(config, slow, memory, clock)))
      lines += url.toStdString() + (reachable ? " reachable" : "") + (formatOK ? " good " : " ") +
               std::to_string(millis.value_or(-1)) + ": " + detail.toStdString() + '\n';
    return lines;
  };
  EXPECT_EQ(check(),
            "http://base reachable 12: Reachable, but the response doesn't match the expected "
            "API format\n"
            "http://one reachable 12: Provider returned a web page instead of API data\n"
            "http://two reachable good 12: Reachable, API format OK\n"
            "http://late -1: Failed: timed out\nhttp://busy reachable 12: Failed: HTTP 503\n");
  EXPECT_EQ(net.asked.first(), text("http://base/q.php?q=test&cat=200"));
  EXPECT_EQ(remembered(), "");
  config.mirrors.clear();
  config.baseURL = text("xyz");
  EXPECT_EQ(check(), "xyz -1: Not a valid http(s) address\n");
  config.kind = ProviderKind::ArchiveOrg;
  EXPECT_EQ(check(),
            "Built-in catalog reachable good -1: Vidarium catalog uses a fixed built-in host\n");
}

} // namespace
} // namespace vellum::test
