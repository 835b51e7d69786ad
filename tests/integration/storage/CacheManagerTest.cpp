#include "storage/CacheManager.h"
#include "storage/HeldFile.h"
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace vellum {
namespace {

using namespace std::chrono_literals;

const QDateTime kNow = QDateTime::fromMSecsSinceEpoch(1'700'000'000'000, Qt::UTC);
constexpr qint64 kDay = 86'400; // seconds

struct CacheManagerTest : testing::Test {
  CacheManagerTest() {
    settings.setCachePath(cache);
    settings.setDownloadsPath(home.path() + QStringLiteral("/not/there/yet"));
    settings.setCacheLimitMB(1024);
  }

  // A file of `bytes` written bytes below `root`, last changed `age` seconds before now.
  QString file(const QString& root, const char* name, int bytes = 100'000, qint64 age = 0) const {
    const QString path = root + u'/' + QLatin1String(name);
    EXPECT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    QFile out(path);
    EXPECT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(QByteArray(bytes, 'x'));
    out.flush();
    EXPECT_TRUE(out.setFileTime(kNow.addSecs(-age), QFileDevice::FileModificationTime));
    return path;
  }

  // A manager whose first measurement and enforcement have ended.
  void startManager() {
    manager.emplace(settings, main, *pool, http, [] { return kNow; });
    waitForMeasurements(2);
  }
  void waitForMeasurements(int count) {
    int measured = 0;
    const auto connection =
        QObject::connect(&*manager, &CacheManager::measured, [&] { ++measured; });
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (measured < count && std::chrono::steady_clock::now() < deadline)
      QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
    QObject::disconnect(connection);
    ASSERT_EQ(measured, count);
  }

  QStringList left(const QString& below) const {
    QStringList names;
    QDirIterator walk(below, QDir::Files | QDir::Hidden | QDir::System,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) names << QDir(below).relativeFilePath(walk.next());
    names.sort();
    return names;
  }

  int argc = 1;
  char program[5] = "test";
  char* argv[2] = {program, nullptr};
  QCoreApplication app{argc, argv};
  QTemporaryDir home;
  const QString cache = home.path() + QStringLiteral("/Cache");
  MainLoop main;
  std::optional<IoPool> pool{std::in_place};
  HttpClient http{main};
  PreferenceStore preferences;
  SettingsStore settings{preferences};
  std::optional<CacheManager> manager;
};

TEST_F(CacheManagerTest, MeasuresWhatIsReallyWrittenAndWhatIsFree) {
  EXPECT_EQ(CacheManager::directorySize(cache), 0);
  const QString payload = file(cache, "Torrents/streams/key/payload.dat", 1'000'000);
  QFile sparse(payload);
  ASSERT_TRUE(sparse.open(QIODevice::ReadWrite) && sparse.resize(10'000'000'000));
  sparse.close();
  file(cache, ".hidden/.too", 300'000);
  const QString outside = file(home.path(), "Films/film.mkv", 5'000'000);
  ASSERT_TRUE(QFile::link(outside, cache + QStringLiteral("/link.mkv")));
  ASSERT_TRUE(QFile::link(QFileInfo(outside).path(), cache + QStringLiteral("/films")));
  startManager();
  EXPECT_GE(manager->usedBytes(), 1'300'000);
  EXPECT_LT(manager->usedBytes(), 1'500'000);

  struct statvfs disk {};
  ASSERT_EQ(::statvfs(QFile::encodeName(home.path()).constData(), &disk), 0);
  const double free = static_cast<double>(disk.f_bavail) * static_cast<double>(disk.f_frsize);
  EXPECT_NEAR(static_cast<double>(manager->freeBytes()), free, 1e9);
  EXPECT_GT(CacheManager::freeSpace(QStringLiteral("/no/such/folder")), 0);
  EXPECT_TRUE(QFileInfo(manager->torrentDir()).isDir());
  EXPECT_TRUE(QFileInfo(cache + QStringLiteral("/URLCache")).isDir());
}

TEST_F(CacheManagerTest, EnforcesAgeThenSizeAndTouchesNothingOutside) {
  file(cache, "old", 100'000, 14 * kDay + 1);
  file(cache, "URLCache/data8/old", 100'000, 15 * kDay);
  file(cache, "limit", 600'000, 14 * kDay);
  file(cache, "Torrents/streams/a/payload.dat", 600'000, 2 * kDay);
  file(cache, "new", 300'000);
  const QString outside = file(home.path(), "Films/film.mkv", 100'000, 400 * kDay);
  ASSERT_TRUE(QFile::link(outside, cache + QStringLiteral("/link.mkv")));
  ASSERT_TRUE(QFile::link(QFileInfo(outside).path(), cache + QStringLiteral("/films")));
  settings.setCacheLimitMB(1);
  startManager();
  EXPECT_EQ(left(cache).filter(QStringLiteral("link")).size(), 1) << "links stay";
  QStringList files = left(cache);
  files.removeAll(QStringLiteral("link.mkv"));
  EXPECT_EQ(files.join(u' ').toStdString(), "Torrents/streams/a/payload.dat new");
  EXPECT_EQ(left(home.path() + QStringLiteral("/Films")).size(), 1);
  EXPECT_GE(manager->usedBytes(), 900'000);
  EXPECT_LE(manager->usedBytes(), 1'048'576);

  settings.setCacheLimitMB(0);
  manager->enforce();
  waitForMeasurements(1);
  EXPECT_EQ(manager->usedBytes(), 0);
  EXPECT_TRUE(QFileInfo(cache + QStringLiteral("/Torrents/streams/a")).isDir());
  EXPECT_EQ(left(home.path() + QStringLiteral("/Films")).size(), 1);
}

TEST_F(CacheManagerTest, ClearLeavesTheFolderOfTheHttpCacheAndWhatLinksLeadTo) {
  file(cache, "Torrents/streams/a/payload.dat");
  file(cache, ".hidden");
  const QString outside = file(home.path(), "Films/film.mkv");
  ASSERT_TRUE(QFile::link(outside, cache + QStringLiteral("/link.mkv")));
  ASSERT_TRUE(QFile::link(QFileInfo(outside).path(), cache + QStringLiteral("/films")));
  ASSERT_TRUE(QFile::link(QFileInfo(outside).path(), cache + QStringLiteral("/Torrents/films")));
  ASSERT_TRUE(QFile::link(QStringLiteral("/nowhere"), cache + QStringLiteral("/dangling")));
  startManager();
  file(cache, "URLCache/data8/1/kept.d");
  manager->clear();
  waitForMeasurements(1);
  EXPECT_TRUE(left(cache + QStringLiteral("/URLCache")).isEmpty());
  const auto children =
      QDir(cache).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
  EXPECT_EQ(children, QStringList{QStringLiteral("URLCache")});
  EXPECT_EQ(left(home.path() + QStringLiteral("/Films")).size(), 1);
  EXPECT_EQ(manager->usedBytes(), 0);
}

// What is shared is the user's, but for what the program itself has put there.
TEST_F(CacheManagerTest, NeitherSavedFilmsNorRecordsAreTheCaches) {
  const QString key(40, u'a');
  const QString ours = QStringLiteral("Torrents/streams/") + key + QStringLiteral("/payload.dat");
  struct Case {
    const char* downloads; // below "root", as are the next two
    const char* cache;
    const char* record;
    const char* left; // of film.mkv and deep/film.mkv, in each of the folders, and our payload
  };
  for (const auto& [downloads, cachePath, record, wanted] :
       {Case{"films", "cache", "home", "films films/deep home home/deep root"},
        Case{"cache/films", "cache", "home", "cache/films cache/films/deep home home/deep root"},
        Case{"cache/a/films", "cache", "home",
             "cache/a/films cache/a/films/deep home home/deep root"},
        Case{"cache", "cache", "home", "cache cache/deep home home/deep root"},
        Case{"films", "films/cache", "home",
             "films films/cache films/cache/deep films/deep home home/deep root"},
        Case{"films", "cache", "cache", "cache cache/deep films films/deep root"},
        Case{"films", "cache", "cache/home",
             "cache cache/deep cache/home cache/home/deep films films/deep root"},
        Case{"link", "cache", "home", "cache/deep home home/deep root"}}) {
    for (const bool byLimit : {true, false}) {
      SCOPED_TRACE(testing::Message() << downloads << " " << cachePath << " " << record << byLimit);
      const QTemporaryDir place;
      const auto below = [&](const char* name) {
        return place.path() + u'/' + QLatin1String(name);
      };
      file(place.path(), "film.mkv", 10, 400 * kDay);
      for (const char* folder : {downloads, cachePath, record})
        for (const char* name : {"film.mkv", "deep/film.mkv"})
          if (std::string_view(folder) != "link") file(below(folder), name, 10, 400 * kDay);
      file(below(cachePath), qPrintable(ours), 10, 400 * kDay);
      file(below(cachePath), "URLCache/data8/x.d", 10, 400 * kDay);
      const bool isLink = std::string_view(downloads) == "link";
      if (isLink) EXPECT_TRUE(QFile::link(below("cache/deep"), below("link")));
      const CacheFolder folder(below(cachePath), below(downloads), {below(record)});
      if (byLimit)
        for (const CachedFile& each : folder.removable(true)) removeUnlessInUse(each.path);
      else
        folder.clear();
      QStringList kept = left(place.path());
      EXPECT_EQ(kept.removeIf([](const QString& name) { return name.endsWith(u'd'); }), !byLimit);
      for (QString& name : kept)
        name = name.contains(u'/') ? name.section(u'/', 0, -2) : QStringLiteral("root");
      kept.sort();
      EXPECT_EQ(kept.join(u' ').toStdString(), wanted);
    }
  }
}

TEST_F(CacheManagerTest, TheLimitsLeaveAPayloadInUseAndClearDoesNot) {
  const QString used = file(cache, "Torrents/streams/a/payload.dat", 1000, 400 * kDay);
  file(cache, "Torrents/streams/b/payload.dat", 1000, 400 * kDay);
  const int another = openForUse(used);
  const int user = openForUse(used); // as many as like
  ASSERT_TRUE(user >= 0 && another >= 0);
  settings.setCacheLimitMB(0);
  startManager();
  EXPECT_EQ(left(cache), QStringList{QStringLiteral("Torrents/streams/a/payload.dat")});
  ::close(another);
  manager->enforce();
  waitForMeasurements(1);
  EXPECT_TRUE(QFile::exists(used));
  manager->clear();
  waitForMeasurements(1);
  EXPECT_FALSE(QFile::exists(used));
  EXPECT_EQ(::write(user, "x", 1), 1);
  ::close(user);
}

// Whoever opens a payload at the moment of its removal gets a file that has its name.
TEST_F(CacheManagerTest, AnOpenedPayloadIsNeverOneThatIsGone) {
  const QString path = cache + QStringLiteral("/key/payload.dat");
  std::atomic<bool> isOver = false;
  std::thread remover([&] {
    while (!isOver) removeUnlessInUse(path);
  });
  for (int round = 0; round < 3000; ++round) {
    const int opened = openForUse(path);
    EXPECT_TRUE(opened >= 0 && QFile::exists(path)) << round;
    ::close(opened);
  }
  isOver = true;
  remover.join();
}

TEST_F(CacheManagerTest, TheUsersOwnFolderIsNotMadeTheCache) {
  const QString folder = home.path() + QStringLiteral("/Documents");
  const QString own = folder + QStringLiteral("/VellumApp Cache");
  EXPECT_EQ(CacheFolder::placeIn(folder), folder); // not there yet
  file(folder, "URLCache/x");
  file(folder, "Torrents/x");
  EXPECT_EQ(CacheFolder::placeIn(folder), folder);
  file(folder, ".hidden");
  EXPECT_EQ(CacheFolder::placeIn(folder), own);
}

TEST_F(CacheManagerTest, ARelativeCacheFolderIsNoLicenceToRemoveAnything) {
  const QString before = QDir::currentPath();
  const QString mine = file(home.path(), "work/mine.txt", 10, 400 * kDay);
  ASSERT_TRUE(QDir::setCurrent(QFileInfo(mine).path()));
  for (const auto& path : {QString(), QStringLiteral("."), QStringLiteral("../work")}) {
    settings.setCachePath(path);
    settings.setCacheLimitMB(0);
    startManager();
    manager->clear();
    waitForMeasurements(1);
    EXPECT_TRUE(QFileInfo::exists(mine)) << path.toStdString();
    manager.reset();
  }
  QDir::setCurrent(before);
}

TEST_F(CacheManagerTest, GoesInTheMiddleOfAWalkWithoutATrace) {
  for (int i = 0; i < 2000; ++i)
    file(cache, qPrintable(QStringLiteral("many/%1/%2").arg(i % 50).arg(i)), 1);
  for (int round = 0; round < 20; ++round) {
    manager.emplace(settings, main, *pool, http, [] { return kNow; });
    manager->refresh();
    if (round % 2 == 0) QCoreApplication::processEvents();
    manager.reset();
  }
  pool.reset();
  QCoreApplication::processEvents();
  EXPECT_EQ(left(cache).size(), 2000);
}

} // namespace
} // namespace vellum
