#include "Shown.h"
#include "base/Text.h"
#include "net/NetError.h"
#include "providers/Json.h"
#include "providers/ProviderParser.h"
#include "providers/TorznabParser.h"
#include "providers/TorznabProvider.h"
#include <gtest/gtest.h>

namespace vellum::test {
namespace {

const QByteArray kHash = "ABCDEF0123456789ABCDEF0123456789ABCDEF01";

TorrentResults rows(ProviderKind kind, const QByteArray& bytes) {
  return parseResults(kind, bytes, QStringLiteral("S"));
}
TorrentResults apibay(const QByteArray& json) { return rows(ProviderKind::Apibay, json); }
TorrentResults yts(const QByteArray& json) { return rows(ProviderKind::Yts, json); }
TorrentResults torznab(const QByteArray& xml) { return rows(ProviderKind::Torznab, xml); }

TEST(ApiBayProvider, ReadsRowsAndSkipsBadOnes) {
  const auto row = [](const QByteArray& name, const QByteArray& hash, const QByteArray& more = {}) {
    return R"({"name":)" + name + R"(,"info_hash":")" + hash + '"' + more + '}';
  };
  const std::string hash = kHash.toLower().toStdString();
  EXPECT_EQ(shown(apibay(
                '[' + row("\"A b\"", kHash, R"(,"size":"24","seeders":12,"leechers":"+3")") + ']')),
            hash + "; A b; S; size=24; seeders=12; leechers=3; hash=" + hash +
                "; magnet=magnet:?xt=urn%3Abtih%3A" + kHash.toStdString() + "&dn=A%20b");
  const auto seeders = [&](const QByteArray& json) {
    const auto read = apibay('[' + row("\"\"", kHash, ",\"seeders\":" + json) + ']').at(0).seeders;
    return read ? std::to_string(*read) : "none";
  };
  for (const QByteArray& number : {"-4", "0", "9223372036854775807"}) {
    EXPECT_EQ(seeders(number), number.toStdString());
    EXPECT_EQ(seeders('"' + number + '"'), number.toStdString());
  }
  for (const char* odd : {"12.5", "1e300", "null", "\"\"", "\"9223372036854775808\""})
    EXPECT_EQ(seeders(odd), "none") << odd;
  const QByteArray good = row("\"x\"", kHash.first(32)), zeros(40, '0');
  for (const QByteArray& bad :
       {QByteArray("{}"), QByteArray(R"({"name":"x"})"), row("7", kHash),
        QByteArray(R"({"name":"x","info_hash":7})"), row("\"x\"", kHash.first(31)),
        row("\"x\"", zeros), row('"' + QByteArray(4097, 'x') + '"', kHash)})
    EXPECT_EQ(apibay('[' + good + ',' + bad + ',' + good + ']').size(), 2U) << bad.toStdString();
  EXPECT_EQ(apibay('[' + row("\"x\"", zeros.first(39) + '1') + ']').size(), 1U);
  EXPECT_LT(apibay('[' + (good + ',').repeated(40'000) + good + ']').size(), 40'000U) << "bounded";
  for (const QByteArray& wrong :
       {QByteArray("[1]"), QByteArray("{}"), '[' + QByteArray("1,").repeated(999'999) + "1]"})
    EXPECT_THROW(apibay(wrong), NetError) << wrong.left(9).toStdString();
  for (const QByteArray& one : {"[],", "{},"}) // beyond a million values
    EXPECT_THROW(apibay('[' + one.repeated(500'000) + "1]"), json::SyntaxError);
  EXPECT_THROW(apibay("5"), json::SyntaxError);
}

TEST(YTSProvider, MakesARowOfEachTorrentOfAFilm) {
  EXPECT_EQ(shown(yts(R"({"data":{"movies":[
      {"title":"Big","year":2008,"url":"https://a.example/b","torrents":[
        {"hash":"AB","quality":"720p","type":"web","size_bytes":99.9,"seeds":4,"peers":6,
         "url":"https://a.example/t"},
        {"hash":"CD","size_bytes":"9","seeds":"4","peers":"5","url":""},
        {"quality":"1080p"}, {"hash":7}]},
      {"torrents":7}, {"year":"1999","torrents":[{"hash":"EF","quality":5,"type":"x","size_bytes":9223372036854775808}]},
      {"title":"Bad","torrents":[{"hash":"0"},1]}]}})")),
            "ab; Big (2008) 720p web; S; size=99; seeders=4; leechers=6; hash=ab; "
            "torrent=https://a.example/t; page=https://a.example/b; year=2008; base=Big (2008); "
            "magnet=magnet:?xt=urn%3Abtih%3AAB&dn=Big%20%282008%29%20720p%20web\n"
            "cd; Big (2008); S; hash=cd; page=https://a.example/b; year=2008; "
            "base=Big (2008); magnet=magnet:?xt=urn%3Abtih%3ACD&dn=Big%20%282008%29\n"
            "ef; Untitled (?)  x; S; hash=ef; base=Untitled (?); "
            "magnet=magnet:?xt=urn%3Abtih%3AEF&dn=Untitled%20%28%3F%29%20%20x");
  const QByteArray endless(4097, 'x');
  for (const QByteArray& empty :
       {QByteArray(R"({"data":{}})"), QByteArray(R"({"data":{"movies":[1]}})"),
        R"({"data":{"movies":[{},{"title":")" + endless + R"(","torrents":[{"hash":"AB"}]}]}})"})
    EXPECT_TRUE(yts(empty).empty()) << empty.toStdString();
  for (const char* wrong : {"{}", "[]", R"({"data":[]})"})
    EXPECT_THROW(yts(wrong), NetError) << wrong;
}

QByteArray item(const QByteArray& inside) {
  return "<rss xmlns:torznab='x'><channel><title>own</title><attr name='peers' value='9'/><item>" +
         inside + "</item></channel></rss>";
}

TEST(TorznabProvider, ReadsTheFieldsOfAnItem) {
  // A word such as "peers=3" stands for an attribute, and "+" for the title before everything.
  const auto written = [](QByteArray text) {
    text.replace("+", "<title> T </title>");
    return item(QString::fromUtf8(text)
                    .replace(QRegularExpression(QStringLiteral(" (\\w+)=([^' <]*)(?= |<|$)")),
                             QStringLiteral("<torznab:attr name='\\1' value='\\2'/>"))
                    .toUtf8());
  };
  for (const auto& [inside, wanted] : {
           std::pair("+", "T; T; S"),
           {"<title>a<b>c</b>T</title>", "cT; cT; S"},
           {"<title><![CDATA[<T> & ]]>x&amp;</title>", "<T> & x&; <T> & x&; S"},
           {"+<guid>g</guid><comments>http://c/</comments><description>d</description>",
            "g; T; S; page=http://c/"},
           {"+<guid>g</guid> infohash=ABC", "abc; T; S; hash=abc"},
           {"+<guid> </guid> infohash=", "T; T; S"},
           {"+ seeders=5 peers=12", "T; T; S; seeders=5; leechers=7"},
           {"+ seeders=12 peers=5", "T; T; S; seeders=12; leechers=0"},
           {"+ peers=5", "T; T; S; leechers=5"},
           {"+ peers=x seeders=1.5", "T; T; S"},
           {"+ peers=-9223372036854775808 seeders=1", "T; T; S; seeders=1; leechers=0"},
           {"+ peers=1 seeders=-9223372036854775808",
            "T; T; S; seeders=-9223372036854775808; leechers=9223372036854775807"},
           {"+<x:attr name='seeders'/><attr name='peers' value='3'/><y:attr name='seeders' "
            "value='2'/><attr value='2'/>",
            "T; T; S; seeders=2; leechers=1"},
           {"+<size>1</size> size=2", "T; T; S; size=2"},
           {"+ size=2<size>x</size><enclosure url='ftp://e/' length='9'/>", "T; T; S"},
           {"+<enclosure url='http://e/' length='9'/><link>http://l/</link>",
            "T; T; S; size=9; torrent=http://e/"},
           {"+<enclosure length='9'/><link>https://l/</link>", "T; T; S; torrent=https://l/"},
           {"+<link>magnet:?xt=1%41</link>", "T; T; S; magnet=magnet:?xt=1%41"},
           {"+<link>magnet:?xt=1</link> magneturl=magnet:?xt=2", "T; T; S; magnet=magnet:?xt=2"},
       })
    EXPECT_EQ(shown(torznab(written(inside))), wanted) << inside;
  EXPECT_EQ(shown(torznab(written("+<link>http://l/" + QByteArray(16'384, 'x') + "</link>"))),
            "T; T; S");
}

TEST(TorznabProvider, KeepsGoodItemsAmongBadOnes) {
  const QByteArray xml = "<?xml version='1.0' encoding=";
  for (const auto& [document, wanted] : {
           std::pair(item("<title>a</title></item><item><guid>no title</guid></item>"
                          "<item><title>b</title>"),
                     "a|b"),
           {item("<title>a</title><item><title>b</title></item><title>c</title>"),
            "b"}, // in an item
           {xml + "\"ISO-8859-1\"?>" + item("<title>\xfc\xc3\xbc</title>"), "üÃ¼"},
           {"\xef\xbb\xbf" + xml + "'ISO-8859-1'?>" + item("<title>\xc3\xbc</title>"), "ü"},
           {xml + "'windows-1252'?>" + item("<title>\xfc</title>"), "ü"},
           {"<!--<!x--><?x <!x?>" + item("<title><![CDATA[<!DOCTYPE]]></title>"), "<!DOCTYPE"},
           {"<!-->--><?x?>" + item("<title>a</title>"), "a"},
       }) {
    QStringList titles;
    for (const auto& row : torznab(document)) titles += row.title;
    EXPECT_EQ(titles.join(u'|'), QString::fromUtf8(wanted)) << document.toStdString();
  }
}

TEST(TorznabProvider, PassesOnWhatTheIndexerComplainsAbout) {
  const QByteArray endless(600, 'x');
  const std::string none = "Indexer error";
  using Case = std::pair<QByteArray, std::string>;
  for (const auto& [attributes, complaint] :
       {Case{"code='100' description='Wrong key'", "100 Wrong key"}, Case{"code='x'", "0 " + none},
        Case{"code='-2147483648' description=''", "-2147483648 "},
        Case{"code='-2147483649' description=''", "0 "},
        Case{"code='2147483647'", "2147483647 " + none}, Case{"code='2147483648'", "0 " + none},
        Case{"description='" + endless + "'",
             "0 " + shortened(QLatin1String(endless)).toStdString()}}) {
    try {
      torznab("<rss><error " + attributes + "/><broken");
      ADD_FAILURE() << attributes.toStdString();
    } catch (const IndexerError& error) {
      EXPECT_EQ(std::to_string(error.code()) + ' ' + error.errorDescription().toStdString(),
                complaint);
    }
  }
}

TEST(TorznabProvider, RefusesHostileDocuments) {
  const auto nested = [](int depth) {
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
  };
  const auto attributes = [](int count) {
    QByteArray text = "<rss><a b='>'";
    for (int i = 1; i < count; ++i) text += " a" + QByteArray::number(i) + "=\"'>\"";
    return text + "><b c=''/></a></rss>";
  };
  for (const QByteArray& xml : {nested(256), attributes(64),
                                "<a>" + QByteArray("<c></c>").repeated(500) + nested(255) + "</a>"})
    EXPECT_TRUE(torznab(xml).empty()) << xml.left(60).toStdString();
  for (const QByteArray& xml :
       {nested(257), attributes(65), QByteArray("<!----><?x?><!DOCTYPE rss><rss/>"),
        item("<title>\xff</title>"), QByteArray("<rss>"),
        "<?xml version='1.0' encoding='UTF-8'?>" + item("<title>\xff</title>")})
    EXPECT_THROW(torznab(xml), XmlError) << xml.left(60).toStdString();
}

} // namespace
} // namespace vellum::test
