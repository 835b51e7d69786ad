#include "net/PartFile.h"
#include <QDir>
#include <QTemporaryDir>
#include <atomic>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

namespace vellum::test {
namespace {

struct PartFileTest : testing::Test {
  QString in(const char* name) const { return folder.filePath(QLatin1String(name)); }
  qsizetype files() const {
    return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::System).size();
  }
  bool make(const char* name) const { return QFile(in(name)).open(QIODevice::WriteOnly); }
  // The least number that is free: what was left open has taken it.
  static int nextDescriptor() {
    const int next = ::dup(0);
    ::close(next);
    return next;
  }

  const QTemporaryDir folder;
  const int m_before = nextDescriptor();
  std::error_code error = std::make_error_code(std::errc::io_error); // of another time
};

TEST_F(PartFileTest, GetsItsNameAsAWholeOrIsGone) {
  auto file = PartFile::create(folder.path(), error);
  ASSERT_TRUE(file && !error);
  EXPECT_EQ(files(), 1);
  EXPECT_TRUE(QDir(folder.path()).entryList(QDir::Files).isEmpty()) << "hidden";
  EXPECT_FALSE(file->append(std::string_view("too long")) || file->clear());
  EXPECT_EQ(file->size(), 0);
  EXPECT_FALSE(file->append(std::string_view("who")) || file->append(std::string_view("le")));
  EXPECT_FALSE(file->sync());
  EXPECT_EQ(file->size(), 5);
  ASSERT_TRUE(make("taken"));
  EXPECT_EQ(file->moveTo(in("taken")), std::errc::file_exists);
  EXPECT_EQ(file->moveTo(in("none/film")), std::errc::no_such_file_or_directory);
  EXPECT_EQ(file->moveTo(in("film") + QChar(0)), std::errc::invalid_argument);
  EXPECT_EQ(files(), 2);
  ASSERT_FALSE(file->moveTo(in("film")));
  EXPECT_EQ(files(), 2);
  file = PartFile::create(folder.path(), error);
  EXPECT_EQ(files(), 3);
  file.reset();
  EXPECT_EQ(files(), 2);

  EXPECT_FALSE(PartFile::create(in("none"), error));
  EXPECT_EQ(error, std::errc::no_such_file_or_directory);

  // Without hard links:
  EXPECT_EQ(PartFile::renameToFreeName(in("film"), in("taken")), std::errc::file_exists);
  EXPECT_EQ(PartFile::renameToFreeName(in("gone"), in("never")),
            std::errc::no_such_file_or_directory);
  EXPECT_FALSE(PartFile::renameToFreeName(in("film"), in("new")));
  EXPECT_EQ(QFileInfo(in("new")).size(), 5);
  EXPECT_EQ(files(), 2);
  EXPECT_EQ(nextDescriptor(), m_before);
}

TEST_F(PartFileTest, WhatADeadProgramLeftGoesAndNothingElse) {
  const auto held = PartFile::create(folder.path(), error);
  const QString link = in(".vellum-00000000-0000-0000-0000-000000000001.part");
  ASSERT_TRUE(QFile::link(QStringLiteral("/etc/hostname"), link));
  for (const char* name : {".vellum-mine.part", ".vellum-{00000000-0000-0000-0000-0000000000}.part",
                           "film.part", ".vellum-00000000-0000-0000-0000-000000000002.parts",
                           ".vellum-00000000-0000-0000-0000-000000000002x.part",
                           ".vellum-00000000-0000-0000-0000-00000000000A.part",
                           ".vellum-00000000-0000-0000-0000-000000000003.part"})
    ASSERT_TRUE(make(name));
  EXPECT_EQ(files(), 9);
  const int next = nextDescriptor();
  PartFile::clearLeftovers(folder.path());
  EXPECT_EQ(nextDescriptor(), next);
  EXPECT_FALSE(QFileInfo::exists(in(".vellum-00000000-0000-0000-0000-000000000003.part")));
  EXPECT_EQ(files(), 8);
  EXPECT_TRUE(QFileInfo(link).isSymLink());
}

TEST_F(PartFileTest, IsNeverOneThatSomebodyClearsWhileItIsMade) {
  std::atomic<bool> isOver = false;
  std::thread other([&] {
    while (!isOver) PartFile::clearLeftovers(folder.path());
  });
  int lost = 0;
  for (int round = 0; round < 3000; ++round) {
    const auto file = PartFile::create(folder.path(), error);
    lost += !file || file->moveTo(in("film")) || !QFile::remove(in("film"));
  }
  isOver = true;
  other.join();
  EXPECT_EQ(lost, 0);
  EXPECT_EQ(nextDescriptor(), m_before);
}

} // namespace
} // namespace vellum::test
