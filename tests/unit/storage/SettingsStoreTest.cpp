#include "storage/SettingsStore.h"
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vellum {
namespace {

QString key(const char* name) { return QLatin1String(name); }

struct SettingsStoreTest : testing::Test {
  SettingsStoreTest() { qputenv("VELLUM_HOME", home.path().toUtf8()); }
  ~SettingsStoreTest() override { qputenv("VELLUM_HOME", homeBefore); }

  const QByteArray homeBefore = qgetenv("VELLUM_HOME");
  QTemporaryDir home;
  PreferenceStore preferences;
};

TEST_F(SettingsStoreTest, StartsFromItsDefaultsAndWritesNothing) {
  const SettingsStore settings(preferences);
  const QString support = home.path() + QStringLiteral("/ApplicationSupport/VellumApp");
  EXPECT_EQ(settings.cachePath(), support + QStringLiteral("/Cache"));
  EXPECT_EQ(settings.downloadsPath(), home.path() + QStringLiteral("/Movies/VellumApp"));
  EXPECT_TRUE(QFileInfo(support).isDir());
  EXPECT_FALSE(QFileInfo::exists(settings.downloadsPath()));
  EXPECT_EQ(settings.cacheLimitMB(), 1024);
  EXPECT_EQ(settings.autoCleanDays(), 14);
  EXPECT_TRUE(settings.gridView());
  EXPECT_EQ(settings.preferredQuality(), QStringLiteral("1080p"));
  EXPECT_EQ(settings.uploadLimitKBps(), 0);
  EXPECT_TRUE(settings.stopSeedingOnClose());
  EXPECT_FALSE(settings.keepAfterPlayback());
  QStringList providers;
  for (const ProviderConfig& one : settings.providers())
    providers << one.name + u' ' + rawValue(one.kind) + u' ' + QString::number(one.enabled) +
                     (one.baseURL.isEmpty() ? QString() : QStringLiteral(" address"));
  EXPECT_EQ(providers.join(u',').toStdString(),
            "Vidarium archiveOrg 1 address,YTS yts 0,ApiBay apibay 1 address");
  EXPECT_FALSE(preferences.data(key("providers")) || preferences.string(key("cachePath")) ||
               preferences.integer(key("cacheLimitMB")));
}

TEST_F(SettingsStoreTest, TakesWhatIsStoredOnlyInItsOwnType) {
  preferences.set(key("cacheLimitMB"), std::int64_t{0});
  preferences.set(key("autoCleanDays"), std::int64_t{-3});
  preferences.set(key("gridView"), QStringLiteral("false"));
  preferences.set(key("stopSeedingOnClose"), std::int64_t{0});
  preferences.set(key("keepAfterPlayback"), true);
  preferences.set(key("uploadLimitKBps"), QStringLiteral("7"));
  preferences.set(key("preferredQuality"), true);
  preferences.set(key("cachePath"), QStringLiteral("/elsewhere"));
  preferences.set(key("providers"), QByteArray("[{\"name\":\"no kind\"}]"));
  const SettingsStore settings(preferences);
  EXPECT_EQ(settings.cacheLimitMB(), 0);
  EXPECT_EQ(settings.autoCleanDays(), -3);
  EXPECT_TRUE(settings.gridView());
  EXPECT_TRUE(settings.stopSeedingOnClose());
  EXPECT_TRUE(settings.keepAfterPlayback());
  EXPECT_EQ(settings.uploadLimitKBps(), 0);
  EXPECT_EQ(settings.preferredQuality(), QStringLiteral("1080p"));
  EXPECT_EQ(settings.cachePath(), QStringLiteral("/elsewhere"));
  EXPECT_TRUE(QFileInfo(home.path() + QStringLiteral("/ApplicationSupport/VellumApp")).isDir());
  EXPECT_EQ(settings.providers().size(), 3U);
  EXPECT_EQ(preferences.data(key("providers")), QByteArray("[{\"name\":\"no kind\"}]"));
}

TEST_F(SettingsStoreTest, EveryWriteIsPublishedAndKept) {
  SettingsStore settings(preferences);
  int published = 0;
  const auto count = [&] { ++published; };
  QObject::connect(&settings, &SettingsStore::cacheLimitMBChanged, count);
  QObject::connect(&settings, &SettingsStore::gridViewChanged, count);
  QObject::connect(&settings, &SettingsStore::preferredQualityChanged, count);
  QObject::connect(&settings, &SettingsStore::providersChanged, count);
  settings.setProperty("cacheLimitMB", 512);
  settings.setGridView(false);
  settings.setPreferredQuality(QStringLiteral("720p"));
  settings.setProviders({});
  EXPECT_EQ(published, 4);
  const SettingsStore again(preferences);
  EXPECT_EQ(again.cacheLimitMB(), 512);
  EXPECT_FALSE(again.gridView());
  EXPECT_EQ(again.preferredQuality(), QStringLiteral("720p"));
  EXPECT_TRUE(again.providers().empty()) << "a stored list is never merged with the defaults";
}

TEST_F(SettingsStoreTest, UpdateReplacesByIdAndAddsNothing) {
  SettingsStore settings(preferences);
  settings.update(ProviderConfig());
  EXPECT_EQ(settings.providers().size(), 3U);
  EXPECT_FALSE(preferences.data(key("providers")));
  ProviderConfig changed = settings.providers()[1];
  changed.baseURL = QStringLiteral("https://yts.example");
  settings.update(changed);
  EXPECT_EQ(settings.providers()[1], changed);
  EXPECT_EQ(SettingsStore(preferences).providers(), settings.providers());
}

TEST_F(SettingsStoreTest, TheUploadLimitIsReadInBytesFromTheStoreItself) {
  SettingsStore settings(preferences);
  EXPECT_EQ(SettingsStore::uploadLimit(preferences), 0);
  for (const std::int64_t limit : {std::int64_t{5}, std::int64_t{0}, std::int64_t{1} << 40}) {
    settings.setUploadLimitKBps(limit);
    EXPECT_EQ(SettingsStore::uploadLimit(preferences), limit * 1024);
  }
  settings.setUploadLimitKBps(std::numeric_limits<qint64>::max());
  EXPECT_EQ(SettingsStore::uploadLimit(preferences), 0);
}

} // namespace
} // namespace vellum
