#include "net/NetError.h"
#include "providers/ArchiveOrgProvider.h"
#include "support/RunFlow.h"
#include <QJsonArray>
#include <gtest/gtest.h>

namespace vellum::test {
namespace {

using Catalog = ArchiveOrgProvider;

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

TEST(Catalog, BuildsQueriesThatNoUserCanBreakOutOf) {
  const QString fixed = text("mediatype:(movies) AND -access-restricted-item:true");
  EXPECT_EQ(Catalog::buildQuery({}, {}), fixed);
  EXPECT_EQ(Catalog::buildQuery(text("\"-:)(! *"), text("")), fixed);
  EXPECT_EQ(Catalog::buildQuery(text("great train"), text("collection:(x)")),
            text("(title:(great AND train) OR description:(great AND train) OR subject:(great AND "
                 "train)) AND ") +
                fixed + text(" AND collection:(x)"));
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
  const auto answer = [](QByteArray bytes, std::optional<NetError> failure) -> Flow<QByteArray> {
    if (failure) throw NetError(*failure);
    co_return bytes;
  };
  const Catalog catalog([&](QUrl url, std::chrono::milliseconds timeout) {
    asked = url.toEncoded();
    allowed = timeout;
    return answer(body, error);
  });
  CatalogQuery query{
      .text = text("a&b"), .extra = {}, .sort = text("week desc"), .rows = 24, .page = 2};
  EXPECT_TRUE(runFlow(catalog.search(query)).empty());
  EXPECT_EQ(asked,
            "https://archive.org/advancedsearch.php?q=(title:(a%20AND%20b)%20OR%20"
            "description:(a%20AND%20b)%20OR%20subject:(a%20AND%20b))%20AND%20mediatype:("
            "movies)%20AND%20-access-restricted-item:true&fl%5B%5D=identifier&fl%5B%5D=title"
            "&fl%5B%5D=year&fl%5B%5D=description&fl%5B%5D=creator&fl%5B%5D=downloads&fl%5B%5D"
            "=licenseurl&fl%5B%5D=subject&sort%5B%5D=week%20desc&rows=24&page=2&output=json");
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
  EXPECT_THROW(runFlow(catalog.details(text("id"))), NetError);
  error = NetError::http(500);
  EXPECT_THROW(runFlow(catalog.search(query)), NetError);
}

TEST(Catalog, ReadsLooseValuesOfSearchAnswers) {
  const QJsonArray nested{QJsonArray{text("in")}, text("out")};
  for (const auto& [value, first] :
       {std::pair(QJsonValue(text("")), ""),
        {nested, "in"},
        {QJsonArray(), "none"},
        {1999, "1999"},
        {0.5, "0.5"},
        {true, "1"},
        {false, "0"},
        {QJsonValue(qint64(9'007'199'254'740'993)), "9007199254740993"},
        {QJsonValue(), "none"},
        {QJsonObject{{text("a"), 1}}, "none"}})
    EXPECT_EQ(Catalog::first(value).value_or(text("none")), text(first));

  const MediaItems items = Catalog::parseSearch(R"({"response":{"docs":[
    {"identifier":["a"],"title":7,"year":1957,"description":["<p>A&amp;B</p>","x"],"creator":"c",
     "downloads":"12","licenseurl":"l","subject":"s; t"},
    {"title":"no identifier"}, {},
    {"identifier":"b","description":"<b></b>","downloads":"many","subject":["s","t"]},
    {"identifier":"c","subject":["s",1]}]}})");
  ASSERT_EQ(items.size(), 3U);
  EXPECT_EQ(items[0], (MediaItem{text("a"),
                                 text("7"),
                                 text("1957"),
                                 text("A&B"),
                                 text("c"),
                                 {text("s; t")},
                                 12,
                                 text("l")}));
  EXPECT_EQ(items[1], (MediaItem{text("b"), text("b"), {}, {}, {}, {text("s"), text("t")}, 0, {}}));
  EXPECT_TRUE(items[2].subjects.isEmpty());
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
    {"name":"s.mp4","format":"H.264 IA","size":"100"}, {"name":"dir//a b/ü#.mp4","format":"MPEG4","size":200},
    {"name":"n.txt","size":"x"}, {"name":"m.bin"}, {"name":"z","size":0}, {"name":"p.mp4","format":"x mpeg4"}]})",
                            text("i d"));
  ASSERT_TRUE(details);
  EXPECT_EQ(details->item, (MediaItem{text("i d"),
                                      text("T"),
                                      text("1957"),
                                      text("d"),
                                      text("c"),
                                      {text("a"), QString(), text("b")},
                                      0,
                                      text("l")}));
  EXPECT_TRUE(details->restricted);
  QStringList names;
  for (const ArchiveFile& file : details->files) names += file.name;
  EXPECT_EQ(names.join(u'|'), text("dir//a b/ü#.mp4|s.mp4|o.ogv|n.txt|m.bin|z|p.mp4"));
  EXPECT_EQ(details->files[0].url.toEncoded(),
            "https://archive.org/download/i%20d/dir/a%20b/%C3%BC%23.mp4");
  EXPECT_EQ(details->files[3].size, std::nullopt);
  const auto year = Catalog::parseDetails(
      R"({"metadata":{"year":"1","date":"2","access-restricted-item":true},"files":[{"name":"a"},1]})",
      {});
  EXPECT_EQ(year->item.year, text("1"));
  EXPECT_TRUE(!year->restricted && year->files.empty());
  for (const char* odd : {"", "[]", R"({"metadata":null})"})
    EXPECT_FALSE(Catalog::parseDetails(odd, text("x"))) << odd;
}

// A small answer must not become any amount of memory by repeating what stands in it once.
TEST(Catalog, BoundsWhatIsRepeatedOrCut) {
  const QByteArray longest(255, 'i'),
      record = R"({"metadata":{"subject":")" + QByteArray(1500, ';') + R"("},"files":[)";
  const auto found = [](const QByteArray& id) {
    return Catalog::parseSearch(R"({"response":{"docs":[{"identifier":")" + id + "\"}]}}").size();
  };
  EXPECT_EQ(found(longest), 1U);
  EXPECT_EQ(found(longest + 'i'), 0U);
  EXPECT_TRUE(Catalog::parseDetails(record + "]}", QString(255, u'i')));
  EXPECT_FALSE(Catalog::parseDetails(record + "]}", QString(256, u'i')));
  const auto named = [](qsizetype letters) {
    return "{\"name\":\"" + QByteArray(letters, 'n') + "\"},";
  };
  const auto details = Catalog::parseDetails(
      record + named(4096) + named(4097) + named(1).repeated(100'001) + "{}]}", text("id"));
  ASSERT_TRUE(details);
  EXPECT_EQ(details->item.subjects.size(), 1000);
  EXPECT_EQ(details->files.size(), 100'000U);
  EXPECT_EQ(details->files[1].name, text("n")) << "the second is too long";
}

} // namespace
} // namespace vellum::test
