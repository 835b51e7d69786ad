#include "storage/SettingsStore.h"
#include <QDir>
#include <QFileInfo>
#include <QVariant>
#include <gtest/gtest.h>

namespace vellum {
namespace {

QString text(const char* latin1) { return QLatin1String(latin1); }

TEST(SettingsStoreTest, EachValueHasADefaultATypeAndASignalAndIsKept) {
  PreferenceStore preferences;
  const QString home = qEnvironmentVariable("VELLUM_HOME"); // of this program's own
  const QString support = home + text("/ApplicationSupport/VellumApp");
  const QString movies = home + text("/Movies/VellumApp");
  using Settings = SettingsStore;
  const struct {
    const char* name;
    QVariant byDefault, other;
    void (Settings::*changed)();
  } rows[] = {
      {"cachePath", support + text("/Cache"), text("/c"), &Settings::cachePathChanged},
      {"downloadsPath", movies, text("/d"), &Settings::downloadsPathChanged},
      {"cacheLimitMB", 1024LL, -1LL, &Settings::cacheLimitMBChanged},
      {"autoCleanDays", 14LL, 0LL, &Settings::autoCleanDaysChanged},
      {"gridView", true, false, &Settings::gridViewChanged},
      {"preferredQuality", text("1080p"), text("720p"), &Settings::preferredQualityChanged},
      {"uploadLimitKBps", 0LL, 7LL, &Settings::uploadLimitKBpsChanged},
      {"stopSeedingOnClose", true, false, &Settings::stopSeedingOnCloseChanged},
      {"keepAfterPlayback", false, true, &Settings::keepAfterPlaybackChanged},
  };
  for (const auto& [name, byDefault, other, changed] : rows) {
    EXPECT_EQ(SettingsStore(preferences).property(name), byDefault) << name;
    preferences.set(text(name), QByteArray("another type"));
    SettingsStore settings(preferences);
    EXPECT_EQ(settings.property(name), byDefault) << name;
    int published = 0;
    QObject::connect(&settings, changed, [&published = published] { ++published; });
    EXPECT_TRUE(settings.setProperty(name, other));
    EXPECT_EQ(published, 1) << name;
    EXPECT_EQ(settings.property(name), other) << name;
    EXPECT_EQ(SettingsStore(preferences).property(name), other) << name;
  }
  EXPECT_TRUE(QFileInfo(support).isDir());
  EXPECT_FALSE(QFileInfo::exists(movies));
}

TEST(SettingsStoreTest, AStoredListOfProvidersIsTakenAsAWholeOrNotAtAll) {
  PreferenceStore preferences;
  SettingsStore settings(preferences);
  std::string providers;
  for (const ProviderConfig& one : settings.providers())
    providers += (one.name + u' ' + rawValue(one.kind)).toStdString() + (one.enabled ? " on" : "") +
                 (one.baseURL.isEmpty() ? "," : " with an address,");
  EXPECT_EQ(providers, "Vidarium archiveOrg on with an address,YTS yts,"
                       "ApiBay apibay on with an address,");
  int published = 0;
  QObject::connect(&settings, &SettingsStore::providersChanged, [&] { ++published; });
  settings.update(ProviderConfig()); // of an id that is not there
  EXPECT_EQ(published, 0);
  EXPECT_FALSE(preferences.data(text("providers")));
  ProviderConfig changed = settings.providers()[1];
  changed.baseURL = text("https://yts.example");
  settings.update(changed);
  EXPECT_EQ(published, 1);
  EXPECT_EQ(SettingsStore(preferences).providers(), settings.providers());
  EXPECT_EQ(settings.providers().at(1), changed);
  settings.setProviders({});
  EXPECT_TRUE(SettingsStore(preferences).providers().empty()) << "never merged with the defaults";
  preferences.set(text("providers"), QByteArray("[{\"name\":\"no kind\"}]"));
  EXPECT_EQ(SettingsStore(preferences).providers().size(), 3);
}

TEST(SettingsStoreTest, TheUploadLimitIsReadInBytesFromTheStoreItself) {
  PreferenceStore preferences;
  EXPECT_EQ(SettingsStore::uploadLimit(preferences), 0);
  for (const auto& [kilobytes, bytes] :
       {std::pair{5LL, 5'120LL}, {0, 0}, {1LL << 40, 1LL << 50}, {1LL << 62, 0}}) {
    SettingsStore(preferences).setUploadLimitKBps(kilobytes);
    EXPECT_EQ(SettingsStore::uploadLimit(preferences), bytes);
  }
}

} // namespace
} // namespace vellum
