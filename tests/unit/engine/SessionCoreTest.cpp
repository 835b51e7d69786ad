#include "SwarmWorld.h"
#include <QFile>
#include <gtest/gtest.h>

namespace vellum {
namespace {

using namespace test;

constexpr std::int64_t kBlock = 16384;

struct SessionCoreTest : testing::Test {
  MadeTorrent payload = makeTorrent({{"a.mkv", 20 * kBlock}}, 2 * kBlock);
  SwarmWorld world;
  std::unique_ptr<SessionCore> core;

  void start(QStringList trackers = {}, QString title = {}) {
    core = world.makeCore(payload.infoHash, std::move(trackers), std::move(title));
    core->start();
  }
  RecordingLink& connect(std::size_t index) {
    RecordingLink& link = *world.dialled.at(index).link;
    world.dialled[index].peer->connected();
    feed(*world.dialled[index].peer, handshake(payload.infoHash));
    link.take();
    return link;
  }
  void tickFor(int seconds) {
    for (int i = 0; i < seconds; ++i) {
      world.clock.advance(1);
      core->tick();
    }
  }
};

std::vector<PeerAddr> addresses(int count) {
  std::vector<PeerAddr> list;
  for (int i = 0; i < count; ++i)
    list.push_back({QStringLiteral("10.0.%1.%2").arg(i / 250).arg(i % 250), 6881});
  return list;
}

TEST_F(SessionCoreTest, DefaultsStandBehindTheGivenTrackersAndOnlyEightAreAsked) {
  const QStringList defaults{QStringLiteral("d1"), QStringLiteral("d2")};
  EXPECT_EQ(SessionCore::withDefaults({}, defaults), defaults);
  EXPECT_EQ(SessionCore::withDefaults({QStringLiteral("d2"), QStringLiteral("x")}, defaults),
            (QStringList{QStringLiteral("d2"), QStringLiteral("x"), QStringLiteral("d1")}));
  QStringList nine;
  for (int i = 0; i < 9; ++i) nine.append(QString::number(i));
  start(SessionCore::withDefaults(nine, defaults));
  ASSERT_EQ(world.announces.size(), 1U);
  EXPECT_EQ(world.announces[0], nine.mid(0, 8));
}

TEST_F(SessionCoreTest, AnnouncesEvery26SecondsAloneAndEvery121WithAPeer) {
  start();
  std::vector<int> at;
  for (int second = 1; second <= 53; ++second) {
    core->onAnnounceDone();
    const auto before = world.announces.size();
    tickFor(1);
    if (world.announces.size() > before) at.push_back(second);
  }
  EXPECT_EQ(at, (std::vector<int>{26, 52}));
  core->addPeers(addresses(1));
  connect(0);
  core->onAnnounceDone();
  const auto before = world.announces.size();
  tickFor(119);
  EXPECT_EQ(world.announces.size(), before);
  tickFor(1);
  EXPECT_EQ(world.announces.size(), before + 1) << "121 seconds after the one at 52";
  tickFor(300);
  EXPECT_EQ(world.announces.size(), before + 1) << "none while one is under way";
}

TEST_F(SessionCoreTest, DialsAnAddressOnceAndNeverMoreThan45AtATime) {
  start();
  auto list = addresses(46);
  list.insert(list.begin(), {QStringLiteral("10.9.9.9"), 0});
  list.push_back(list[1]);
  core->addPeers(list);
  core->onTrackerResult({list, 3, 1});
  EXPECT_EQ(world.dialled.size(), 45U) << "port 0 is passed over";
  EXPECT_EQ(core->waitingAddresses(), 1U);
  EXPECT_EQ(core->makeSnapshot().knownPeers, 47);
  world.dialled[3].peer->close();
  core->addPeers({});
  EXPECT_EQ(world.dialled.size(), 45U) << "a closed peer holds its place until the tick";
  tickFor(1);
  EXPECT_EQ(world.dialled.size(), 46U);
  EXPECT_EQ(world.dialled[45].address, list[46]);
}

TEST_F(SessionCoreTest, TrackerSeedersNeverFallAndZeroIsKnown) {
  start();
  EXPECT_FALSE(core->makeSnapshot().trackerSeeders);
  EXPECT_FALSE(core->makeSnapshot().announced);
  core->onTrackerResult({{}, 0, {}});
  EXPECT_EQ(core->makeSnapshot().trackerSeeders, 0);
  core->onTrackerResult({{}, 5, {}});
  core->onTrackerResult({{}, 3, {}});
  core->onTrackerResult({{}, {}, {}});
  EXPECT_EQ(core->makeSnapshot().trackerSeeders, 5);
  EXPECT_TRUE(core->makeSnapshot().announced);
}

TEST_F(SessionCoreTest, RatesAreHalvedEachSecond) {
  start();
  core->setMeta(payload.meta, false);
  core->select(0, {});
  core->addPeers(addresses(1));
  connect(0);
  feed(*world.dialled[0].peer, pieceFrame(0, 0, payload.block(0, 0, kBlock)));
  tickFor(1);
  EXPECT_EQ(core->makeSnapshot().downRate, kBlock / 2.0);
  tickFor(1);
  EXPECT_EQ(core->makeSnapshot().downRate, kBlock / 4.0);
}

TEST_F(SessionCoreTest, OnlyAStandInTitleGivesWayToTheName) {
  for (const auto& [title, expected] : {std::pair{QString(), QStringLiteral("Film")},
                                        std::pair{QString(40, u'a'), QStringLiteral("Film")},
                                        std::pair{QString(39, u'a'), QString(39, u'a')}}) {
    start({}, title);
    core->setMeta(payload.meta, false);
    EXPECT_EQ(core->title(), expected);
  }
}

TEST_F(SessionCoreTest, MetadataIsAskedOfSeveralPeersAndInterestIsDeclared) {
  payload = makeTorrent({{"a.mkv", 900 * 16}}, 16);
  start();
  core->addPeers(addresses(3));
  const std::string ask =
      "d1:md11:ut_metadatai3ee13:metadata_sizei" + std::to_string(payload.infoRaw.size()) + "ee";
  for (std::size_t i = 0; i < 3; ++i) {
    connect(i);
    feed(*world.dialled[i].peer, extended(0, i == 2 ? "de" : ask));
  }
  EXPECT_EQ(world.dialled[0].link->take().at(0).body, bytesOf("\x03"
                                                              "d8:msg_typei0e5:piecei0ee"));
  EXPECT_EQ(world.dialled[1].link->take().at(0).body, bytesOf("\x03"
                                                              "d8:msg_typei0e5:piecei1ee"));
  EXPECT_TRUE(world.dialled[2].link->take().empty()) << "it has no metadata to give";
  const auto raw = ByteSpan(payload.infoRaw);
  feed(*world.dialled[0].peer, extended(1, "d8:msg_typei1e5:piecei0ee", raw.first(16384)));
  EXPECT_EQ(world.metadataArrivals, 0);
  feed(*world.dialled[1].peer, extended(1, "d8:msg_typei1e5:piecei1ee", raw.subspan(16384)));
  EXPECT_EQ(world.metadataArrivals, 1);
  EXPECT_TRUE(core->makeSnapshot().hasMetadata());
  feed(*world.dialled[0].peer, extended(1, "d8:msg_typei0e5:piecei0ee"));
  EXPECT_EQ(world.dialled[0].link->take().back().body, bytesOf("\x03"
                                                               "d8:msg_typei2e5:piecei0ee"))
      << "metadata is refused to others also when it is there";
}

TEST_F(SessionCoreTest, AMutePeerDoesNotKeepTheMetadataFromTheSession) {
  start();
  core->addPeers(addresses(2));
  const std::string offer =
      "d1:md11:ut_metadatai3ee13:metadata_sizei" + std::to_string(payload.infoRaw.size()) + "ee";
  for (std::size_t i = 0; i < 2; ++i) {
    connect(i);
    feed(*world.dialled[i].peer, extended(0, offer));
  }
  EXPECT_EQ(world.dialled[0].link->take().size(), 1U);
  tickFor(8);
  EXPECT_TRUE(world.dialled[1].link->take().empty()) << "the first one has eight seconds";
  tickFor(1);
  EXPECT_TRUE(world.dialled[0].link->take().empty());
  EXPECT_EQ(world.dialled[1].link->take().size(), 1U) << "then it is the other's turn";
  tickFor(9);
  EXPECT_EQ(world.dialled[0].link->take().size(), 1U) << "and the first one's again";
}

TEST_F(SessionCoreTest, TheUploadBudgetPacesAndDropsRequests) {
  start();
  core->setMeta(payload.meta, false);
  core->select(0, {});
  core->addPeers(addresses(2));
  RecordingLink& seeder = connect(0);
  for (std::int64_t begin : {std::int64_t{0}, kBlock})
    feed(*world.dialled[0].peer,
         pieceFrame(0, static_cast<std::uint32_t>(begin), payload.block(0, begin, kBlock)));
  EXPECT_EQ(seeder.take().back().id, 4);
  world.dialled[1].peer->connected();
  feed(*world.dialled[1].peer, handshake(payload.infoHash));
  RecordingLink& leecher = *world.dialled[1].link;
  EXPECT_EQ(leecher.take().at(1).body, (ByteVector{std::byte{0x80}, std::byte{0}}))
      << "the bitfield shows the one piece";
  PeerConn& peer = *world.dialled[1].peer;
  feed(peer, frame(2));
  leecher.take();

  for (const auto& bad :
       {numbers({0, 0, 0}), numbers({0, 0, 32769}), numbers({1, 0, 100}),
        numbers({0, kBlock + 1, kBlock}), numbers({99, 0, 1}), numbers({0, 0xFFFFFFFF, 2})})
    feed(peer, frame(6, bad));
  EXPECT_TRUE(leecher.take().empty());
  feed(peer, frame(6, numbers({0, 0, 32768})));
  EXPECT_EQ(leecher.take().at(0).body.size(), 32776U) << "no limit: at once";

  core->setUploadLimit([] { return kBlock; });
  for (int i = 0; i < 9; ++i) feed(peer, frame(6, numbers({0, kBlock, kBlock})));
  EXPECT_EQ(leecher.take().size(), 1U);
  std::vector<std::size_t> perSecond;
  for (int second = 1; second <= 8; ++second) {
    world.clock.advance(1);
    core->sendDueBlocks();
    const auto sent = leecher.take();
    for (const auto& message : sent) EXPECT_EQ(ByteSpan(message.body).size(), kBlock + 8U);
    perSecond.push_back(sent.size());
  }
  EXPECT_EQ(perSecond, (std::vector<std::size_t>{1, 1, 1, 1, 1, 0, 0, 0}))
      << "what would leave later than five seconds ahead was dropped";
  EXPECT_EQ(core->makeSnapshot().uploaded, 32768 + 6 * kBlock);
}

TEST_F(SessionCoreTest, AClosedPeersBlocksGoToTheOthersAtOnce) {
  start();
  core->setMeta(payload.meta, false);
  core->select(0, {});
  core->addPeers(addresses(2));
  for (std::size_t i : {0U, 1U}) {
    connect(i);
    feed(*world.dialled[i].peer, frame(5, ByteVector{std::byte{0xFF}, std::byte{0xC0}}));
  }
  feed(*world.dialled[0].peer, frame(1));
  EXPECT_EQ(world.dialled[0].link->take().size(), 10U);
  feed(*world.dialled[1].peer, frame(1));
  EXPECT_EQ(world.dialled[1].link->take().size(), 10U);
  for (std::int64_t piece = 5; piece < 10; ++piece)
    for (const std::int64_t begin : {std::int64_t{0}, kBlock})
      feed(*world.dialled[1].peer,
           pieceFrame(static_cast<std::uint32_t>(piece), static_cast<std::uint32_t>(begin),
                      payload.block(piece, begin, kBlock)));
  world.dialled[1].link->take();
  world.dialled[0].peer->close();
  EXPECT_EQ(world.dialled[1].link->take().size(), 10U) << "without waiting for a tick";
}

TEST_F(SessionCoreTest, StoppedMeansStopped) {
  start();
  core->setMeta(payload.meta, false);
  core->select(0, {});
  core->addPeers(addresses(2));
  RecordingLink& link = connect(0);
  core->stop();
  EXPECT_EQ(link.closed, 1);
  const auto announced = world.announces.size();
  core->onTrackerResult({addresses(9), {}, {}});
  core->onAnnounceDone();
  tickFor(60);
  core->setPlayhead(5);
  EXPECT_EQ(world.dialled.size(), 2U);
  EXPECT_EQ(world.announces.size(), announced);
  EXPECT_EQ(core->makeSnapshot().knownPeers, 9);
  EXPECT_TRUE(QFile::exists(world.directory() + QStringLiteral("/payload.dat")));
}

TEST_F(SessionCoreTest, ANewSessionBelievesNothingOfAnOldPayload) {
  start();
  core->setMeta(payload.meta, false);
  core->storage().write(0, payload.bytes);
  core->stop();
  start();
  core->setMeta(payload.meta, false);
  core->select(0, {});
  EXPECT_FALSE(core->hasRange(0, 1));
  EXPECT_EQ(core->makeSnapshot().streamProgress, 0.0);
  ByteVector back(payload.bytes.size());
  EXPECT_TRUE(core->storage().read(0, back));
  EXPECT_TRUE(std::ranges::equal(back, payload.bytes)) << "what stood in the file is left standing";
}

TEST_F(SessionCoreTest, RangesAreThereWhenTheirPiecesAre) {
  start();
  EXPECT_FALSE(core->hasRange(0, 1)) << "before the metadata";
  core->setMeta(payload.meta, false);
  core->select(0, {});
  core->addPeers(addresses(1));
  connect(0);
  for (const std::int64_t begin : {std::int64_t{0}, kBlock})
    feed(*world.dialled[0].peer,
         pieceFrame(9, static_cast<std::uint32_t>(begin), payload.block(9, begin, kBlock)));
  const std::int64_t start = 18 * kBlock;
  EXPECT_TRUE(core->hasRange(start, 2 * kBlock));
  EXPECT_FALSE(core->hasRange(start, 0));
  EXPECT_FALSE(core->hasRange(start - 1, 2));
  EXPECT_FALSE(core->hasRange(start, 2 * kBlock + 1));
  EXPECT_FALSE(core->hasRange(-1, 1));
  EXPECT_FALSE(core->hasRange(start, std::numeric_limits<std::int64_t>::max()));
}

} // namespace
} // namespace vellum
