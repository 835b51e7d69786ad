#include "ui/manage/SettingsModel.h"
#include "support/ManualClock.h"
#include "support/ScriptedTransport.h"
#include "world/MainThread.h"
#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <limits>

namespace vellum::ui {

using namespace world;
namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

struct SettingsModelTest : testing::Test, world::MainThread {
  static Flow<QByteArray> nothing(QUrl, std::chrono::milliseconds) { co_return QByteArray(); }
  SettingsModelTest() { settings.setCachePath(folder.path()); }

  QTemporaryDir folder;
  test::ManualClock clock;
  PreferenceStore memory;
  IoPool pool;
  HttpClient http{main};
  test::ScriptedTransport net;
  SettingsStore settings{memory};
  LibraryStore library{folder.filePath(text("history.json"))};
  CacheManager cache{settings, main, pool, http};
  ProviderRegistry registry{settings, memory, net.transport(), ArchiveOrgProvider(nothing)};
  SettingsModel model{
      {settings, registry, memory, net.transport(), clock, main, pool}, cache, library};
};

TEST_F(SettingsModelTest, KeepsNumbersWithinTheirLimitsWhateverIsStored) {
  using Map = QVariantMap (SettingsModel::*)() const;
  using Set = void (SettingsModel::*)(int);
  using Store = void (SettingsStore::*)(qint64);
  using Stored = qint64 (SettingsStore::*)() const;
  struct Number {
    Map map;
    Set set;
    Store store;
    Stored stored;
    int from, to, step;
    const char* label; // of 128
    const char* zero;
  };
  constexpr qint64 most = std::numeric_limits<qint64>::max();
  for (const Number& number :
       {Number{&SettingsModel::cacheLimit, &SettingsModel::setCacheLimit,
               &SettingsStore::setCacheLimitMB, &SettingsStore::cacheLimitMB, 128, 51200, 128,
               "Cache limit: 128 MB", "Cache limit: 0 MB"},
        Number{&SettingsModel::cacheAge, &SettingsModel::setCacheAge,
               &SettingsStore::setAutoCleanDays, &SettingsStore::autoCleanDays, 0, 90, 1,
               "Auto-clean cache older than 128 days", "Auto-clean cache: never"},
        Number{&SettingsModel::uploadLimit, &SettingsModel::setUploadLimit,
               &SettingsStore::setUploadLimitKBps, &SettingsStore::uploadLimitKBps, 0, 20000, 50,
               "Upload rate limit: 128 KB/s", "Upload rate limit: unlimited"}}) {
    const auto shown = [&](const char* what) { return (model.*number.map)().value(text(what)); };
    EXPECT_EQ(shown("from"), number.from);
    EXPECT_EQ(shown("to"), number.to);
    EXPECT_EQ(shown("step"), number.step);
    for (const auto& [stored, value] :
         {std::pair{most, number.to}, {-most, number.from}, {number.to + 1, number.to}}) {
      (settings.*number.store)(stored);
      EXPECT_EQ(shown("value"), value) << number.label << stored;
      EXPECT_EQ((settings.*number.stored)(), stored); // looking changes nothing
    }
    (settings.*number.store)(128);
    EXPECT_EQ(shown("label"), text(number.label));
    (settings.*number.store)(0);
    EXPECT_EQ(shown("label"), text(number.zero));
    (model.*number.set)(number.to + number.step);
    EXPECT_EQ((settings.*number.stored)(), number.to);
    (model.*number.set)(number.from - number.step);
    EXPECT_EQ((settings.*number.stored)(), number.from);
  }
}

TEST_F(SettingsModelTest, TakesFoldersOfThisMachineAlone) {
  const QString before = settings.cachePath();
  for (const char* address : {"http://host/folder", "", "relative"})
    model.setCacheFolder(QUrl(text(address)));
  EXPECT_EQ(settings.cachePath(), before);
  const QString chosen = folder.filePath(text("a b/c"));
  model.setCacheFolder(QUrl::fromLocalFile(chosen));
  model.setDownloadsFolder(QUrl::fromLocalFile(text("/d#e")));
  EXPECT_EQ(model.cacheFolder() + model.downloadsFolder(), chosen + text("/d#e"));
  EXPECT_TRUE(QDir(chosen + text("/URLCache")).exists()) << "answers are kept there at once";

  ASSERT_TRUE(QDir(chosen).mkdir(text("photos")));
  model.setCacheFolder(QUrl::fromLocalFile(chosen));
  EXPECT_EQ(model.cacheFolder(), chosen) << "it is the cache already";
  const QString documents = folder.filePath(text("documents"));
  ASSERT_TRUE(QDir(documents).mkpath(text("letters")));
  model.setCacheFolder(QUrl::fromLocalFile(documents));
  EXPECT_EQ(model.cacheFolder(), documents + text("/VellumApp Cache"));
}

TEST_F(SettingsModelTest, AddsWhatHasANameAndAnAddress) {
  settings.setProviders({});
  AddProviderModel& sheet = *model.addition();
  const auto fill = [&](const char* name, const char* kind, const char* url) {
    sheet.reset();
    sheet.setProperty("name", text(name));
    sheet.setProperty("url", text(url));
    sheet.setProperty("key", text("secret"));
    sheet.setKind(text(kind));
    return sheet.add();
  };
  for (const auto& [name, url] :
       {std::pair{"", "http://h"}, {"n", ""}, {"n", "h"}, {"n", "ftp://h"}, {"n", "http://a b"}})
    EXPECT_FALSE(fill(name, "yts", url)) << name << url;
  EXPECT_TRUE(settings.providers().empty());
  EXPECT_TRUE(fill("n", "unknown", "http://h/api"));
  EXPECT_TRUE(fill("m", "yts", "https://y"));
  const auto& added = settings.providers();
  ASSERT_EQ(added.size(), 2U);
  EXPECT_NE(added[0].id, added[1].id);
  EXPECT_EQ(added[0], (ProviderConfig{added[0].id,
                                      text("n"),
                                      ProviderKind::Torznab,
                                      text("http://h/api"),
                                      text("secret"),
                                      true,
                                      {}}));
  EXPECT_EQ(added[1].kind, ProviderKind::Yts);
  EXPECT_EQ(model.providers()->count(), 2);
}

} // namespace
} // namespace vellum::ui
