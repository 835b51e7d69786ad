#include "models/HistoryEntry.h"
#include "models/MediaItem.h"
#include "models/ProviderConfig.h"
#include <QDateTime>
#include <QJsonDocument>
#include <cmath>
#include <gtest/gtest.h>

namespace vellum {
namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }
QJsonObject object(const QByteArray& json) { return QJsonDocument::fromJson(json).object(); }
QByteArray list(const QByteArray& one, const QByteArray& another) {
  return '[' + one + ',' + another + ']';
}

// The keys that an object cannot do without, and behind "|" those that may have any type. What is
// null counts as missing.
template <class Read>
std::string needed(const QJsonObject& good, Read read) {
  QString missed, loose;
  for (const QString& key : good.keys()) {
    QJsonObject bad = good;
    bad[key] = QJsonObject();
    if (read(bad)) loose += key;
    bad[key] = QJsonValue::Null;
    const auto withNull = read(bad).has_value();
    bad.remove(key);
    if (!read(bad)) missed += key + u' ';
    EXPECT_EQ(read(bad).has_value(), withNull) << key.toStdString();
  }
  return (missed + u'|' + loose).toStdString();
}

TEST(HistoryEntry, ReadsWhatItWroteAndNothingWithABadRow) {
  HistoryEntry entry{
      text("k"), text("i"), text("ü"),
      text("s"), true,      text("p"),
      0.25,      2,         secondsSince2001(QDateTime::fromMSecsSinceEpoch(978307201500))};
  const QByteArray json =
      "{\"duration\":2,\"isLocal\":true,\"itemID\":\"i\",\"key\":\"k\",\"lastPlayed\":1.5,"
      "\"position\":0.25,\"source\":\"s\",\"thumbnail\":\"p\",\"title\":\"ü\"}";
  EXPECT_EQ(toJson({entry, entry}), list(json, json));
  HistoryEntry bare = entry;
  bare.thumbnail.reset();
  EXPECT_EQ(historyFromJson(list(json, QByteArray(json).replace("\"p\"", "null"))),
            HistoryEntries({entry, bare}));
  EXPECT_FALSE(toJson({bare})->contains("thumbnail"));
  const auto read = [](const QJsonObject& one) {
    return historyFromJson('[' + QJsonDocument(one).toJson() + ']');
  };
  EXPECT_EQ(needed(object(json), read),
            "duration isLocal itemID key lastPlayed position source title |");
  for (const QByteArray& bad : {list(json, "7"), list("[]", json), json, QByteArray("[")})
    EXPECT_FALSE(historyFromJson(bad)) << bad.toStdString();
  EXPECT_TRUE(historyFromJson("[]")->empty());
  for (const double number : {std::nan(""), HUGE_VAL}) {
    entry.position = number;
    EXPECT_FALSE(toJson({bare, entry})) << "JSON has no such number";
  }
}

TEST(MediaItem, ReadsWhatItWroteAndHasAddressesOnTheCatalog) {
  const MediaItem item{text("a b/ü;?#%41"),
                       text("T"),
                       QString(),
                       text("s"),
                       text("c"),
                       {text("x"), text("y")},
                       9'007'199'254'740'993, // beyond a double
                       text("l")};
  EXPECT_EQ(item.pageURL().toEncoded(), "https://archive.org/details/a%20b/%C3%BC%3B%3F%23%2541");
  EXPECT_EQ(item.thumbnailURL().toEncoded(),
            "https://archive.org/services/img/a%20b/%C3%BC%3B%3F%23%2541");
  const QJsonObject json = item.toJson();
  EXPECT_EQ(json.keys().join(u' '),
            text("creator downloads id licenseURL subjects summary title year"));
  EXPECT_EQ(MediaItem::fromJson(json), item);
  MediaItem bare;
  bare.downloads = -1;
  EXPECT_EQ(bare.toJson().keys().join(u' '), text("downloads id subjects title"));
  EXPECT_EQ(MediaItem::fromJson(bare.toJson()), bare);
  EXPECT_EQ(needed(json, MediaItem::fromJson), "downloads id subjects title |");
  for (const char* bad : {"\"subjects\":[\"x\",1]", "\"subjects\":[1,\"x\"]", "\"downloads\":0.5",
                          "\"downloads\":1e300"})
    EXPECT_FALSE(
        MediaItem::fromJson(object(QJsonDocument(json).toJson().chopped(2) + ',' + bad + '}')))
        << bad;
}

TEST(ProviderConfig, ReadsWhatItWroteAndFillsWhatIsMissing) {
  const ProviderConfig config{QUuid(text("6f9619ff-8b86-d011-b42d-00c04fc964ff")),
                              text("Größe \"7\""),
                              ProviderKind::Torznab,
                              text("not an address"),
                              text("k"),
                              false,
                              {text("https://a.example"), QString()}};
  const QByteArray json = R"({"apiKey":"k","baseURL":"not an address","enabled":false,)"
                          R"("id":"6F9619FF-8B86-D011-B42D-00C04FC964FF","kind":"torznab",)"
                          R"("mirrors":["https://a.example",""],"name":"Größe \"7\""})";
  EXPECT_EQ(toJson(std::vector{config, config}), list(json, json));
  EXPECT_EQ(
      providersFromJson(
          list(json, json.toLower().replace("apikey", "apiKey").replace("baseurl", "baseURL")))
          ->size(),
      2U);
  EXPECT_EQ(providersFromJson(list(json, json))->back(), config);
  EXPECT_EQ(needed(object(json), ProviderConfig::fromJson), "kind name |");

  const QByteArray least = R"({"name":"","kind":"archiveOrg"})";
  const auto bare = providersFromJson(list(least, least));
  ASSERT_TRUE(bare);
  ProviderConfig expected;
  expected.id = bare->front().id;
  EXPECT_EQ(bare->front(), expected);
  EXPECT_FALSE(expected.id.isNull() || expected.id == bare->back().id);
  for (const char* kind : {"archiveOrg", "apibay", "yts", "torznab"})
    EXPECT_EQ(rawValue(providerKind(text(kind)).value()), text(kind));
  for (const char* bad : {R"("kind":"YTS")", R"("id":"no")", R"("id":"")",
                          R"("id":"6F9619FF8B86D011B42D00C04FC964FF")",
                          R"("id":"{6F9619FF-8B86-D011-B42D-00C04FC964FF}")",
                          R"("mirrors":["a",1])", R"("mirrors":[1,"a"])"})
    EXPECT_FALSE(providersFromJson(list(json, json.chopped(1) + ',' + bad + '}'))) << bad;
  for (const QByteArray& bad :
       {list(json, "[]"), list("7", json), json, QByteArray("[]x"), QByteArray(1 << 20, '[')})
    EXPECT_FALSE(providersFromJson(bad)) << bad.left(20).toStdString();
  EXPECT_TRUE(providersFromJson("[]"));
}

} // namespace
} // namespace vellum
