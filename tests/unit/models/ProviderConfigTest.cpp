#include "models/ProviderConfig.h"
#include <QJsonDocument>
#include <gtest/gtest.h>

namespace vellum {
namespace {

const char kId[] = "6F9619FF-8B86-D011-B42D-00C04FC964FF";

TEST(ProviderConfig, WritesAllSevenKeysAndReadsThemBack) {
  ProviderConfig config;
  config.id = QUuid(QLatin1String(kId));
  config.name = QStringLiteral("Größe \"7\"");
  config.kind = ProviderKind::Torznab;
  config.baseURL = QStringLiteral("not an address");
  config.enabled = false;
  config.mirrors = {QStringLiteral("https://a.example"), QString()};
  const QByteArray bytes = toJson(std::vector{config, ProviderConfig()});
  for (const char* key : {"id", "name", "kind", "baseURL", "apiKey", "enabled", "mirrors"})
    EXPECT_EQ(bytes.count('"' + QByteArray(key) + "\":"), 2) << key;
  EXPECT_TRUE(bytes.contains(kId));
  EXPECT_TRUE(bytes.contains("\"kind\":\"torznab\""));
  const auto read = providersFromJson(bytes);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->at(0), config);
  EXPECT_EQ(read->size(), 2U);
}

TEST(ProviderConfig, FillsWhatIsMissingAndRefusesTheRest) {
  const auto bare = providersFromJson(R"([{"name":"n","kind":"yts"},{"name":"n","kind":"yts"}])");
  ASSERT_TRUE(bare);
  const ProviderConfig& first = bare->front();
  EXPECT_TRUE(first.enabled && first.baseURL.isEmpty() && first.apiKey.isEmpty() &&
              first.mirrors.isEmpty());
  EXPECT_FALSE(first.id.isNull());
  EXPECT_NE(first.id, bare->back().id);
  EXPECT_TRUE(providersFromJson("[]"));
  EXPECT_TRUE(providersFromJson(
      R"([{"name":"","kind":"apibay","id":"00000000-0000-0000-0000-000000000000"}])"));

  for (const char* record :
       {R"({"kind":"yts"})", R"({"name":"n"})", R"({"name":"n","kind":"YTS"})",
        R"({"name":"n","kind":"yts","id":"no"})", R"({"name":"n","kind":"yts","id":""})",
        R"({"name":"n","kind":"yts","id":"{6F9619FF-8B86-D011-B42D-00C04FC964FF}"})",
        R"({"name":5,"kind":"yts"})", R"({"name":"n","kind":"yts","enabled":1})",
        R"({"name":"n","kind":"yts","baseURL":[]})", R"({"name":"n","kind":"yts","apiKey":1})",
        R"({"name":"n","kind":"yts","mirrors":"a"})",
        R"({"name":"n","kind":"yts","mirrors":["a",1]})", R"("text")", R"([])"}) {
    const QByteArray list = R"([{"name":"good","kind":"yts"},)" + QByteArray(record) + "]";
    EXPECT_FALSE(providersFromJson(list)) << record;
  }
  for (const char* bytes :
       {"", "{}", "[", "null", "[]x", "\xff\xfe", R"({"name":"n","kind":"yts"})"})
    EXPECT_FALSE(providersFromJson(bytes)) << bytes;
  EXPECT_FALSE(providersFromJson(QByteArray(1 << 20, '[')));
}

} // namespace
} // namespace vellum
