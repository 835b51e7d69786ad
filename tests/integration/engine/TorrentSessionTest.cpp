// A session and its counterparts: from nothing but a hash to bytes on disk, and back out.
#include "SessionWorld.h"
#include "storage/HeldFile.h"
#include <QFile>
#include <asio/ip/udp.hpp>

namespace vellum::test {
namespace {

using TorrentSessionTest = SessionWorld;
const auto kLoopback = asio::ip::address_v4::loopback();

TEST_F(TorrentSessionTest, FindsItsPeersByEitherTrackerAndItsFilesWithOrWithoutAFile) {
  for (const bool overUdp : {true, false}) {
    const bool knowsMeta = overUdp;
    LoopbackSeeder seeder(torrent);
    LoopbackTracker tracker;
    tracker.setPeers({seeder.port()});
    std::atomic<QThread*> toldOn = nullptr;
    int ticks = 0;
    std::optional<SessionSnapshot> ticked, progressed;
    const auto session = makeSession({overUdp ? tracker.udpUrl() : tracker.httpUrl()}, knowsMeta);
    EXPECT_EQ(session->fileRange(1).has_value(), knowsMeta);
    session->setOnMetadata([&] { toldOn = QThread::currentThread(); });
    session->setOnTick([&](const SessionSnapshot& snapshot) {
      ticked = snapshot;
      ++ticks;
      EXPECT_TRUE(main.isCurrentThread());
    });
    session->setOnProgress([&](const SessionSnapshot& snapshot) { progressed = snapshot; });
    const auto began = clock.now();
    session->start();
    ASSERT_TRUE(finishes(*session));
    EXPECT_TRUE(holdsThePayload(*session));
    EXPECT_TRUE(turnUntil([&] { return progressed && progressed->complete; }));
    EXPECT_TRUE(turnUntil([&] { return (toldOn != nullptr) == !knowsMeta; }));
    EXPECT_NE(toldOn, QThread::currentThread());
    EXPECT_EQ(session->title(), QStringLiteral("Film"));
    EXPECT_EQ(session->fileRange(1), (FileRange{kFilm, 5'000}));
    EXPECT_FALSE(session->fileRange(-1) || session->fileRange(2));
    EXPECT_FALSE(session->read(-1, 1) || session->read(0, -1));
    EXPECT_TRUE(session->read(0, 0));

    // A tick each second; the first announce has ended, and the next is due in two minutes.
    const auto announces = [&] { return tracker.udpAnnounces() + tracker.httpAnnounces(); };
    for (int second = 1; second <= 4; ++second) {
      pass(1);
      ASSERT_TRUE(turnUntil([&] { return ticks >= second; }));
    }
    EXPECT_LE(ticks, secondsBetween(began, clock.now()));
    EXPECT_TRUE(ticked->complete && ticked->announced && ticked->streamReady);
    EXPECT_EQ(ticked->peers, 1);
    EXPECT_EQ(announces(), 1);
    pass(120);
    EXPECT_TRUE(turnUntil([&] { return announces() == 2; }));

    const QString subtitle = folder.filePath(QStringLiteral("subs/film.srt"));
    ASSERT_TRUE(runFlow(extractFile(session, 1, subtitle)));
    QFile cut(subtitle);
    ASSERT_TRUE(cut.open(QIODevice::ReadOnly));
    EXPECT_TRUE(std::ranges::equal(asBytes(cut.readAll()), torrent.fileBytes(1)));
    session->stop(overUdp);
    EXPECT_EQ(QDir(directory).exists(), !overUdp);
  }
}

TEST_F(TorrentSessionTest, ATrackerHasSixSecondsForEachStep) {
  pool.emplace(1); // with one thread what is due has happened when pass() returns
  asio::io_context io;
  asio::ip::udp::socket tracker(io, {kLoopback, 0});
  const auto session = makeSession(
      {QStringLiteral("UDP://127.0.0.1:%1").arg(tracker.local_endpoint().port())}, true);
  session->start();
  asio::ip::udp::endpoint from;
  ByteVector request(200);
  const auto receive = [&] { return tracker.receive_from(asio::buffer(request), from); };
  for (const auto& [connecting, announcing] : {std::pair{6.1, 0.0}, {5.8, 6.1}, {5.8, 5.8}}) {
    ASSERT_EQ(receive(), 16U) << connecting << ' ' << announcing;
    EXPECT_FALSE(session->snapshot().announced);
    pass(0); // by now it waits
    pass(connecting);
    tracker.send_to(asio::buffer(numbers({0, rd32(request, 12), 1, 2})), from);
    if (connecting < 6) {
      ASSERT_EQ(receive(), 98U) << announcing;
      pass(0);
      pass(announcing);
      tracker.send_to(asio::buffer(numbers({1, rd32(request, 12), 1800, 2, 3})), from);
    }
    if (announcing != 5.8) pass(26);
  }
  EXPECT_TRUE(turnUntil([&] { return session->snapshot().announced; }, 5s));
  EXPECT_EQ(session->snapshot().trackerSeeders, 3);
}

TEST_F(TorrentSessionTest, APeerHasNineSecondsForItsHandshake) {
  const auto session = makeSession({}, true);
  session->start();
  PlayedPeer mute, greeting;
  session->addPeers({loopback(mute.port()), loopback(greeting.port())});
  mute.accept();
  mute.read(68);
  greeting.greet(torrent.infoHash);
  greeting.hear(2);
  pass(8.8);
  EXPECT_EQ(session->snapshot().peers, 1);
  mute.say(ByteSpan(handshake(torrent.infoHash)).first(67));
  pass(0.3);
  EXPECT_TRUE(mute.isDropped());
  EXPECT_EQ(session->snapshot().peers, 1);
}

TEST_F(TorrentSessionTest, OneGoodSeederAmongDeadAddressesAndLoudPeersIsEnough) {
  const auto session = makeSession({}, false);
  session->start();
  PlayedPeer noise, flood;
  LoopbackSeeder good(torrent);
  session->addPeers({{QString(), 1}, loopback(noise.port()), loopback(flood.port())});
  noise.accept();
  noise.say(pseudoRandomBytes(1000, 3)); // at once: it is not heard out
  flood.greet(torrent.infoHash);
  ByteVector many = extended(0, "d1:md11:ut_metadatai3eee");
  for (int i = 0; i < 50'000; ++i) append(many, extended(1, "d8:msg_typei0e5:piecei123456789ee"));
  EXPECT_THROW(for (;;) flood.say(many), asio::system_error); // it reads none of the answers
  EXPECT_TRUE(noise.isDropped());
  std::vector<PeerAddr> addresses{{QStringLiteral("127.0.0.0"), 512}};
  for (int i = 1; i < 80; ++i) addresses.push_back({QStringLiteral("127.0.1.%1").arg(i), 1});
  addresses.push_back(loopback(good.port()));
  session->addPeers(addresses);
  for (int second = 0; second < 2; ++second) pass(1);
  ASSERT_TRUE(finishes(*session));
  EXPECT_TRUE(holdsThePayload(*session));
}

TEST_F(TorrentSessionTest, StopsAtOnceInTheMidstOfEverything) {
  // Everything that a session can wait for: trackers that say nothing, a peer that answers no
  // handshake, a slow one that sends, and one that has to wait.
  asio::io_context io;
  asio::ip::udp::socket muteUdp(io, {kLoopback, 0});
  PlayedPeer mute, muteHttp, leecher;
  SeederOptions slow;
  slow.uploadRate = 300'000;
  LoopbackSeeder seeder(torrent, slow);
  auto session =
      makeSession({QStringLiteral("udp://127.0.0.1:%1").arg(muteUdp.local_endpoint().port()),
                   QStringLiteral("http://127.0.0.1:%1/announce").arg(muteHttp.port())},
                  true);
  session->setUploadLimit([] { return kBlockSize / 4; });
  session->start();
  session->select(0, {});
  session->addPeers({loopback(mute.port()), loopback(seeder.port())});
  ASSERT_TRUE(turnUntil([&] { return session->hasRange(0, kPiece) && muteUdp.available() > 0; }));
  session->addPeers({loopback(leecher.port())});
  mute.accept();
  muteHttp.accept();
  leecher.leech(torrent.infoHash);
  for (int i = 0; i < 2; ++i) leecher.say(frame(6, numbers({0, 0, kBlockSize})));
  leecher.hear(7);
  EXPECT_EQ(session->snapshot().peers, 2);
  EXPECT_LT(session->snapshot().downloaded, torrent.meta->total);
  EXPECT_LT(secondsFor([&] { session->stop(true); }), 0.5);
  EXPECT_FALSE(QDir(directory).exists());
  EXPECT_FALSE(session->read(0, 1));
  EXPECT_EQ(session->snapshot().peers, 0);
  EXPECT_TRUE(mute.isDropped());

  // Nothing starts again, and nothing is left that the pool would have to wait for.
  session->start();
  session.reset();
  EXPECT_LT(secondsFor([&] { pool.reset(); }), 2.0);
  EXPECT_FALSE(QDir(directory).exists());
}

TEST_F(TorrentSessionTest, APayloadGoesWithTheLastThatUsesIt) {
  const QString payload = directory + QStringLiteral("/payload.dat");
  const auto one = makeSession({}, true);
  const auto other = makeSession({}, true);
  EXPECT_TRUE(RemovalRight(payload).isInUse());
  EXPECT_EQ(QFile(payload).size(), torrent.meta->total);
  one->stop(true);
  EXPECT_TRUE(QFile::exists(payload));
  ASSERT_TRUE(QDir(folder.path()).mkpath(directory + QStringLiteral(".gone/left/by/a/dead/one")));
  other->stop(true);
  EXPECT_TRUE(QDir(directory + QStringLiteral("/..")).isEmpty());
}

} // namespace
} // namespace vellum::test
