#include "storage/LibraryStore.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <limits>
#include <sys/stat.h>

namespace vellum {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

HistoryEntry row(const char* key, double position = 0, double duration = 0) {
  return {QLatin1String(key), {}, {}, {}, false, {}, position, duration, 0};
}

struct LibraryStoreTest : testing::Test {
  QByteArray bytes() const {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
  }
  static std::string keys(const HistoryEntries& rows) {
    QStringList list;
    for (const HistoryEntry& entry : rows) list << entry.key;
    return list.join(u' ').toStdString();
  }

  const QTemporaryDir home;
  const QString path = home.filePath(QStringLiteral("made/history.json"));
};

TEST_F(LibraryStoreTest, ABrokenFileIsEmptyAndLeftAloneUntilTheNextSave) {
  EXPECT_TRUE(LibraryStore(path).history().empty());
  EXPECT_FALSE(QFileInfo::exists(QFileInfo(path).path())) << "reading makes nothing";
  LibraryStore(path).record(row("a"));
  EXPECT_EQ(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
  const QByteArray good = bytes();
  const auto most = static_cast<qsizetype>(LibraryStore::kLargestFile);
  using Case = std::pair<QByteArray, int>;
  for (const auto& [file, rows] :
       {Case{good, 1}, Case{good.leftJustified(most), 1}, Case{good.leftJustified(most + 1), 0},
        Case{"", 0}, Case{"{}", 0}, Case{good.chopped(3), 0}, Case{"[{}]", 0}}) {
    QFile out(path);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly) && out.write(file) == file.size());
    out.close();
    LibraryStore store(path);
    EXPECT_EQ(store.history().size(), rows) << file.size() << file.left(300).toStdString();
    store.updateProgress(QStringLiteral("unknown"), 1, 1);
    EXPECT_TRUE(bytes() == file);
    store.record(row("b"));
    EXPECT_EQ(LibraryStore(path).history(), store.history());
  }
  QFile::remove(path);
  ASSERT_EQ(mkfifo(qPrintable(path), 0600), 0);
  EXPECT_TRUE(LibraryStore(path).history().empty()) << "nobody ever writes into this pipe";
}

TEST_F(LibraryStoreTest, KeepsTheNewestRowsInOrderAndEachChangeOverARestart) {
  LibraryStore store(path);
  int published = 0;
  QObject::connect(&store, &LibraryStore::historyChanged, [&] { ++published; });
  const auto front = [&] { return keys({store.history().begin(), store.history().begin() + 3}); };
  for (int i = 0; i <= 200; ++i) store.record(row(std::to_string(i).c_str(), i, 1000));
  EXPECT_FALSE(store.entry(QStringLiteral("0")));
  store.record(row("7", 1));
  EXPECT_EQ(store.history().size(), 200);
  EXPECT_EQ(store.history()[0], row("7", 1)) << "no field is carried over";
  const QString eight = store.history()[193].key;
  for (const auto& [position, duration, known] :
       {std::tuple{-5.0, 0.0, 1000.0}, {50.0, 2000.0, 2000.0}, {0.5, 1.0, 1.0}}) {
    store.updateProgress(eight, position, duration);
    EXPECT_EQ(store.entry(eight), row("8", position, known));
    EXPECT_EQ(store.history()[193].key, eight) << "it stays where it is";
    EXPECT_EQ(LibraryStore(path).history(), store.history());
  }
  store.record(store.history()[193]);
  EXPECT_EQ(front(), "8 7 200");
  store.remove(QStringLiteral("7"));
  store.remove(QStringLiteral("unknown"));
  EXPECT_EQ(front(), "8 200 199");
  EXPECT_EQ(LibraryStore(path).history(), store.history());
  store.clear();
  EXPECT_EQ(bytes().trimmed(), "[]");
  EXPECT_EQ(published, 201 + 1 + 3 + 1 + 2 + 1);
}

TEST_F(LibraryStoreTest, ContinuesWhatIsBegunAndNotNearlyFinished) {
  LibraryStore store(path);
  for (const HistoryEntry& one :
       {row("begun", 10.01, 100), row("not", 10, 100), row("unknown", 10.5, 0),
        row("under", 94.99, 100), row("at", 95, 100), row("over", 101, 100),
        row("negative", 1e6, -1), row("short", 10.5, 1), row("ended", 0, 100),
        row("late", 1e6, kInfinity)})
    store.record(one);
  EXPECT_EQ(keys(store.continueWatching()), "late negative under unknown begun");
}

TEST_F(LibraryStoreTest, WhatCannotBeWrittenStaysInTheList) {
  LibraryStore store(path);
  store.record(row("a", 1));
  const QByteArray saved = bytes();
  store.updateProgress(QStringLiteral("a"), kInfinity, 0); // JSON has no such number
  EXPECT_EQ(bytes(), saved);

  ASSERT_TRUE(QFile::remove(path) && QDir().mkpath(path)); // nothing is written over a folder
  store.updateProgress(QStringLiteral("a"), 2, 0);
  store.record(row("b"));
  EXPECT_EQ(store.history().size(), 2);
  ASSERT_TRUE(QDir().rmdir(path));
  store.updateProgress(QStringLiteral("a"), 4, 0);
  EXPECT_EQ(LibraryStore(path).history(), store.history()) << "the next save makes up for it";
}

} // namespace
} // namespace vellum
