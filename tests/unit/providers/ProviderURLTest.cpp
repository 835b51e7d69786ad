#include "providers/ProviderRequest.h"
#include "providers/ResponseClassifier.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

TEST(ProviderURL, TakesWebAddressesWithAHost) {
  for (const char* good : {"https://a.example", "http://127.0.0.1:8080/x", " HTTPS://a.example/ ",
                           "http://[::1]/x", "http://u:p@a.example/?k=v", "\nhttps://a.example"})
    EXPECT_TRUE(ProviderURL::validate(text(good))) << good;
  for (const char* bad :
       {"", "  ", "a.example", "//a.example", "ftp://a.example", "http://", "http:///x", "http:a",
        "http://a b", "http://a.example/x y", "file:///x", "http://a.example/\tx",
        "https://a:99999/", "magnet:?xt=x", "http://a\xc2\xa0/"})
    EXPECT_FALSE(ProviderURL::validate(text(bad))) << bad;
}

TEST(ProviderURL, AddsPathAndQueryToWhatTheBaseHas) {
  struct Case {
    const char* base;
    const char* path;
    ProviderURL::Items items;
    const char* url;
  };
  const auto q = [](const char* value) { return ProviderURL::Items{{text("q"), text(value)}}; };
  for (const auto& [base, path, items, url] :
       {Case{" http://h/ ", "/q.php", q("a b"), "http://h/q.php?q=a%20b"},
        Case{"http://h", "/q.php", {}, "http://h/q.php"},
        Case{"http://h/x//", "/y", {}, "http://h/x//y"},
        Case{"http://h/a%2Fb/?k=1&l", "/p", q("2"), "http://h/a%2Fb/p?k=1&l&q=2"},
        Case{"http://h/api/", "", q("x"), "http://h/api/?q=x"},
        Case{"http://h/api?t=caps", "", q("x"), "http://h/api?t=caps&q=x"},
        Case{"http://h/", "", q("&=#%+;/?:@!$'()*,[]\"<>"),
             "http://h/?q=%26%3D%23%25+;/?:@!$'()*,%5B%5D%22%3C%3E"},
        Case{"http://h/", "", q("ü-._~%41"), "http://h/?q=%C3%BC-._~%2541"}})
    EXPECT_EQ(ProviderURL::build(text(base), text(path), items)->toEncoded(), url) << base;
  EXPECT_FALSE(ProviderURL::build(text("h"), text("/p"), {}));
}

TEST(ProviderRequest, IsExactForEachKind) {
  struct Case {
    ProviderKind kind;
    const char* key;
    const char* url;
    ExpectedFormat expect;
  };
  for (const auto& [kind, key, url, expect] :
       {Case{ProviderKind::Apibay, "k", "http://h/q.php?q=a%20b&cat=200", ExpectedFormat::Json},
        Case{ProviderKind::Yts, "k", "http://h/api/v2/list_movies.json?query_term=a%20b&limit=30",
             ExpectedFormat::Json},
        Case{ProviderKind::Torznab, "", "http://h?t=search&q=a%20b", ExpectedFormat::Xml},
        Case{ProviderKind::Torznab, "k&", "http://h?t=search&q=a%20b&apikey=k%26",
             ExpectedFormat::Xml}}) {
    const auto request = providerRequest(kind, text("a b"), text(key));
    EXPECT_EQ(ProviderURL::build(text("http://h"), request->path, request->items)->toEncoded(),
              url);
    EXPECT_EQ(request->expect, expect);
  }
  EXPECT_FALSE(providerRequest(ProviderKind::ArchiveOrg, text("a"), {}));
}

TEST(ResponseClassifier, LooksAtTheBytes) {
  const QByteArray far(ResponseClassifier::kWindow, ' ');
  struct Case {
    QByteArray body;
    const char* type;
    ResponseKind kind;
  };
  for (const auto& [body, type, kind] :
       {Case{"{}", nullptr, ResponseKind::Json},
        Case{" \r\n[1]", "text/plain", ResponseKind::Json},
        Case{"\xef\xbb\xbf\n{", nullptr, ResponseKind::Json},
        Case{"{}", "Text/HTML; charset=x", ResponseKind::Html},
        Case{" <!DOCTYPE HTML>", nullptr, ResponseKind::Html},
        Case{"<Head>", "application/json", ResponseKind::Html},
        Case{"<body", nullptr, ResponseKind::Html},
        Case{"<html", nullptr, ResponseKind::Html},
        Case{"{\"x\":\"Just a MOMENT...\"}", "application/json", ResponseKind::Html},
        Case{"<?xml?><x>challenge-platform", "text/xml", ResponseKind::Html},
        Case{"[\"Attention Required! | Cloudflare\"]", nullptr, ResponseKind::Html},
        Case{"[\"cf-browser-verification\"]", nullptr, ResponseKind::Html},
        Case{"{" + far + "ddos-guard", nullptr, ResponseKind::Json},
        Case{("{" + far).first(4096 - 10) + "ddos-guard", nullptr, ResponseKind::Html},
        Case{("{" + far).first(4096 - 9) + "ddos-guard", nullptr, ResponseKind::Json},
        Case{"<?XML", nullptr, ResponseKind::Xml},
        Case{"<rss>", nullptr, ResponseKind::Xml},
        Case{"<error code='1'/>", nullptr, ResponseKind::Xml},
        Case{"<caps>", nullptr, ResponseKind::Xml},
        Case{"<feed>", nullptr, ResponseKind::Unknown},
        Case{"", "application/json", ResponseKind::Unknown},
        Case{far + "{", nullptr, ResponseKind::Unknown},
        Case{"\xff\xfe{", nullptr, ResponseKind::Unknown},
        Case{"ok", "text/xml", ResponseKind::Unknown}}) {
    std::optional<QString> contentType;
    if (type != nullptr) contentType = QLatin1String(type);
    EXPECT_EQ(ResponseClassifier::classify(body, contentType), kind) << body.left(40).toStdString();
  }
}

} // namespace
} // namespace vellum
