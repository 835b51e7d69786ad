// A session whose trackers, folder or disk do not play along.
#include "ScriptedPeer.h"
#include "SessionWorld.h"
#include "streaming/ExtractFile.h"
#include "support/RunFlow.h"
#include <QFile>
#include <asio/read_until.hpp>
#include <csignal>
#include <sys/resource.h>

namespace vellum::test {
namespace {

using HostileWorldTest = SessionWorld;

// An HTTP server that answers whatever is asked with `body`, or with less than it promises.
ScriptedPeer::Script answering(QByteArray body, qsizetype missing = 0) {
  return [=](ScriptedPeer::Socket& socket) -> Flow<> {
    std::string head;
    co_await asio::async_read_until(socket, asio::dynamic_buffer(head), "\r\n\r\n",
                                    asio::use_awaitable);
    co_await ScriptedPeer::say(
        socket, asBytes("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " +
                        QByteArray::number(body.size() + missing) + "\r\n\r\n" + body));
    throw asio::system_error(asio::error::eof);
  };
}

QByteArray peersOf(const QByteArray& compact) {
  return "d5:peers" + QByteArray::number(compact.size()) + ':' + compact + 'e';
}

TEST_F(HostileWorldTest, TrackersThatTalkNonsenseAndOneOfManyAddresses) {
  // Closed ports all over the loopback network, and one address that cannot be dialled at all.
  QByteArray crowd("\x7f\0\0\2\0\0", 6);
  for (int i = 1; i < 10'000; ++i)
    crowd += QByteArray("\x7f\1", 2) + char(i >> 8) + char(i) + QByteArray("\0\1", 2);
  ScriptedPeer crowded(answering(peersOf(crowd)));
  ScriptedPeer nonsense(answering(QByteArray(50'000, 'd')));
  ScriptedPeer brokenOff(answering(peersOf(crowd.first(600)), 100));
  ScriptedPeer noHttp([](ScriptedPeer::Socket& socket) -> Flow<> {
    co_await ScriptedPeer::say(socket, pseudoRandomBytes(100'000, 5));
  });
  LoopbackSeeder good(torrent);
  const auto http = [](const ScriptedPeer& peer) {
    return QStringLiteral("http://127.0.0.1:%1/announce").arg(peer.port());
  };
  const auto session =
      makeSession({QStringLiteral("udp://127.0.0.1:99999/announce"),
                   QStringLiteral("http://127.0.0.1:99999/announce"), QStringLiteral("udp://"),
                   QStringLiteral("no address %zz at all"), http(nonsense), http(brokenOff),
                   http(noHttp), http(crowded), QStringLiteral("udp://127.0.0.1:1/the-ninth")},
                  false);
  session->addPeers({loopback(good.port())});
  session->start();
  ASSERT_TRUE(finishes(*session));
  EXPECT_TRUE(holdsThePayload(*session));
  EXPECT_TRUE(turnUntil([&] { return session->snapshot().announced; }));
  EXPECT_EQ(session->snapshot().knownPeers, 10'001);
  EXPECT_TRUE(turnUntil(
      [&] { return nonsense.ended() > 0 && brokenOff.ended() > 0 && noHttp.ended() > 0; }));
  EXPECT_LT(secondsFor([&] { session->stop(true); }), 0.5);
}

TEST_F(HostileWorldTest, AFolderThatCannotBeMade) {
  QFile inTheWay(folder.filePath(QStringLiteral("streams")));
  ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
  LoopbackSeeder seeder(torrent);
  for (const bool knowsMeta : {true, false}) {
    const auto session = makeSession({}, knowsMeta);
    session->start();
    session->addPeers({loopback(seeder.port())});
    EXPECT_TRUE(finishes(*session)); // what came is lost, but it ends
    EXPECT_FALSE(session->read(0, 1));
    EXPECT_FALSE(runFlow(extractFile(session, 1, folder.filePath(QStringLiteral("film.srt")))));
    session->stop(true);
    EXPECT_TRUE(inTheWay.exists());
  }
}

TEST_F(HostileWorldTest, APayloadThatIsDeletedMeanwhile) {
  SeederOptions slow;
  slow.uploadRate = 3'000'000;
  LoopbackSeeder seeder(torrent, slow);
  const auto session = makeSession({}, true);
  session->start();
  session->select(0, {1});
  session->addPeers({loopback(seeder.port())});
  ASSERT_TRUE(turnUntil([&] { return session->snapshot().downloaded > 500'000; }));
  ASSERT_TRUE(QDir(directory).removeRecursively());
  EXPECT_FALSE(session->snapshot().complete);
  ASSERT_TRUE(turnUntil([&] { return session->snapshot().complete; }));
  EXPECT_TRUE(holdsThePayload(*session)); // the open file lives on
  session->stop(false);
  EXPECT_FALSE(QDir(directory).exists());
}

// The limit on the size of a file stands for a disk without room: writes beyond it fail.
TEST_F(HostileWorldTest, ADiskWithoutRoomLosesWhatDoesNotFitAndNothingElse) {
  constexpr rlim_t kRoom = 1'000'000; // bytes
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit narrow{kRoom, before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &narrow), 0);
  {
    LoopbackSeeder seeder(torrent);
    const auto session = makeSession({}, false);
    session->start();
    session->addPeers({loopback(seeder.port())});
    EXPECT_TRUE(finishes(*session));
    EXPECT_EQ(session->snapshot().downloaded, meta->total) << "nothing is fetched twice";
    const auto there = session->read(0, meta->total);
    const auto fits = torrent.payload->bytes().first(kRoom);
    EXPECT_TRUE(there && std::ranges::equal(*there, fits));
    session->stop(true);
    EXPECT_FALSE(QDir(directory).exists());
  }
  EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
  std::signal(SIGXFSZ, handler);
}

} // namespace
} // namespace vellum::test
