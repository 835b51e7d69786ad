#include "base/Text.h"
#include "formats/TorrentMetadata.h"
#include "net/NetError.h"
#include "providers/ApiBayProvider.h"
#include "providers/Json.h"
#include "providers/TorznabParser.h"
#include "providers/TorznabProvider.h"
#include "providers/YTSProvider.h"
#include <chrono>
#include <gtest/gtest.h>

namespace vellum {
namespace {

const QString kSource = QStringLiteral("S");
const QByteArray kHash = "ABCDEF0123456789ABCDEF0123456789ABCDEF01";

using Count = std::optional<qint64>;

TEST(ApiBayProvider, ReadsRowsAndSkipsBadOnes) {
  const QByteArray good = R"({"name":"Film","info_hash":")" + kHash + "\"";
  const auto parse = [](const QByteArray& rows) {
    return ApiBayProvider::parse("[" + rows + "]", kSource);
  };
  const TorrentResults results = parse(good + R"(,"size":"24","seeders":12,"leechers":"+3"})");
  ASSERT_EQ(results.size(), 1U);
  TorrentResult expected;
  expected.id = QString::fromLatin1(kHash).toLower();
  expected.infoHash = expected.id;
  expected.title = QStringLiteral("Film");
  expected.size = 24;
  expected.seeders = 12;
  expected.leechers = 3;
  expected.sources = {kSource};
  expected.magnet = makeMagnet(QString::fromLatin1(kHash), expected.title);
  EXPECT_EQ(results[0], expected);

  struct Number {
    const char* json;
    Count value;
  };
  for (const auto& [json, value] :
       {Number{"\"n/a\"", {}}, Number{"\"\"", {}}, Number{"12.5", {}}, Number{"-4", -4},
        Number{"\" 5\"", {}}, Number{"\"9223372036854775807\"", INT64_MAX},
        Number{"9223372036854775807", INT64_MAX}, Number{"\"9223372036854775808\"", {}},
        Number{"1e300", {}}, Number{"null", {}}, Number{"[1]", {}}, Number{"true", {}},
        Number{"\"٣\"", {}}}) {
    const auto row = parse(good + ",\"seeders\":" + json + "}");
    ASSERT_EQ(row.size(), 1U) << json;
    EXPECT_EQ(row[0].seeders, value) << json;
  }
  const QByteArray zeros(40, '0');
  for (const QByteArray& bad :
       {QByteArray("{}"), QByteArray(R"({"name":"x"})"),
        "{\"name\":7,\"info_hash\":\"" + kHash + "\"}", QByteArray(R"({"name":"x","info_hash":7})"),
        "{\"name\":\"x\",\"info_hash\":\"" + kHash.first(31) + "\"}",
        "{\"name\":\"x\",\"info_hash\":\"" + zeros + "\"}"})
    EXPECT_EQ(parse(good + "}," + bad + "," + good + "}").size(), 2U) << bad.toStdString();
  EXPECT_EQ(parse("{\"name\":\"x\",\"info_hash\":\"" + zeros.first(39) + "1\"}").size(), 1U);
  EXPECT_EQ(parse("{\"name\":\"x\",\"info_hash\":\"" + kHash.first(32) + "\"}").size(), 1U);
  EXPECT_TRUE(parse("").empty());
  EXPECT_THROW(parse("1"), NetError);
  EXPECT_THROW(ApiBayProvider::parse("{}", kSource), NetError);
}

TEST(YTSProvider, MakesARowOfEachTorrentOfAFilm) {
  const TorrentResults results = YTSProvider::parse(
      R"({"data":{"movies":[
        {"title":"Big Buck Bunny","year":2008,"url":"https://a.example/b","torrents":[
          {"hash":"AB","quality":"720p","type":"web","size_bytes":99.9,"seeds":4,"peers":6,"url":"https://a.example/t"},
          {"hash":"CD","size_bytes":"9","seeds":"4","peers":"5","url":""}, {"quality":"1080p"}, {"hash":7}, {}]},
        {"year":"1999","torrents":[{"hash":"EF","quality":5,"type":"x"}]},
        {"title":"None"}, {"title":"Bad","torrents":[{"hash":"0"},1]}]}})",
      kSource);
  ASSERT_EQ(results.size(), 3U);
  TorrentResult first;
  first.id = QStringLiteral("ab");
  first.infoHash = first.id;
  first.title = QStringLiteral("Big Buck Bunny (2008) 720p web");
  first.size = 99;
  first.seeders = 4;
  first.leechers = 6;
  first.sources = {kSource};
  first.magnet = makeMagnet(QStringLiteral("AB"), first.title);
  first.torrentURL = QUrl(QStringLiteral("https://a.example/t"));
  first.pageURL = QUrl(QStringLiteral("https://a.example/b"));
  first.year = QStringLiteral("2008");
  first.baseTitle = QStringLiteral("Big Buck Bunny (2008)");
  EXPECT_EQ(results[0], first);
  EXPECT_EQ(results[1].title, *first.baseTitle);
  EXPECT_EQ(results[1].size, Count());
  EXPECT_EQ(results[1].seeders, Count());
  EXPECT_EQ(results[1].leechers, Count());
  EXPECT_EQ(results[1].torrentURL, std::nullopt);
  EXPECT_EQ(results[2].title, QStringLiteral("Untitled (?)  x"));
  EXPECT_EQ(results[2].year, std::nullopt);
  for (const char* empty : {R"({"data":{}})", R"({"data":{"movies":[1]}})",
                            R"({"data":{"movies":{}}})", R"({"data":{"movies":[{}]}})"})
    EXPECT_TRUE(YTSProvider::parse(empty, kSource).empty()) << empty;
  for (const char* wrong : {"{}", "[]", R"({"data":[]})"})
    EXPECT_THROW(YTSProvider::parse(wrong, kSource), NetError) << wrong;
}

// A small answer must not become any amount of memory by repeating its own texts.
TEST(YTSProvider, BoundsWhatAnAnswerBecomes) {
  const auto film = [](qsizetype letters, int torrents) {
    QByteArray list = QByteArray("{\"hash\":\"AB\"},").repeated(torrents);
    list.chop(1);
    const QByteArray title(letters, 'x');
    return YTSProvider::parse(
        R"({"data":{"movies":[{"title":")" + title + R"(","torrents":[)" + list + "]}]}}", kSource);
  };
  EXPECT_TRUE(film(100'000, 30'000).empty());
  const auto bounded = film(4000, 30'000).size();
  EXPECT_GT(bounded, 500U);
  EXPECT_LT(bounded, 1500U);
  EXPECT_EQ(film(10, 15'000).size(), 15'000U);
}

// Neither syntax nor size of a document may cost more than an error.
TEST(Json, RefusesWhatIsNoneOrTooMuch) {
  for (const QByteArray& bytes :
       {QByteArray(), QByteArray("{"), QByteArray("[]x"), QByteArray("5"), QByteArray("[\"\xff\"]"),
        QByteArray("[1e999]"), QByteArray(1 << 20, '['), QByteArray("{\"a\":").repeated(5000),
        "[" + QByteArray("[],").repeated(1'000'001) + "1]"})
    EXPECT_THROW(json::parse(bytes), json::SyntaxError) << bytes.left(20).toStdString();
  EXPECT_TRUE(json::parse("\xef\xbb\xbf[]").isArray());
}

QByteArray item(const QByteArray& inside) {
  return "<rss xmlns:torznab='x'><channel><title>own</title><item>" + inside +
         "</item></channel></rss>";
}
QByteArray attribute(const char* name, const char* value) {
  return QByteArray("<torznab:attr name='") + name + "' value='" + value + "'/>";
}

TEST(TorznabProvider, ReadsTheFieldsOfAnItem) {
  struct Case {
    QByteArray inside;
    std::function<void(TorrentResult&)> expect;
  };
  const QByteArray title = "<title> T </title>";
  const auto url = [](const char* text) { return QUrl(QLatin1String(text)); };
  const std::vector<Case> cases{
      {title, [](auto&) {}},
      {"<title>a<b>c</b>T</title>", [](auto& r) { r.id = r.title = QStringLiteral("cT"); }},
      {"<title><![CDATA[<T> & ]]>x&amp;</title>",
       [](auto& r) { r.id = r.title = QStringLiteral("<T> & x&"); }},
      {title + "<guid>g</guid><comments>http://c/</comments><description>d</description>",
       [&](auto& r) { r.id = QStringLiteral("g"), r.pageURL = url("http://c/"); }},
      {title + "<guid>g</guid>" + attribute("infohash", "ABC"),
       [](auto& r) { r.infoHash = r.id = QStringLiteral("abc"); }},
      {title + attribute("infohash", "") + "<guid> </guid>", [](auto&) {}},
      {title + attribute("seeders", "5") + attribute("peers", "12"),
       [](auto& r) { r.seeders = 5, r.leechers = 7; }},
      {title + attribute("seeders", "12") + attribute("peers", "5"),
       [](auto& r) { r.seeders = 12, r.leechers = 0; }},
      {title + attribute("peers", "5"), [](auto& r) { r.leechers = 5; }},
      {title + attribute("peers", "x") + attribute("seeders", "1.5"), [](auto&) {}},
      {title + attribute("peers", "-9223372036854775808") + attribute("seeders", "1"),
       [](auto& r) { r.seeders = 1, r.leechers = 0; }},
      {title + attribute("peers", "9223372036854775807") + attribute("seeders", "-5"),
       [](auto& r) { r.seeders = -5, r.leechers = INT64_MAX; }},
      {title + "<torznab:attr name='seeders'/><attr name='peers' value='3'/>" +
           "<newznab:attr name='seeders' value='2'/>",
       [](auto& r) { r.seeders = 2, r.leechers = 1; }},
      {title + "<size>1</size>" + attribute("size", "2"), [](auto& r) { r.size = 2; }},
      {title + attribute("size", "2") + "<size>x</size><enclosure url='ftp://e/' length='9'/>",
       [](auto&) {}},
      {title + "<enclosure url='http://e/' length='9'/><link>http://l/</link>",
       [&](auto& r) { r.size = 9, r.torrentURL = url("http://e/"); }},
      {title + "<enclosure length='9'/><link>https://l/</link>",
       [&](auto& r) { r.torrentURL = url("https://l/"); }},
      {title + "<link>http://l/" + QByteArray(16'384, 'x') + "</link>", [](auto&) {}},
      {title + "<link>magnet:?xt=1%41</link>",
       [](auto& r) { r.magnet = QStringLiteral("magnet:?xt=1%41"); }},
      {title + "<link>magnet:?xt=1</link>" + attribute("magneturl", "magnet:?xt=2"),
       [](auto& r) { r.magnet = QStringLiteral("magnet:?xt=2"); }}};
  for (const auto& [inside, expect] : cases) {
    TorrentResult expected;
    expected.id = expected.title = QStringLiteral("T");
    expected.sources = {kSource};
    expect(expected);
    EXPECT_EQ(TorznabProvider::parse(item(inside), kSource), TorrentResults{expected})
        << inside.toStdString();
  }
}

TEST(TorznabProvider, KeepsGoodItemsAmongBadOnes) {
  const auto titles = [](const QByteArray& xml) {
    QStringList list;
    for (const auto& result : TorznabProvider::parse(xml, kSource)) list += result.title;
    return list.join(u' ');
  };
  EXPECT_EQ(titles(item("<title>a</title></item><item><guid>no title</guid></item>"
                        "<item><title>b</title>")),
            QStringLiteral("a b"));
  // An item in an item replaces it.
  EXPECT_EQ(titles(item("<title>a</title><item><title>b</title></item><title>c</title>")),
            QStringLiteral("b"));
  EXPECT_EQ(titles("\xef\xbb\xbf<?xml version='1.0' encoding='utf-8'?><rss/>"), QString());
  EXPECT_EQ(titles("<?xml version='1.0' encoding='ISO-8859-1'?>" + item("<title>\xfc</title>")),
            QStringLiteral("ü"));
  EXPECT_EQ(titles("\xef\xbb\xbf<?xml version='1.0' encoding='ISO-8859-1'?>" +
                   item("<title>\xc3\xbc</title>")),
            QStringLiteral("ü"));
  EXPECT_EQ(titles("<?xml version='1.0' encoding='windows-1252'?>" + item("<title>\xfc</title>")),
            QStringLiteral("ü"));
  EXPECT_EQ(titles(item("<title><![CDATA[<!DOCTYPE]]></title>")), QStringLiteral("<!DOCTYPE"));
}

TEST(TorznabProvider, PassesOnWhatTheIndexerComplainsAbout) {
  struct Case {
    QByteArray xml;
    int code;
    QString text;
  };
  const QString endless(600, u'x');
  for (const auto& [xml, code, text] :
       {Case{"<error code='100' description='Wrong key'/>", 100, QStringLiteral("Wrong key")},
        Case{"<error code='x'/>", 0, QStringLiteral("Indexer error")},
        Case{"<error code='99999999999' description=''/>", 0, {}},
        Case{"<rss><error code='1' description='d'/><broken", 1, QStringLiteral("d")},
        Case{"<error description='" + endless.toLatin1() + "'/>", 0, shortened(endless)}}) {
    try {
      TorznabProvider::parse(xml, kSource);
      ADD_FAILURE() << xml.toStdString();
    } catch (const IndexerError& error) {
      EXPECT_EQ(error.code(), code);
      EXPECT_EQ(error.errorDescription(), text);
    }
  }
}

TEST(TorznabProvider, RefusesHostileDocumentsAtOnce) {
  const auto began = std::chrono::steady_clock::now();
  const QByteArray bomb = "<!DOCTYPE r [<!ENTITY a 'aaaa'><!ENTITY b '&a;&a;'>]>";
  for (const QByteArray& xml :
       {bomb + item("<title>&b;</title>"), QByteArray("<!DOCTYPE rss><rss/>"),
        "<!DOCTYPE r [<!ENTITY e SYSTEM 'file:///etc/hostname'>]>" + item("<title>&e;</title>"),
        QByteArray("<!DOCTYPE r SYSTEM 'http://127.0.0.1:1/x.dtd'><rss/>"),
        item("<title>&nbsp;</title>"), item("<title>\xff</title>"), QByteArray("<rss>"),
        QByteArray("{}"),
        "<?xml version='1.0'?><!DOCTYPE r [" +
            QByteArray("<!ATTLIST a b CDATA #IMPLIED>").repeated(100'000) + "]><r/>",
        QByteArray("<a>").repeated(300'000) + QByteArray("</a>").repeated(300'000),
        "<rss " + QByteArray("a='' ").repeated(300'000) + "/>", "<rss><a b='>' " + [] {
          QByteArray attributes;
          for (int i = 0; i < 200'000; ++i) attributes += " a" + QByteArray::number(i) + "='\">'";
          return attributes;
        }() + "/></rss>"})
    EXPECT_THROW(TorznabProvider::parse(xml, kSource), XmlError) << xml.left(60).toStdString();
  EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(5));
}

} // namespace
} // namespace vellum
