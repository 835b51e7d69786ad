#include "net/NetError.h"
#include "providers/ArchiveOrgProvider.h"
#include "support/RunFlow.h"
#include <QJsonDocument>
#include <gtest/gtest.h>

namespace vellum::test {
namespace {

using Catalog = ArchiveOrgProvider;

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

// The JSON of every item, one behind the other.
std::string shown(const MediaItems& items) {
  QByteArray all;
  for (const MediaItem& item : items)
    all += QJsonDocument(item.toJson()).toJson(QJsonDocument::Compact);
  return all.toStdString();
}

TEST(Catalog, BuildsQueriesThatNoUserCanBreakOutOf) {
  const QString fixed = text("mediatype:(movies) AND -access-restricted-item:true");
  EXPECT_EQ(Catalog::buildQuery({}, {}), fixed);
  EXPECT_EQ(Catalog::buildQuery(text("\"-:)(! *"), text("")), fixed);
  EXPECT_EQ(
      Catalog::sanitize(text("\xcc\x81 a) OR (b:\"Größe\" 四½\xf0\x90\x90\x80 कि\xe2\x80\x8dताब "
                             "a\xe2\x80\x8c-\xe2\x80\x8c cafe\xcc\x81 %1"))
          .join(u'|'),
      text("a|OR|b|Größe|四½\xf0\x90\x90\x80|कि\xe2\x80\x8dताब|a\xe2\x80\x8c|cafe\xcc\x81|1"));
}

TEST(Catalog, AsksExactly) {
  QByteArray asked, body;
  std::chrono::milliseconds allowed{};
  std::optional<NetError> error;
  const Catalog catalog([&](QUrl url, std::chrono::milliseconds timeout) -> Flow<QByteArray> {
    asked = url.toEncoded();
    allowed = timeout;
    if (error) throw NetError(*error);
    co_return body;
  });
  CatalogQuery query{text("a&b"), text("c:(x)"), text("week desc"), 24, 2};
  EXPECT_TRUE(runFlow(catalog.search(query)).empty());
  EXPECT_EQ(asked, "https://archive.org/advancedsearch.php?q=(title:(a%20AND%20b)%20OR%20"
                   "description:(a%20AND%20b)%20OR%20subject:(a%20AND%20b))%20AND%20mediatype:("
                   "movies)%20AND%20-access-restricted-item:true%20AND%20c:(x)&fl%5B%5D=identifier"
                   "&fl%5B%5D=title&fl%5B%5D=year&fl%5B%5D=description&fl%5B%5D=creator"
                   "&fl%5B%5D=downloads&fl%5B%5D=licenseurl&fl%5B%5D=subject&sort%5B%5D=week%20desc"
                   "&rows=24&page=2&output=json");
  EXPECT_EQ(allowed, std::chrono::seconds(15));
  EXPECT_THROW(runFlow(catalog.details(text("x y?"))), NetError);
  EXPECT_EQ(asked, "https://archive.org/metadata/x%20y%3F");
  EXPECT_EQ(allowed, std::chrono::seconds(20));
  body = R"({"metadata":{}})";
  EXPECT_EQ(runFlow(catalog.details(text("id"))).item.title, text("id"));

  body = R"({"response":{"docs":[{"identifier":"a"},{"identifier":"b"}]}})";
  query.rows = 1;
  EXPECT_EQ(runFlow(catalog.search(query)).size(), 1U);
  error = NetError::tooLarge(); // as good as no answer of a catalog
  EXPECT_TRUE(runFlow(catalog.search(query)).empty());
  error = NetError::http(500);
  EXPECT_THROW(runFlow(catalog.search(query)), NetError);
}

TEST(Catalog, ReadsSearchAnswersOfLooseTypes) {
  EXPECT_EQ(shown(Catalog::parseSearch(R"({"response":{"docs":[
    {"identifier":["a"],"title":7,"year":1957,"description":["<p>A&amp;B</p>","x"],"creator":"c",
     "downloads":"12","licenseurl":"l","subject":"s; t"}, {"title":"no identifier"}, {},
    {"identifier":"b","description":"<b></b>","downloads":"many","subject":["s","t"]},
    {"identifier":"","subject":["s",1]}, {"identifier":[["in"],"out"]}, {"identifier":[]},
    {"identifier":0.5}, {"identifier":true}, {"identifier":[false]}, {"identifier":null},
    {"identifier":9007199254740993}, {"identifier":{"a":1}}]}})")),
            R"({"creator":"c","downloads":12,"id":"a","licenseURL":"l","subjects":["s; t"],)"
            R"("summary":"A&B","title":"7","year":"1957"})"
            R"({"downloads":0,"id":"b","subjects":["s","t"],"title":"b"})"
            R"({"downloads":0,"id":"","subjects":[],"title":""})"
            R"({"downloads":0,"id":"in","subjects":[],"title":"in"})"
            R"({"downloads":0,"id":"0.5","subjects":[],"title":"0.5"})"
            R"({"downloads":0,"id":"1","subjects":[],"title":"1"})"
            R"({"downloads":0,"id":"0","subjects":[],"title":"0"})"
            R"({"downloads":0,"id":"9007199254740993","subjects":[],"title":"9007199254740993"})");
  for (const char* odd :
       {"", "[]", R"({"response":[]})", R"({"response":{"docs":[{"identifier":"a"},7]}})"})
    EXPECT_TRUE(Catalog::parseSearch(odd).empty()) << odd;
}

TEST(Catalog, ReadsRecordsAndPutsTheMostPlayableFileFirst) {
  const auto details =
      Catalog::parseDetails(R"({"metadata":{"title":["T"],"date":"1957-03-01","subject":" a ;;b",
      "description":"<i>d</i>","creator":"c","licenseurl":"l","downloads":7,
      "access-restricted-item":["true"]},"files":[
    {"name":"o.ogv","format":"Ogg Video","size":"1000"}, {"format":"no name"},
    {"name":"s.mp4","format":"H.264 IA","size":"100"},
    {"name":"dir//a b/ü#.mp4","format":"MPEG4","size":200}, {"name":"n.txt","size":"x"},
    {"name":"m.bin"}, {"name":"z","size":0}, {"name":"p.mp4","format":"x mpeg4"}]})",
                            text("i d"));
  ASSERT_TRUE(details);
  EXPECT_EQ(shown({details->item}),
            R"({"creator":"c","downloads":0,"id":"i d","licenseURL":"l","subjects":["a","","b"],)"
            R"("summary":"d","title":"T","year":"1957"})");
  EXPECT_TRUE(details->restricted);
  QStringList names;
  for (const ArchiveFile& file : details->files) names += file.name;
  EXPECT_EQ(names.join(u'|'), text("dir//a b/ü#.mp4|s.mp4|o.ogv|n.txt|m.bin|z|p.mp4"));
  EXPECT_EQ(details->files[0].url.toEncoded(),
            "https://archive.org/download/i%20d/dir/a%20b/%C3%BC%23.mp4");
  EXPECT_EQ(details->files[3].size, std::nullopt);
  const auto odd = Catalog::parseDetails(R"({"files":[1],"metadata":{"year":"1","date":"2"}})", {});
  EXPECT_EQ(odd->item.year, text("1"));
  EXPECT_TRUE(!odd->restricted && odd->files.empty());
  for (const char* none : {"", "[]", R"({"metadata":null})"})
    EXPECT_FALSE(Catalog::parseDetails(none, text("x"))) << none;
}

TEST(Catalog, BoundsWhatIsRepeatedOrCut) {
  const QByteArray record =
      R"({"metadata":{"subject":")" + QByteArray(1500, ';') + R"("},"files":[)";
  for (const int size : {255, 256}) {
    const QByteArray id(size, 'i');
    EXPECT_EQ(
        Catalog::parseSearch(R"({"response":{"docs":[{"identifier":")" + id + "\"}]}}").empty(),
        size == 256);
    EXPECT_EQ(Catalog::parseDetails(record + "]}", text(id)).has_value(), size == 255);
  }
  const auto named = [](int size) { return "{\"name\":\"" + QByteArray(size, 'n') + "\"},"; };
  const auto details = Catalog::parseDetails(
      record + named(4096) + named(4097) + named(1).repeated(100'001) + "{}]}", text("id"));
  ASSERT_TRUE(details);
  EXPECT_EQ(details->item.subjects.size(), 1000);
  EXPECT_EQ(details->files.size(), 100'000U);
  EXPECT_EQ(details->files[1].name, text("n")) << "the second is too long";
}

} // namespace
} // namespace vellum::test
