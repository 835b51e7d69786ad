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
  struct Case {
    const char* base;
    const char* path;
    const char* q;
    const char* url;
  };
  for (const auto& [base, path, q, url] :
       {Case{" HTTP://h/ \n", "/q.php", "a b", "http://h/q.php?q=a%20b"},
        Case{"https://u:p@h:8080/x//", "/y", "", "https://u:p@h:8080/x//y?q="},
        Case{"http://[::1]/a%2Fb/?k=1&l", "/p", "2", "http://[::1]/a%2Fb/p?k=1&l&q=2"},
        Case{"http://h/api/", "", "x", "http://h/api/?q=x"},
        Case{"http://h/", "", "&=#%+;/?:@!$'()*,[]\"<>",
             "http://h/?q=%26%3D%23%25+;/?:@!$'()*,%5B%5D%22%3C%3E"},
        Case{"http://h/", "", "ü-._~%41", "http://h/?q=%C3%BC-._~%2541"}})
    EXPECT_EQ(ProviderURL::build(text(base), text(path), {{text("q"), text(q)}})->toEncoded(), url);
  EXPECT_EQ(ProviderURL::build(text("http://h"), text("/p"), {})->toEncoded(), "http://h/p");
  for (const char* bad :
       {"", "a.example", "//a.example", "ftp://a.example", "http:///x", "http:a", "http://a b",
        "http://a.example/\tx", "https://a:99999/", "magnet:?xt=x", "http://a\xc2\xa0/"})
    EXPECT_FALSE(ProviderURL::build(text(bad), text("/p"), {})) << bad;
}

TEST(ResponseClassifier, LooksAtTheBytes) {
  using Kind = ResponseKind;
  const QByteArray far(ResponseClassifier::kWindow, ' ');
  struct Case {
    Kind kind;
    QByteArray body;
    const char* type = nullptr;
  };
  for (const auto& [kind, body, type] :
       {Case{Kind::Json, "{}"},
        Case{Kind::Json, " \r\n[1]", "text/plain"},
        Case{Kind::Json, "\xef\xbb\xbf\n{"},
        Case{Kind::Html, "{}", "Text/HTML; charset=x"},
        Case{Kind::Html, " <!DOCTYPE HTML>"},
        Case{Kind::Html, "<Head>", "application/json"},
        Case{Kind::Html, "<body"},
        Case{Kind::Html, "<html"},
        Case{Kind::Html, "{\"Just a MOMENT...\"}", "application/json"},
        Case{Kind::Html, "<?xml?><x>challenge-platform"},
        Case{Kind::Html, "[\"Attention Required! | Cloudflare\"]"},
        Case{Kind::Html, "[\"cf-browser-verification\"]"},
        Case{Kind::Html, ('{' + far).first(4096 - 10) + "ddos-guard"},
        Case{Kind::Json, ('{' + far).first(4096 - 9) + "ddos-guard"},
        Case{Kind::Xml, "<?XML"},
        Case{Kind::Xml, "<rss>"},
        Case{Kind::Xml, "<error code='1'/>"},
        Case{Kind::Xml, "<caps>"},
        Case{Kind::Unknown, "<feed>"},
        Case{Kind::Unknown, "", "application/json"},
        Case{Kind::Unknown, far + '{'},
        Case{Kind::Unknown, "\xff\xfe{"},
        Case{Kind::Unknown, "ok", "text/xml"}}) {
    std::optional<QString> contentType;
    if (type != nullptr) contentType = text(type);
    EXPECT_EQ(ResponseClassifier::classify(body, contentType), kind) << body.left(40).toStdString();
  }
}

struct ProviderClientTest : testing::Test {
  ProviderClientTest() {
    config.name = text("Some %1");
    config.kind = ProviderKind::Apibay;
    config.baseURL = text(" http://base ");
    config.mirrors = {text("http://one"), text("no address"), text("http://one "),
                      text("http://two")};
    answer(failure(Reason::CannotConnect), reply("<html>"), reply("[]"));
  }
  void answer(const Scripted& base, const Scripted& one, const Scripted& two) {
    net.hosts = {{text("base"), base}, {text("one"), one}, {text("two"), two}};
  }
  // The hosts that were asked, then the sentence of the failure and its detail, if it failed.
  std::string search() {
    net.asked.clear();
    QString how;
    try {
      runFlow(ProviderSearch::run(config, text("a b"), net.transport(), memory));
    } catch (const ProviderError& error) {
      how = text("| ") + error.errorDescription() + u'|' + error.detail();
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
  ProviderConfig config;
};

TEST_F(ProviderClientTest, WalksOverTheAddressesAndRemembersTheOneThatWorked) {
  EXPECT_EQ(search(), "base one two ");
  EXPECT_EQ(
      memory.string(text("lastWorking.") + config.id.toString(QUuid::WithoutBraces).toUpper()),
      text("http://two"));
  EXPECT_EQ(search(), "two ");
  answer(failure(Reason::CannotConnect), failure(Reason::CannotConnect), failure(Reason::TimedOut));
  EXPECT_EQ(search(), "two base one | Some %1 unreachable at two. Check the address in Settings → "
                      "Providers|one: connection refused");
  EXPECT_EQ(remembered(), "http://two");
  config.mirrors.removeLast(); // what is remembered is no longer among them
  EXPECT_EQ(ProviderClient::candidates(config, memory),
            QStringList({text("http://base"), text("http://one")}));

  int asked = 0;
  const Transport cancelled = [&](QUrl) -> Flow<HttpResponse> {
    ++asked;
    throw asio::system_error(asio::error::operation_aborted);
    co_return HttpResponse();
  };
  EXPECT_THROW(runFlow(ProviderSearch::run(config, text("x"), cancelled, memory)),
               asio::system_error);
  EXPECT_EQ(asked, 1) << "a cancelled walk asks nobody else";
}

TEST_F(ProviderClientTest, SaysWhatOutweighsWhatWhenNoAddressWorks) {
  const std::string page = "| Provider returned a web page instead of API data (Some %1 at base). "
                           "Try another mirror in Settings → Providers|";
  const std::string other =
      "| Some %1 at base didn't return API data. Check the address in Settings → Providers|";
  const std::string dead =
      "| Some %1 unreachable at base. Check the address in Settings → Providers|two: ";
  const auto refused = failure(Reason::CannotConnect);
  struct Case {
    Scripted base, one, two;
    std::string ending;
  };
  for (const auto& [base, one, two, ending] :
       {Case{reply("<html>", 403), reply("x"), refused, page},
        Case{reply(""), reply("<html>"), reply("[]", 500), page},
        Case{reply(""), refused, reply("[]", 500), other},
        Case{NetError::tooLarge(), refused, refused, other},
        Case{refused, refused, reply("<rss>"), other},
        Case{refused, refused, reply("{}", 300), dead + "HTTP 300"},
        Case{refused, refused, reply("{}", 199), dead + "HTTP 199"},
        Case{refused, refused, failure(Reason::NoConnection), dead + "no internet connection"},
        Case{refused, refused, failure(Reason::Other), dead + "in other words"},
        Case{refused, refused, failure(Reason::TimedOut), dead + "timed out"},
        Case{refused, refused, failure(Reason::HostNotFound), dead + "DNS lookup failed"},
        Case{refused, reply("[]", 503), failure(Reason::Tls), dead + "TLS error"}}) {
    answer(base, one, two);
    EXPECT_EQ(search(), "base one two " + ending);
    EXPECT_EQ(remembered(), "");
  }
  for (const char* body : {"{}", "[1"}) { // JSON of another shape: no mirror is asked
    answer(reply(body), reply("[]"), refused);
    EXPECT_EQ(search(), "base | Some %1 answered, but not in the expected API format. Check the "
                        "provider type and address in Settings → Providers|");
    EXPECT_EQ(remembered(), "http://base");
  }
  answer(reply("[]", 200), refused, refused);
  EXPECT_EQ(search(), "base ");
  answer(reply("[]", 299), refused, refused);
  EXPECT_EQ(search(), "base ");
  config.baseURL.clear();
  config.mirrors.clear();
  EXPECT_EQ(search(), "| Some %1 has no address yet. Set one in Settings → Providers|");
}

TEST_F(ProviderClientTest, AsksEachKindExactly) {
  struct Case {
    ProviderKind kind;
    const char* key;
    const char* body;
    const char* url;
  };
  for (const auto& [kind, key, body, url] :
       {Case{ProviderKind::Apibay, "k", "[]", "http://h/q.php?q=a%20b&cat=200"},
        Case{ProviderKind::Yts, "k", R"({"data":{}})",
             "http://h/api/v2/list_movies.json?query_term=a%20b&limit=30"},
        Case{ProviderKind::Torznab, "", "<rss/>", "http://h?t=search&q=a%20b"},
        Case{ProviderKind::Torznab, "k&", "<rss/>", "http://h?t=search&q=a%20b&apikey=k%26"},
        Case{ProviderKind::ArchiveOrg, "", "", ""}}) {
    config.kind = kind;
    config.apiKey = text(key);
    config.baseURL = text("http://h");
    config.mirrors.clear();
    net.hosts = {{text("h"), reply(body)}};
    search();
    EXPECT_EQ(net.asked.join(u' '), text(url));
  }
}

TEST_F(ProviderClientTest, AsksOverHttpsOnceWhereTheSystemRefusesPlainHttp) {
  config.mirrors.clear();
  net.hosts = {{text("http://base"), failure(Reason::PlainHttpBlocked)},
               {text("https://base"), reply("[]")}};
  EXPECT_EQ(search(), "base base ");
  EXPECT_EQ(net.asked.last(), text("https://base/q.php?q=a%20b&cat=200"));
  EXPECT_EQ(remembered(), "http://base");
  for (const auto& [address, asked] :
       {std::pair("http://base", "base base "), {"https://base", "base "}}) {
    config.baseURL = text(address);
    net.hosts.at(text("https://base")) = failure(Reason::PlainHttpBlocked);
    EXPECT_EQ(
        search(),
        asked +
            std::string("| Some %1 unreachable at base. Check the address in Settings → Providers|"
                        "base: plain http is blocked by the system; use https"));
  }
}

TEST_F(ProviderClientTest, ChecksEveryAddressAndRemembersNone) {
  ManualClock clock;
  config.mirrors = {text("http://page"), text("http://shape"), text("http://busy"),
                    text("http://late")};
  net.hosts = {{text("base"), reply("[]")},
               {text("page"), reply("<html>")},
               {text("shape"), reply("{}")},
               {text("busy"), reply("{}", 503)},
               {text("late"), failure(Reason::TimedOut)}};
  const Transport slow = [&](QUrl url) {
    clock.advance(0.0129);
    return net.transport()(std::move(url));
  };
  const auto check = [&] {
    std::string lines;
    for (const MirrorHealth& one :
         runFlow(ProviderHealthChecker::check(config, slow, memory, clock))) {
      lines += one.url.toStdString() + (one.reachable ? " reachable" : "") +
               (one.formatOK ? " good" : "");
      lines += (one.millis ? ' ' + std::to_string(*one.millis) + " ms: " : ": ") +
               one.detail.toStdString() + '\n';
    }
    return lines;
  };
  EXPECT_EQ(check(),
            "http://base reachable good 12 ms: Reachable, API format OK\n"
            "http://page reachable 12 ms: Provider returned a web page instead of API data\n"
            "http://shape reachable 12 ms: Reachable, but the response doesn't match the expected "
            "API format\n"
            "http://busy reachable 12 ms: Failed: HTTP 503\n"
            "http://late: Failed: timed out\n");
  EXPECT_EQ(net.asked.first(), text("http://base/q.php?q=test&cat=200"));
  EXPECT_EQ(remembered(), "");
  config.mirrors.clear();
  config.baseURL = text("xyz");
  EXPECT_EQ(check(), "xyz: Not a valid http(s) address\n");
  config.baseURL.clear();
  EXPECT_EQ(check(), "(no address): Not a valid http(s) address\n");
  config.kind = ProviderKind::ArchiveOrg;
  EXPECT_EQ(check(),
            "Built-in catalog reachable good: Vidarium catalog uses a fixed built-in host\n");
}

} // namespace
} // namespace vellum::test
