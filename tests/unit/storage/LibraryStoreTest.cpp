#include "storage/LibraryStore.h"
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cmath>
#include <csignal>
#include <gtest/gtest.h>
#include <limits>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vellum {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

HistoryEntry row(const QString& key, double position = 0, double duration = 0) {
  HistoryEntry entry;
  entry.key = key;
  entry.position = position;
  entry.duration = duration;
  return entry;
}

struct LibraryStoreTest : testing::Test {
  QByteArray bytes() const {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
  }
  void write(const QByteArray& content) const {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
  }
  std::string keys(const HistoryEntries& rows) const {
    QStringList list;
    for (const HistoryEntry& entry : rows) list << entry.key;
    return list.join(u' ').toStdString();
  }

  QTemporaryDir home;
  const QString path = home.filePath(QStringLiteral("made/history.json"));
};

TEST_F(LibraryStoreTest, KeepsEveryFieldOverARestart) {
  const HistoryEntry full{QString::fromUtf8("h|dir/\xc3\xa9\"\n.mkv"),
                          QStringLiteral("h"),
                          QString::fromUtf8("\xf0\x9f\x8e\xac Film"),
                          QStringLiteral("magnet:?xt=urn:btih:h&dn=a"),
                          true,
                          QStringLiteral("https://h.example/p.jpg"),
                          10.1,
                          7200.000000000001,
                          secondsSince2001(QDateTime::fromMSecsSinceEpoch(978307201500))};
  EXPECT_EQ(full.lastPlayed, 1.5);
  LibraryStore store(path);
  EXPECT_TRUE(store.history().empty());
  EXPECT_FALSE(QFileInfo::exists(QFileInfo(path).path())) << "reading makes nothing";
  store.record(full);
  store.record(row(QStringLiteral("plain")));
  EXPECT_EQ(LibraryStore(path).history(), (HistoryEntries{row(QStringLiteral("plain")), full}));
  EXPECT_EQ(bytes().count("thumbnail"), 1);
  EXPECT_FALSE(bytes().contains("\n ")) << "not indented";
  EXPECT_EQ(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
  store.clear();
  EXPECT_EQ(bytes().trimmed(), "[]");
}

TEST_F(LibraryStoreTest, ABrokenFileIsEmptyAndLeftAloneUntilTheNextSave) {
  LibraryStore(path).record(row(QStringLiteral("a")));
  const QByteArray good = bytes();
  ASSERT_TRUE(good.startsWith('['));
  const QByteArray item = good.sliced(1, good.lastIndexOf('}'));
  const auto changed = [&](const char* from, const char* to) {
    EXPECT_TRUE(good.contains(from)) << from;
    return QByteArray(good).replace(from, to);
  };
  const std::pair<std::size_t, std::vector<QByteArray>> cases[] = {
      {2, {"[" + item + "," + item + "]"}},
      {1, {good, changed("\"duration\":0", "\"duration\":1.5,\"thumbnail\":null,\"more\":[]")}},
      {0,
       {"", item, "[" + item + ",{}]", "[" + item + ",null]", good.chopped(3),
        QByteArray(3000, '['), good + QByteArray(LibraryStore::kLargestFile, ' '),
        changed("\"title\"", "\"titel\""), changed("\"lastPlayed\"", "\"played\""),
        changed("\"isLocal\":false", "\"isLocal\":0"),
        changed("\"position\":0", "\"position\":\"0\""), changed("\"key\":\"a\"", "\"key\":null"),
        changed("\"duration\":0", "\"duration\":0,\"thumbnail\":1"),
        changed("\"a\"", "\"\xff\"")}}};
  for (const auto& [rows, files] : cases)
    for (const QByteArray& file : files) {
      write(file);
      LibraryStore store(path);
      EXPECT_EQ(store.history().size(), rows) << file.left(300).toStdString();
      store.updateProgress(QStringLiteral("unknown"), 1, 1);
      EXPECT_EQ(bytes(), file);
      store.record(row(QStringLiteral("b")));
      EXPECT_EQ(LibraryStore(path).history(), store.history());
    }
  QFile::remove(path);
  ASSERT_EQ(mkfifo(qPrintable(path), 0600), 0);
  EXPECT_TRUE(LibraryStore(path).history().empty()) << "nobody ever writes into this pipe";
}

TEST_F(LibraryStoreTest, OrdersAndCutsRows) {
  LibraryStore store(path);
  int published = 0;
  QObject::connect(&store, &LibraryStore::historyChanged, [&] { ++published; });
  for (int i = 0; i <= 200; ++i) store.record(row(QString::number(i), i, 1000));
  EXPECT_EQ(published, 201);
  EXPECT_EQ(store.history().size(), 200U);
  EXPECT_FALSE(store.entry(QStringLiteral("0")));
  store.record(row(QStringLiteral("7"), 1));
  EXPECT_EQ(store.history().size(), 200U);
  EXPECT_EQ(store.history()[0], row(QStringLiteral("7"), 1)) << "no field is carried over";
  EXPECT_EQ(store.history()[1].key, QStringLiteral("200"));

  store.updateProgress(QStringLiteral("8"), -5, 0);
  EXPECT_EQ(store.entry(QStringLiteral("8")), row(QStringLiteral("8"), -5, 1000));
  EXPECT_EQ(store.history()[193].key, QStringLiteral("8")) << "it stays where it is";
  store.updateProgress(QStringLiteral("8"), 50, 2000);
  EXPECT_EQ(store.entry(QStringLiteral("8")), row(QStringLiteral("8"), 50, 2000));
  store.record(store.history()[193]);
  store.remove(store.history()[1].key);
  EXPECT_EQ(keys({store.history().begin(), store.history().begin() + 3}), "8 200 199");
  EXPECT_EQ(LibraryStore(path).history(), store.history());
}

TEST_F(LibraryStoreTest, ContinuesWhatIsBegunAndNotNearlyFinished) {
  LibraryStore store(path);
  const struct {
    const char* key;
    double position, duration;
  } rows[] = {{"begun", 10.01, 100},   {"not", 10, 100},   {"unknown", 10.5, 0},
              {"under", 94.99, 100},   {"at", 95, 100},    {"over", 101, 100},
              {"negative", 1e6, -1},   {"short", 10.5, 5}, {"ended", 0, 100},
              {"late", 1e6, kInfinity}};
  for (const auto& one : rows)
    store.record(row(QLatin1String(one.key), one.position, one.duration));
  EXPECT_EQ(keys(store.continueWatching()), "late negative under unknown begun");
}

TEST_F(LibraryStoreTest, WhatCannotBeWrittenLeavesTheFileAndTheList) {
  LibraryStore store(path);
  store.record(row(QStringLiteral("a"), 1));
  const QByteArray before = bytes();
  for (const double number : {kInfinity, -kInfinity, std::nan("")}) {
    store.updateProgress(QStringLiteral("a"), number, 0);
    EXPECT_EQ(bytes(), before) << "JSON has no such number";
  }
  store.updateProgress(QStringLiteral("a"), 2, 0);
  const QByteArray saved = bytes();

  // A disk that takes 64 bytes more.
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
  const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit full{64, limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
  store.record(row(QStringLiteral("b"), 3));
  store.record(row(QString(100'000, u'c'))); // more than any buffer holds
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  std::signal(SIGXFSZ, oldHandler);
  EXPECT_EQ(bytes(), saved);
  EXPECT_EQ(QDir(QFileInfo(path).path()).entryList(QDir::Files).size(), 1) << "nothing left behind";
  EXPECT_EQ(store.history().size(), 3U);
  store.updateProgress(QStringLiteral("b"), 4, 0);
  EXPECT_EQ(LibraryStore(path).history(), store.history()) << "the next save makes up for it";
}

// A process that saves without a pause is killed at thirty moments, most of them amid a save.
TEST_F(LibraryStoreTest, AKillLeavesTheOldFileOrTheNewOne) {
  LibraryStore store(path);
  for (int i = 0; i < 200; ++i) store.record(row(QString(200, u'x') + QString::number(i)));
  double last = 0;
  for (int round = 0; round < 30; ++round) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      LibraryStore mine(path);
      const QString key = mine.history().back().key;
      for (double position = last;; ++position) {
        mine.updateProgress(key, position, 0);
        if (::write(ends[1], "s", 1) != 1) _exit(1);
      }
    }
    char saves[3];
    for (int i = 0; i < 1 + round % 3; ++i) ASSERT_EQ(::read(ends[0], saves, 1), 1);
    usleep(static_cast<useconds_t>(round * 53)); // microseconds into the next save
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(ends[0]);
    close(ends[1]);
    const HistoryEntries read = LibraryStore(path).history();
    ASSERT_EQ(read.size(), 200U) << "round " << round;
    EXPECT_GE(read.back().position, last + round % 3);
    last = read.back().position;
  }
}

} // namespace
} // namespace vellum
