#include "desktop/SingleInstance.h"
#include "desktop/linux/HandoverMessage.h"
#include "desktop/linux/MeetingPlace.h"
#include "world/MainThread.h"
#include <QDir>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <future>
#include <gtest/gtest.h>
#include <unistd.h>

namespace vellum::test {

using namespace Qt::StringLiterals;
using namespace world;
namespace {

using Start = SingleInstance::Start;
using namespace std::chrono_literals;
const QString kMagnet = u"magnet:?xt=urn:btih:00"_s;
const QString kLongest(handover::kLargest - 1, u'a'); // of one link

struct SingleInstanceTest : ::testing::Test, MainThread {
  // The running one, on this thread, with what others hand over to it.
  std::unique_ptr<SingleInstance> first(std::chrono::milliseconds patience = 20s) {
    auto made = std::make_unique<SingleInstance>(SingleInstance::Settings{folder, patience});
    QObject::connect(made.get(), &SingleInstance::opened, &app,
                     [&](const QStringList& links) { opened += links; });
    EXPECT_EQ(made->start({kMagnet}), Start::First);
    return made;
  }
  // Another start, on a thread: to lock and socket it is as good as another process.
  Start another(const QStringList& links) {
    auto start = std::async(std::launch::async, [&] {
      return SingleInstance({folder, 20s}).start(links);
    });
    EXPECT_TRUE(turnUntil([&] { return start.wait_for(0s) == std::future_status::ready; }));
    return start.get();
  }
  static bool isPrivate(const QString& path) {
    const auto others = QFile::ReadGroup | QFile::ReadOther;
    return QFile::exists(path) && !(QFile::permissions(path) & others);
  }

  QTemporaryDir root;
  QString folder = root.filePath(u"made/run"_s);
  QList<QStringList> opened;
};

TEST_F(SingleInstanceTest, ASecondStartHandsItsLinksOverAndTheNextOneTakesThePlace) {
  auto running = first();
  const QList<QStringList> links{{kMagnet, u"/tmp/ä b.torrent"_s}, {}, {kLongest}};
  for (const QStringList& some : links) EXPECT_EQ(another(some), Start::HandedOver);
  EXPECT_EQ(opened, links);
  for (const QString& made : {folder, folder + u"/lock"_s}) EXPECT_TRUE(isPrivate(made));
  running.reset();
  QFile left(meetingSocket(folder)); // by a crash
  ASSERT_TRUE(left.open(QIODevice::WriteOnly));
  running = first();
  EXPECT_EQ(another({kMagnet}), Start::HandedOver);
}

TEST_F(SingleInstanceTest, BadVisitorsDisturbNobody) {
  const auto running = first(500ms);
  const QByteArray good = handover::encode({kMagnet}).value();
  const QByteArray bad[] = {{}, // not a word
                            good.first(9),
                            QByteArray(4, '\xff'),
                            good + "more",
                            QByteArray("\0\0\0\1z", 5), // no end
                            QByteArray("\0\1\0\0", 4) + QByteArray(300'000, 'x')};
  std::array<QLocalSocket, 20> visitors; // more than are let in at a time
  int gone = 0;
  for (std::size_t i = 0; i < visitors.size(); ++i) {
    QObject::connect(&visitors[i], &QLocalSocket::disconnected, [&gone] { ++gone; });
    visitors[i].connectToServer(meetingSocket(folder));
    ASSERT_TRUE(visitors[i].waitForConnected());
    visitors[i].write(bad[i % 6]);
  }
  EXPECT_TRUE(turnUntil([&] { return gone == 20; }));
  EXPECT_TRUE(opened.isEmpty());
  EXPECT_EQ(another({kMagnet}), Start::HandedOver);
}

TEST_F(SingleInstanceTest, OneThatDoesNotAnswerIsNotWaitedForLong) {
  SingleInstance hasty({folder, 100ms});
  {
    ProcessLock lock; // that nobody listens behind
    ASSERT_EQ(lock.take(meetingPlace(folder).value()), ProcessLock::Result::Taken);
    EXPECT_EQ(hasty.start({kMagnet}), Start::Unanswered);
  }
  const auto running = first();
  EXPECT_EQ(hasty.start({kMagnet}), Start::Unanswered); // this thread cannot answer meanwhile
  EXPECT_EQ(another({kLongest, kMagnet}), Start::Unanswered);
  folder = meetingSocket(folder) + u"/below"_s;
  EXPECT_EQ(another({}), Start::First); // there is no place to look for one
}

TEST_F(SingleInstanceTest, TheMeetingPlaceIsShortAndOursAlone) {
  const QString longName = root.filePath(QString(200, u'x'));
  const QString places[] = {meetingPlace(longName).value(), meetingPlace(longName + u'y').value()};
  EXPECT_NE(places[0], places[1]);
  for (const QString& place : places) {
    EXPECT_LT(meetingSocket(place).size(), 108);
    EXPECT_EQ(meetingPlace(place), place);
    QDir(place).removeRecursively();
  }
  folder = root.filePath(u"open"_s);
  ASSERT_TRUE(QDir().mkdir(folder)); // for everybody to read
  EXPECT_TRUE(meetingPlace(folder));
  EXPECT_TRUE(isPrivate(folder)) << "what is open is closed";
  const bool isChanged = chown(folder.toUtf8().constData(), 12345, 12345) == 0; // as root
  EXPECT_FALSE(meetingPlace(isChanged ? folder : u"/usr"_s));
  const QString laid = root.filePath(u"laid"_s);
  ASSERT_TRUE(QFile::link(root.path(), laid));
  EXPECT_FALSE(meetingPlace(laid));
}

} // namespace
} // namespace vellum::test
