#include "desktop/SingleInstance.h"
#include "StartedProgram.h"
#include "desktop/linux/HandoverMessage.h"
#include "desktop/linux/MeetingPlace.h"
#include <QDir>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace vellum::test {
namespace {

using Start = SingleInstance::Start;
const QString kMagnet = QStringLiteral("magnet:?xt=urn:btih:00");

struct SingleInstanceTest : ::testing::Test, MainThread {
  SingleInstance::Settings settings(std::chrono::milliseconds patience = std::chrono::seconds(20)) {
    return {folder, patience};
  }
  // A start in a process of its own, which ends with the test at the latest.
  StartedProgram& process(const QStringList& links = {}) {
    const QStringList command{QStringLiteral(TEST_START), folder};
    return *processes.emplace_back(std::make_unique<StartedProgram>(command + links));
  }

  QTemporaryDir root;
  QString folder = root.filePath(QStringLiteral("run"));
  std::vector<std::unique_ptr<StartedProgram>> processes;
};

TEST_F(SingleInstanceTest, ASecondStartHandsItsLinksOver) {
  StartedProgram& first = process({kMagnet});
  ASSERT_EQ(first.line(), "first");
  StartedProgram& second = process({kMagnet, QStringLiteral("/tmp/ä b.torrent")});
  EXPECT_EQ(second.line(), "over");
  EXPECT_EQ(first.line(), "opened " + kMagnet.toUtf8() + " /tmp/ä b.torrent");
  EXPECT_EQ(process().line(), "over");
  EXPECT_EQ(first.line(), "opened "); // nothing but itself
  struct stat found {};
  ASSERT_EQ(stat(folder.toUtf8().constData(), &found), 0);
  EXPECT_EQ(found.st_mode & 0777, 0700U);
}

TEST_F(SingleInstanceTest, WhatACrashLeftBehindIsTakenOver) {
  StartedProgram& first = process();
  ASSERT_EQ(first.line(), "first");
  first.end(SIGKILL);
  ASSERT_TRUE(QFile::exists(meetingSocket(folder)));
  StartedProgram& second = process();
  EXPECT_EQ(second.line(), "first");
  EXPECT_EQ(process({kMagnet}).line(), "over");
  EXPECT_EQ(second.line(), "opened " + kMagnet.toUtf8());
}

TEST_F(SingleInstanceTest, OfManyStartsAtOneMomentOneStays) {
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 6; ++i) process({kMagnet});
    std::map<QByteArray, int> count;
    StartedProgram* running = nullptr;
    for (const auto& started : processes) {
      const QByteArray said = started->line();
      ++count[said];
      if (said == "first") running = started.get();
    }
    EXPECT_EQ(count, (std::map<QByteArray, int>{{"first", 1}, {"over", 5}})) << round;
    ASSERT_NE(running, nullptr);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(running->line(), "opened " + kMagnet.toUtf8());
    // The next round finds either nothing or what a crash left.
    running->closeInput();
    running->end(round == 0 ? SIGKILL : 0);
    processes.clear();
  }
}

TEST_F(SingleInstanceTest, BadVisitorsDisturbNobody) {
  SingleInstance running(settings(std::chrono::milliseconds(300)));
  ASSERT_EQ(running.start({}), Start::First);
  QList<QStringList> opened;
  QObject::connect(&running, &SingleInstance::opened, &app,
                   [&](const QStringList& links) { opened += links; });
  const QByteArray good = handover::encode({kMagnet}).value();
  const QByteArray bad[] = {{},
                            good.first(9),
                            QByteArray(4, '\xff'),
                            good + "more",
                            QByteArray("\x00\x01\x00\x00", 4) + QByteArray(300'000, 'x')};
  std::vector<std::unique_ptr<QLocalSocket>> visitors;
  for (int i = 0; i < 20; ++i) { // more than are let in at a time
    auto& visitor = *visitors.emplace_back(std::make_unique<QLocalSocket>());
    visitor.connectToServer(meetingSocket(folder));
    ASSERT_TRUE(visitor.waitForConnected());
    visitor.write(bad[i % 5]);
  }
  const auto areGone = [&] {
    return std::ranges::all_of(
        visitors, [](auto& v) { return v->state() == QLocalSocket::UnconnectedState; });
  };
  EXPECT_TRUE(turnUntil(areGone)); // also those that say nothing
  EXPECT_TRUE(opened.isEmpty());
  EXPECT_EQ(process({kMagnet}).line(), "over");
  EXPECT_EQ(opened, QList<QStringList>{{kMagnet}});
}

TEST_F(SingleInstanceTest, OneThatDoesNotAnswerIsNotWaitedForLong) {
  SingleInstance running(settings());
  ASSERT_EQ(running.start({}), Start::First);
  // This thread cannot answer while the second one starts.
  EXPECT_EQ(SingleInstance(settings(std::chrono::milliseconds(100))).start({kMagnet}),
            Start::Unanswered);
  EXPECT_EQ(SingleInstance(settings()).start({QString(70'000, u'x')}), Start::Unanswered);
}

TEST_F(SingleInstanceTest, LongAndForeignFolders) {
  folder = root.filePath(QString(200, u'x'));
  const QString shorter = meetingPlace(folder).value();
  EXPECT_LT(meetingSocket(shorter).size(), 108);
  EXPECT_NE(shorter, meetingPlace(folder + u'y').value());
  QDir(meetingPlace(folder + u'y').value()).removeRecursively();
  StartedProgram& first = process();
  EXPECT_EQ(first.line(), "first");
  EXPECT_EQ(process().line(), "over");
  first.end(SIGKILL);
  QDir(shorter).removeRecursively();

  // A link that somebody has laid is not followed, and a folder that is open is closed.
  const QString laid = root.filePath(QStringLiteral("laid"));
  ASSERT_TRUE(QFile::link(root.path(), laid));
  EXPECT_FALSE(meetingPlace(laid));
  const QByteArray open = root.filePath(QStringLiteral("open")).toUtf8();
  ASSERT_EQ(mkdir(open.constData(), 0755), 0);
  EXPECT_TRUE(meetingPlace(QString::fromUtf8(open)));
  struct stat found {};
  ASSERT_EQ(stat(open.constData(), &found), 0);
  EXPECT_EQ(found.st_mode & 0777, 0700U);
}

} // namespace
} // namespace vellum::test
