#include "storage/CacheManager.h"
#include "base/ReplaceFile.h"
#include "storage/HeldFile.h"
#include "world/MainThread.h"
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <limits>
#include <thread>
#include <unistd.h>

namespace vellum {
namespace {

const QDateTime kNow = QDateTime::fromMSecsSinceEpoch(1'700'000'000'000, Qt::UTC);
constexpr qint64 kDay = 86'400, kLongAgo = 400 * kDay; // seconds

QString text(const char* latin1) { return QLatin1String(latin1); }

// A file of `bytes` written bytes below `root`, last changed `age` seconds before now.
QString file(const QString& root, const char* name, int bytes = 1000, qint64 age = 0) {
  const QString path = root + u'/' + text(name);
  EXPECT_TRUE(replaceFile(path, QByteArray(bytes, 'x'), Privacy::Everybody));
  QFile made(path);
  EXPECT_TRUE(made.open(QIODevice::ReadWrite) &&
              made.setFileTime(kNow.addSecs(-age), QFileDevice::FileModificationTime));
  return path;
}

// The regular files below.
QStringList left(const QString& below) {
  QStringList names;
  QDirIterator walk(below, QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                    QDirIterator::Subdirectories);
  while (walk.hasNext()) names << QDir(below).relativeFilePath(walk.next());
  names.sort();
  return names;
}

struct CacheManagerTest : testing::Test, world::MainThread {
  CacheManagerTest() {
    settings.setCachePath(cache);
    settings.setDownloadsPath(home.path() + text("/not/there/yet"));
  }
  // It measures at once, and again after its enforcement.
  void startManager(int measurements = 2) {
    manager.emplace(settings, main, pool, http, [] { return kNow; });
    waitForMeasurements(measurements);
  }
  void enforce(qint64 limitMB) {
    settings.setCacheLimitMB(limitMB);
    manager->enforce();
    waitForMeasurements(1);
  }
  void waitForMeasurements(int count) {
    QObject owner; // of the connection
    QObject::connect(&*manager, &CacheManager::measured, &owner, [&] { --count; });
    ASSERT_TRUE(turnUntil([&] { return count <= 0; }));
  }
  // An old film outside, with links in the cache to it, to its folder, and to nowhere.
  QString linkOutside() const {
    const QString outside = file(home.path(), "Films/film.mkv", 5'000'000, kLongAgo);
    for (const QString& to : {outside, QFileInfo(outside).path(), text("/nowhere")})
      EXPECT_TRUE(QFile::link(to, cache + u'/' + QFileInfo(to).fileName()));
    return outside;
  }

  QTemporaryDir home;
  const QString cache = home.path() + text("/Cache");
  IoPool pool{1, 1};
  HttpClient http{main};
  PreferenceStore preferences;
  SettingsStore settings{preferences};
  std::optional<CacheManager> manager;
};

TEST_F(CacheManagerTest, MeasuresWhatIsReallyWrittenAndWhatIsFree) {
  startManager();
  EXPECT_EQ(manager->usedBytes(), 0);
  EXPECT_TRUE(QFileInfo(manager->torrentDir()).isDir());
  EXPECT_TRUE(QFileInfo(cache + text("/URLCache")).isDir());
  EXPECT_NEAR(double(manager->freeBytes()), double(QStorageInfo(home.path()).bytesAvailable()),
              1e9);
  QFile sparse(file(cache, "Torrents/streams/key/payload.dat", 1'000'000));
  ASSERT_TRUE(sparse.open(QIODevice::ReadWrite) && sparse.resize(10'000'000'000));
  file(cache, ".hidden/.too", 300'000);
  linkOutside();
  manager->refresh();
  waitForMeasurements(1);
  EXPECT_NEAR(double(manager->usedBytes()), 1.4e6, 1e5);
  EXPECT_EQ(CacheManager::directorySize(cache), manager->usedBytes());
}

TEST_F(CacheManagerTest, EnforcesAgeThenSizeAndClearsButTouchesNothingOutside) {
  file(cache, "URLCache/data8/old", 1000, 14 * kDay + 1);
  file(cache, "edge", 600'000, 14 * kDay);
  file(cache, "Torrents/streams/a/payload.dat", 600'000, 2 * kDay);
  file(cache, "new", 300'000);
  const QString outside = linkOutside();
  const QString payload = text("Torrents/streams/a/payload.dat");
  startManager();
  EXPECT_EQ(left(cache), (QStringList{payload, text("edge"), text("new")})) << "14 days at first";
  settings.setAutoCleanDays(0);
  enforce(std::numeric_limits<qint64>::max());
  EXPECT_EQ(left(cache).size(), 3);
  enforce(1);
  EXPECT_EQ(left(cache), (QStringList{payload, text("new")}));
  enforce(std::numeric_limits<qint64>::min());
  EXPECT_EQ(manager->usedBytes(), 0);
  EXPECT_TRUE(QFileInfo(cache + text("/Torrents/streams/a")).isDir());
  EXPECT_TRUE(QFileInfo(cache + text("/film.mkv")).isSymLink()) << "links stay";

  file(cache, "URLCache/data8/1/answer.d");
  file(cache, ".hidden");
  file(cache, "Torrents/streams/a/payload.dat");
  manager->clear();
  waitForMeasurements(1);
  EXPECT_TRUE(left(cache).isEmpty());
  EXPECT_EQ(QDir(cache).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList{text("URLCache")});
  EXPECT_TRUE(QFile::exists(outside));
  EXPECT_EQ(manager->usedBytes(), 0);
}

// What is shared is the user's, but for what the program itself has put there.
TEST_F(CacheManagerTest, NeitherSavedFilmsNorRecordsAreTheCaches) {
  const std::string ours = "Torrents/streams/" + std::string(40, 'a') + "/payload.dat";
  using Case = std::array<const char*, 4>;
  // "*" is a film; there is one in each folder, above them, and in cache/deep.
  for (const auto& [downloads, cachePath, record, wanted] :
       {Case{"films", "cache", "home", "* films/* home/*"},
        Case{"cache/films", "cache", "home", "* cache/films/* home/*"},
        Case{"cache/a/films", "cache", "home", "* cache/a/films/* home/*"},
        Case{"cache", "cache", "home", "* cache/* cache/deep/* home/*"},
        Case{"films", "films/cache", "home", "* films/* films/cache/* films/cache/deep/* home/*"},
        Case{"films", "cache", "cache", "* cache/* cache/deep/* films/*"},
        Case{"films", "cache", "cache/home", "* cache/* cache/deep/* cache/home/* films/*"},
        Case{"link", "cache", "home", "* cache/deep/* home/*"}})
    for (const bool byLimit : {true, false}) {
      SCOPED_TRACE(testing::Message() << downloads << " " << cachePath << " " << record << byLimit);
      const QTemporaryDir place;
      const auto below = [&](const char* name) { return place.filePath(text(name)); };
      file(place.path(), "*");
      file(below(cachePath), "deep/*");
      if (*downloads == 'l') EXPECT_TRUE(QFile::link(below("cache/deep"), below("link")));
      for (const char* folder : {downloads, cachePath, record}) file(below(folder), "*");
      file(below(cachePath), ours.c_str());
      file(below(cachePath), "URLCache/data8/x.d");
      const CacheFolder folder(below(cachePath), below(downloads), {below(record)});
      if (byLimit)
        for (const CachedFile& each : folder.removable(true)) removeUnlessInUse(each.path);
      else
        folder.clear();
      QStringList kept = left(place.path());
      EXPECT_EQ(kept.removeIf([](const QString& name) { return name.endsWith(u'd'); }), !byLimit);
      EXPECT_EQ(kept.join(u' ').toStdString(), wanted);
    }
}

TEST_F(CacheManagerTest, TheLimitsLeaveAPayloadInUseAndClearDoesNot) {
  const QString free = file(cache, "Torrents/streams/b/payload.dat", 1000, kLongAgo);
  const QString used = file(cache, "Torrents/streams/a/payload.dat", 1000, kLongAgo);
  const QString link = cache + text("/link"); // which is never opened
  ASSERT_TRUE(QFile::link(free, link));
  EXPECT_EQ(openForUse(link), -1);
  const int another = openForUse(used), user = openForUse(used); // as many as like
  using Case = std::tuple<QString, bool, bool>;
  for (const auto& [path, isThere, isInUse] :
       {Case{free, true, false}, Case{link, true, false}, Case{used, true, true},
        Case{cache + text("/missing"), false, false}}) {
    const RemovalRight right(path);
    EXPECT_EQ(Case(path, right.isThere(), right.isInUse()), Case(path, isThere, isInUse));
  }
  startManager();
  ::close(another);
  enforce(0);
  EXPECT_EQ(left(cache), QStringList{text("Torrents/streams/a/payload.dat")});
  manager->clear();
  waitForMeasurements(1);
  EXPECT_TRUE(left(cache).isEmpty());
  ::close(user);
}

TEST_F(CacheManagerTest, AnOpenedPayloadIsNeverOneThatIsGone) {
  const QString path = cache + text("/key/payload.dat");
  constexpr int kRounds = 20'000;
  std::atomic<int> round = 0;
  std::thread remover([&] {
    for (int met = 0; round < kRounds; met = round) {
      removeUnlessInUse(path);
      if (met != round) QDir().rmdir(cache + text("/key")); // not so often that nobody gets in
    }
  });
  for (; round < kRounds; ++round) {
    const int opened = openForUse(path);
    EXPECT_TRUE(opened >= 0 && QFile::exists(path)) << round;
    ::close(opened);
  }
  remover.join();
}

TEST_F(CacheManagerTest, TheUsersOwnFolderIsNotMadeTheCache) {
  const QString folder = home.path() + text("/Documents");
  EXPECT_EQ(CacheFolder::placeIn(folder), folder); // not there yet
  file(folder, "URLCache/x");
  file(folder, "Torrents/x");
  EXPECT_EQ(CacheFolder::placeIn(folder), folder);
  file(folder, ".hidden");
  EXPECT_EQ(CacheFolder::placeIn(folder), folder + text("/VellumApp Cache"));
}

TEST_F(CacheManagerTest, ARelativeCacheFolderIsNoLicenceToTouchAnything) {
  const QString before = QDir::currentPath();
  const QString mine = file(home.path(), "work/mine.txt", 10, kLongAgo);
  const QDir work = QFileInfo(mine).dir();
  ASSERT_TRUE(QDir::setCurrent(work.path()));
  for (const char* path : {"", ".", "../work"}) {
    settings.setCachePath(text(path));
    startManager();
    manager->clear();
    enforce(0);
    EXPECT_EQ(work.entryList(QDir::AllEntries | QDir::NoDotAndDotDot).join(u'|'), text("mine.txt"));
    manager.reset();
  }
  QDir::setCurrent(before);
}

TEST_F(CacheManagerTest, OneThatIsGoneNeitherRemovesNorMeasures) {
  file(cache, "old", 1, kLongAgo);
  std::promise<void> goesOn; // until then the only worker does nothing
  asio::post(pool.workers(), [wait = goesOn.get_future().share()] { wait.wait(); });
  startManager(0);
  settings.setCachePath(home.path() + text("/Empty"));
  startManager(0);
  qint64 most = 0;
  QObject::connect(&*manager, &CacheManager::measured,
                   [&] { most = std::max(most, manager->usedBytes()); });
  goesOn.set_value();
  waitForMeasurements(2);
  EXPECT_EQ(left(cache), QStringList{text("old")});
  EXPECT_EQ(most, 0);
}

} // namespace
} // namespace vellum
