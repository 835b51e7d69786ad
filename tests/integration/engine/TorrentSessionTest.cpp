// A session against honest counterparts: from nothing but a hash to bytes on disk, and back out.
#include "ScriptedPeer.h"
#include "SessionWorld.h"
#include "storage/HeldFile.h"
#include "streaming/ExtractFile.h"
#include "support/RunFlow.h"
#include <QFile>
#include <asio/ip/udp.hpp>
#include <list>

namespace vellum::test {
namespace {

using TorrentSessionTest = SessionWorld;

TEST_F(TorrentSessionTest, FindsItsPeersByEitherTrackerAndItsFilesWithOrWithoutAFile) {
  for (const bool overUdp : {true, false}) {
    for (const bool knowsMeta : {true, false}) {
      SCOPED_TRACE(testing::Message() << (overUdp ? "udp" : "http") << " meta " << knowsMeta);
      LoopbackSeeder seeder(torrent);
      LoopbackTracker tracker;
      tracker.setPeers({seeder.port()});
      std::atomic<QThread*> toldOn = nullptr;
      std::optional<SessionSnapshot> ticked, progressed;
      const auto session = makeSession({overUdp ? tracker.udpUrl() : tracker.httpUrl()}, knowsMeta);
      session->setOnMetadata([&] { toldOn = QThread::currentThread(); });
      session->setOnTick([&](const SessionSnapshot& snapshot) {
        ticked = snapshot;
        EXPECT_TRUE(main.isCurrentThread());
      });
      session->setOnProgress([&](const SessionSnapshot& snapshot) { progressed = snapshot; });
      session->start();
      ASSERT_TRUE(finishes(*session));
      EXPECT_TRUE(holdsThePayload(*session));
      EXPECT_TRUE(turnUntil([&] { return progressed && progressed->complete; }));
      EXPECT_TRUE(turnUntil([&] { return ticked && ticked->complete; }));
      EXPECT_EQ(toldOn != nullptr, !knowsMeta);
      EXPECT_NE(toldOn, QThread::currentThread());
      EXPECT_EQ(ticked->peers, 1);
      EXPECT_EQ(ticked->downloaded, meta->total);
      EXPECT_TRUE(ticked->announced && ticked->streamReady);
      EXPECT_EQ(session->title(), QStringLiteral("Film"));
      EXPECT_EQ((overUdp ? tracker.udpAnnounces() : tracker.httpAnnounces()), 1);

      const QString subtitle = folder.filePath(QStringLiteral("subs/film.srt"));
      ASSERT_TRUE(runFlow(extractFile(session, 1, subtitle)));
      QFile cut(subtitle);
      ASSERT_TRUE(cut.open(QIODevice::ReadOnly));
      EXPECT_TRUE(std::ranges::equal(asBytes(cut.readAll()), torrent.fileBytes(1)));
      session->stop(overUdp);
      EXPECT_EQ(QDir(directory).exists(), !overUdp);
      QDir(directory).removeRecursively();
    }
  }
}

TEST_F(TorrentSessionTest, StopsAtOnceInTheMidstOfEverything) {
  // Everything that a session can wait for: trackers that say nothing, a peer whose host answers no
  // connect, one that answers no handshake, and a slow one that sends.
  asio::io_context io;
  asio::ip::udp::socket muteUdp(io, {asio::ip::address_v4::loopback(), 0});
  asio::ip::tcp::acceptor full(io);
  full.open(asio::ip::tcp::v4());
  full.bind({asio::ip::address_v4::loopback(), 0});
  full.listen(0);
  std::list<asio::ip::tcp::socket> crowd; // fills the queue of those that wait to be accepted
  for (int i = 0; i < 4; ++i)
    crowd.emplace_back(io).async_connect(full.local_endpoint(), [](asio::error_code) {});
  ScriptedPeer mute([](ScriptedPeer::Socket&) -> Flow<> { co_return; });
  ScriptedPeer muteHttp([](ScriptedPeer::Socket&) -> Flow<> { co_return; });
  SeederOptions slow;
  slow.uploadRate = 200'000;
  LoopbackSeeder seeder(torrent, slow);
  const QStringList trackers{
      QStringLiteral("udp://127.0.0.1:%1").arg(muteUdp.local_endpoint().port()),
      QStringLiteral("http://127.0.0.1:%1/announce").arg(muteHttp.port())};
  auto session = makeSession(trackers, true);
  session->start();
  session->select(0, {});
  session->addPeers(
      {loopback(full.local_endpoint().port()), loopback(mute.port()), loopback(seeder.port())});
  ASSERT_TRUE(turnUntil([&] {
    return mute.dials() > 0 && muteHttp.dials() > 0 && muteUdp.available() > 0 &&
           session->snapshot().downloaded > 0;
  }));
  EXPECT_EQ(session->snapshot().peers, 1);
  const auto downloaded = session->snapshot().downloaded;
  EXPECT_LT(downloaded, meta->total);
  EXPECT_LT(secondsFor([&] { session->stop(true); }), 0.5);
  EXPECT_FALSE(QDir(directory).exists());
  EXPECT_TRUE(session->isStopped());
  EXPECT_FALSE(session->read(0, 1));
  EXPECT_EQ(session->snapshot().peers, 0);
  EXPECT_TRUE(turnUntil([&] { return mute.drops() > 0 && muteHttp.drops() > 0; }, 5s));

  // Nothing starts again, and nothing is left that the pool would have to wait for.
  session->start();
  session->addPeers({loopback(muteHttp.port())});
  session->select(0, {});
  EXPECT_LT(secondsFor([&] {
              session.reset();
              pool.reset();
            }),
            2.0);
  EXPECT_EQ(mute.dials(), 1);
  EXPECT_EQ(muteHttp.dials(), 1);
  EXPECT_FALSE(QDir(directory).exists());
}

TEST_F(TorrentSessionTest, APayloadGoesWithTheLastThatUsesIt) {
  const QString payload = directory + QStringLiteral("/payload.dat");
  EXPECT_FALSE(RemovalRight(payload).isInUse());
  const auto one = makeSession({}, true);
  const auto other = makeSession({}, true);
  EXPECT_TRUE(RemovalRight(payload).isInUse());
  one->stop(true);
  EXPECT_TRUE(QFile::exists(payload));
  ASSERT_TRUE(QDir(folder.path()).mkpath(directory + QStringLiteral(".gone/left/by/a/dead/one")));
  other->stop(true);
  EXPECT_TRUE(QDir(directory + QStringLiteral("/..")).isEmpty());
}

TEST_F(TorrentSessionTest, ALeecherThatWeDialGetsTheRightBytes) {
  LoopbackSeeder seeder(torrent);
  const auto session = makeSession({}, true);
  session->start();
  session->addPeers({loopback(seeder.port())});
  ASSERT_TRUE(finishes(*session));

  // On the leecher's thread until it has ended.
  std::vector<RecordingLink::Message> heard;
  const auto pieces = static_cast<std::uint32_t>(meta->pieceCount());
  const auto lastPiece = static_cast<std::uint32_t>(meta->total % kPiece);
  ScriptedPeer leecher([&](ScriptedPeer::Socket& socket) -> Flow<> {
    co_await ScriptedPeer::greet(socket, torrent.infoHash);
    co_await ScriptedPeer::say(socket, frame(6, numbers({0, 0, 16384}))); // not yet unchoked
    co_await ScriptedPeer::say(socket, frame(2));
    do heard.push_back(co_await ScriptedPeer::hear(socket));
    while (heard.back().id != 1);
    for (const auto& request :
         {numbers({pieces, 0, 1}), numbers({0xffffffff, 0xffffffff, 0xffffffff}),
          numbers({0, 0xffffffff, 2}), numbers({0, 0, 0}), numbers({0, 0, 32769}),
          numbers({0, kPiece - 1, 2}), numbers({pieces - 1, lastPiece - 1, 2}),
          // The good ones:
          numbers({3, 0, 32768}), numbers({7, 12345, 1}), numbers({pieces - 1, lastPiece - 1, 1})})
      co_await ScriptedPeer::say(socket, frame(6, request));
    for (int i = 0; i < 3; ++i) heard.push_back(co_await ScriptedPeer::hear(socket));
  });
  session->addPeers({loopback(leecher.port())});
  ASSERT_TRUE(turnUntil([&] { return leecher.ended() > 0; }));

  ByteVector full((pieces + 7) / 8, std::byte{0xff});
  full.back() = std::byte(0xff << (full.size() * 8 - pieces));
  std::vector<RecordingLink::Message> expected{
      {20, bytesOf(std::string(1, '\0') + "d1:md11:ut_metadatai1ee13:metadata_sizei0ee")},
      {5, full},
      {2, {}},
      {1, {}}};
  for (const auto& [piece, begin, length] : std::initializer_list<std::array<std::uint32_t, 3>>{
           {3, 0, 32768}, {7, 12345, 1}, {pieces - 1, lastPiece - 1, 1}}) {
    ByteVector body = numbers({piece, begin});
    append(body, torrent.payload->bytes().subspan(piece * kPiece + begin, length));
    expected.push_back({7, std::move(body)});
  }
  ASSERT_EQ(heard.size(), expected.size());
  for (std::size_t i = 0; i < heard.size(); ++i) {
    EXPECT_EQ(heard[i].id, expected[i].id) << i;
    EXPECT_TRUE(heard[i].body == expected[i].body) << i;
  }
  EXPECT_EQ(session->snapshot().uploaded, 32770);
  EXPECT_EQ(session->snapshot().peers, 2);
}

} // namespace
} // namespace vellum::test
