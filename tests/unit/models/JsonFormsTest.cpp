#include "models/HistoryEntry.h"
#include "models/MediaItem.h"
#include "models/ProviderConfig.h"
#include <QDateTime>
#include <QJsonDocument>
#include <cmath>
#include <gtest/gtest.h>

namespace vellum {
namespace {

QJsonObject object(const QByteArray& json) { return QJsonDocument::fromJson(json).object(); }
QByteArray list(const QByteArray& one, const QByteArray& another) {
  return '[' + one + ',' + another + ']';
}

// The keys that an object cannot do without. What is null counts as missing; no other type is read.
template <class Read>
std::string needed(const QJsonObject& good, Read read) {
  QString missed;
  for (const QString& key : good.keys()) {
    const auto reads = [&](const QJsonValue& value) {
      QJsonObject changed = good;
      changed.insert(key, value);
      return read(changed).has_value();
    };
    EXPECT_FALSE(reads(QJsonObject())) << key.toStdString();
    EXPECT_EQ(reads(QJsonValue::Undefined), reads(QJsonValue::Null)) << key.toStdString();
    if (!reads(QJsonValue::Null)) missed += key + u' ';
  }
  return missed.toStdString();
}

TEST(HistoryEntry, ComesThroughJsonAndNotWithABadRowOrNumber) {
  const QByteArray json =
      "{\"duration\":2,\"isLocal\":true,\"itemID\":\"i\",\"key\":\"k\",\"lastPlayed\":1.5,"
      "\"position\":0.25,\"source\":\"s\",\"thumbnail\":\"p\",\"title\":\"ü\"}";
  auto rows = historyFromJson(list(json, QByteArray(json).replace("\"p\"", "null")));
  ASSERT_TRUE(rows && rows->size() == 2);
  EXPECT_EQ(toJson(*rows), list(json, QByteArray(json).replace("\"thumbnail\":\"p\",", "")));
  EXPECT_EQ(rows->front().lastPlayed,
            secondsSince2001(QDateTime::fromMSecsSinceEpoch(978307201500)));
  const auto read = [](const QJsonObject& one) {
    return historyFromJson('[' + QJsonDocument(one).toJson() + ']');
  };
  EXPECT_EQ(needed(object(json), read),
            "duration isLocal itemID key lastPlayed position source title ");
  for (const QByteArray& bad : {list(json, "7"), list("[]", json), json})
    EXPECT_FALSE(historyFromJson(bad)) << bad.toStdString();
  rows->back().position = HUGE_VAL;
  EXPECT_FALSE(toJson(*rows)) << "JSON has no such number";
}

TEST(MediaItem, ComesThroughJsonAndHasAddressesOnTheCatalog) {
  const QByteArray bare = R"({"downloads":-1,"id":"a b/ü;?#%41","subjects":["x","y"],"title":"T")";
  const QByteArray full = bare + R"(,"year":"","summary":"s","creator":"c","licenseURL":"l")";
  for (const QByteArray& json : {bare, full})
    EXPECT_EQ(MediaItem::fromJson(object(json + '}'))->toJson(), object(json + '}'));
  EXPECT_EQ(needed(object(full + '}'), MediaItem::fromJson), "downloads id subjects title ");
  for (const char* bad : {"\"subjects\":[\"x\",1]", "\"subjects\":[1,\"x\"]", "\"downloads\":0.5",
                          "\"downloads\":1e300"})
    EXPECT_FALSE(MediaItem::fromJson(object(full + ',' + bad + '}'))) << bad;
  MediaItem item = *MediaItem::fromJson(object(full + '}'));
  EXPECT_EQ(item.pageURL().toEncoded(), "https://archive.org/details/a%20b/%C3%BC%3B%3F%23%2541");
  EXPECT_EQ(item.thumbnailURL().toEncoded(),
            "https://archive.org/services/img/a%20b/%C3%BC%3B%3F%23%2541");
  item.downloads = 9'007'199'254'740'993;
  EXPECT_EQ(MediaItem::fromJson(item.toJson()), item) << "beyond what a double can count";
}

TEST(ProviderConfig, ComesThroughJsonAndFillsWhatIsMissing) {
  const QByteArray json = R"({"apiKey":"k","baseURL":"not an address","enabled":false,)"
                          R"("id":"6F9619FF-8B86-D011-B42D-00C04FC964FF","kind":"torznab",)"
                          R"("mirrors":["https://a.example",""],"name":"Größe \"7\""})";
  const QByteArray lower = QByteArray(json).replace("FF\"", "ff\"");
  EXPECT_EQ(toJson(providersFromJson(list(json, lower)).value()), list(json, json));
  EXPECT_EQ(needed(object(json), ProviderConfig::fromJson), "kind name ");

  const QByteArray least = R"({"name":"","kind":"archiveOrg"})";
  const auto bare = providersFromJson(list(least, least)).value();
  ProviderConfig expected;
  expected.id = bare[0].id;
  EXPECT_EQ(bare[0], expected);
  EXPECT_FALSE(expected.id.isNull() || expected.id == bare[1].id);
  for (const char* bad : {R"("kind":"YTS")", R"("id":"")", R"("mirrors":["a",1])",
                          R"("mirrors":[1,"a"])", R"("id":"6F9619FF8B86D011B42D00C04FC964FF")"})
    EXPECT_FALSE(providersFromJson(list(json, json.chopped(1) + ',' + bad + '}'))) << bad;
  for (const QByteArray& bad : {list(json, "[]"), list("7", json), json})
    EXPECT_FALSE(providersFromJson(bad)) << bad.toStdString();
}

} // namespace
} // namespace vellum
