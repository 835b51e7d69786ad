#include "SwarmWorld.h"
#include <QDir>
#include <gtest/gtest.h>

namespace vellum::test {
namespace {

struct SessionCoreTest : testing::Test, SwarmWorld {
  void beginSmall(QStringList trackers = {}, QString title = {}) {
    begin(makeTorrent({20 * kBlock}, 2 * kBlock), std::move(trackers), std::move(title));
  }
  void deliverPiece(const Dialled& from, std::int64_t piece) const {
    for (const std::int64_t at : {std::int64_t{0}, kBlock}) deliver(from, piece, at);
  }
};

TEST_F(SessionCoreTest, DefaultsStandBehindTheGivenTrackersAndOnlyEightAreAsked) {
  const auto list = [](const char* letters) { return QString::fromLatin1(letters).split(u' '); };
  EXPECT_EQ(SessionCore::withDefaults(list("b x"), list("a b")), list("b x a"));
  beginSmall(list("1 2 3 4 5 6 7 8 9"));
  EXPECT_EQ(announces, std::vector{list("1 2 3 4 5 6 7 8")});
}

TEST_F(SessionCoreTest, APeerIdNamesTheProgramAndOnlyAStandInTitleGivesWayToTheName) {
  SystemRandom random;
  EXPECT_TRUE(toByteArray(SessionCore::makePeerId(random)).startsWith("-VL0100-"));
  for (const int length : {0, 39, 40, 41}) {
    beginSmall({}, QString(length, u'a'));
    core->setMeta(payload.meta, false);
    EXPECT_EQ(core->title(), length % 40 == 0 ? QStringLiteral("Film") : QString(length, u'a'));
  }
}

TEST_F(SessionCoreTest, AnnouncesEvery26SecondsAloneAndEvery121WithAPeer) {
  beginSmall();
  const auto announcesWithin = [&](int seconds, bool done = true) {
    std::vector<int> at;
    for (int second = 1; second <= seconds; ++second) {
      if (done) core->onAnnounceDone();
      const auto before = announces.size();
      tick();
      if (announces.size() > before) at.push_back(second);
    }
    return at;
  };
  EXPECT_EQ(announcesWithin(52), (std::vector<int>{26, 52}));
  join();
  EXPECT_EQ(announcesWithin(121), (std::vector<int>{121}));
  EXPECT_EQ(announcesWithin(300, false), std::vector<int>{}) << "none while one is under way";
}

TEST_F(SessionCoreTest, DialsAnAddressOnceAndNeverMoreThan45AtATimeAndSeedersNeverFall) {
  beginSmall();
  EXPECT_FALSE(core->makeSnapshot().trackerSeeders || core->makeSnapshot().announced);
  std::vector<PeerAddr> list{{QStringLiteral("10.9.9.9"), 0}};
  for (int i = 0; i < 46; ++i) list.push_back({QStringLiteral("10.0.0.%1").arg(i), 6881});
  list.push_back(list[1]);
  for (const auto& [told, shown] : {std::pair{0, 0}, {5, 5}, {3, 5}}) {
    core->onTrackerResult({list, told, {}});
    core->onTrackerResult({});
    EXPECT_EQ(core->makeSnapshot().trackerSeeders, shown);
  }
  EXPECT_TRUE(core->makeSnapshot().announced);
  EXPECT_EQ(dialled.size(), 45U) << "port 0 is passed over";
  EXPECT_EQ(core->waitingAddresses(), 1U);
  EXPECT_EQ(core->makeSnapshot().knownPeers, 47);
  dialled[3].peer->close();
  core->addPeers({});
  EXPECT_EQ(dialled.size(), 45U) << "a closed peer holds its place until the tick";
  tick();
  EXPECT_EQ(dialled.back().address, list[46]);
}

TEST(MetadataExchange, TheFirstAcceptableSizeDecidesAndEightMebibytesAreTheMost) {
  MetadataExchange exchange{{}};
  exchange.receive(0, ByteVector(1));
  EXPECT_EQ(exchange.heldPieces(), 0U) << "nobody was asked yet";
  for (const std::int64_t refused : {std::int64_t{0}, std::int64_t{-5}, 8 * kMiB, kMiB * kMiB})
    EXPECT_FALSE(exchange.nextRequest(refused, {})) << refused;
  EXPECT_EQ(exchange.nextRequest(8 * kMiB - 1, {}), 0);
  EXPECT_EQ(exchange.nextRequest(100, {}), 1);
  const ByteVector big(8 * kMiB); // peers may send what they like
  for (int round = 0; round < 3; ++round) {
    for (int again = 0; again < 2; ++again) exchange.receive(5, big);
    EXPECT_EQ(exchange.heldPieces(), 1U) << "a piece that comes again counts once";
    exchange.receive(9, ByteVector(1));
    EXPECT_EQ(exchange.heldPieces(), 0U);
  }
}

TEST_F(SessionCoreTest, MetadataIsAskedOfSeveralPeersAndOfTheMuteOneLast) {
  begin(makeTorrent({900 * 16}, 16));
  const auto raw = asBytes(payload.infoRaw);
  const auto offer = [&](int id) {
    return metadataOffer(static_cast<std::int64_t>(raw.size()), id);
  };
  const auto data = [](int piece, ByteSpan bytes) {
    return extended(1, "d8:msg_typei1e5:piecei" + std::to_string(piece) + "ee", bytes);
  };
  auto &mute = join(false), &good = join(false), &without = join(false);
  EXPECT_EQ(mute.on(offer(1)), "extended 1 d8:msg_typei0e5:piecei0ee");
  EXPECT_EQ(without.on(extended(0, "d13:metadata_sizei20000ee")), "");
  EXPECT_EQ(good.on(offer(3)), "extended 3 d8:msg_typei0e5:piecei1ee");
  EXPECT_EQ(good.on(data(1, raw.subspan(16384))), "") << "the mute one has eight seconds";
  tick(8);
  EXPECT_EQ(good.link->said(), "");
  tick();
  EXPECT_EQ(mute.link->said(), "");
  EXPECT_EQ(good.link->said(), "extended 3 d8:msg_typei0e5:piecei0ee") << "now another one's turn";
  tick(9);
  EXPECT_EQ(mute.link->said(), "extended 1 d8:msg_typei0e5:piecei0ee") << "and the first one's";
  ByteVector lie = toVector(raw.first(16384));
  lie[8000] ^= std::byte{1}; // within the pieces' hashes: a torrent, but not this one
  EXPECT_EQ(good.on(data(0, lie)), "extended 3 d8:msg_typei0e5:piecei0ee") << "all is begun again";
  EXPECT_EQ(good.on(data(1, raw.subspan(16384))), "");
  EXPECT_EQ(metadataArrivals, 0);
  EXPECT_EQ(good.on(data(0, raw.first(16384))), "");
  EXPECT_EQ(metadataArrivals, 1);
  EXPECT_EQ(core->makeSnapshot().name, QStringLiteral("Film"));
  EXPECT_EQ(good.on(offer(3)), "") << "what is known is asked for no more";
  good.on(data(0, raw.first(16384)));
  EXPECT_EQ(metadataArrivals, 1);
}

TEST_F(SessionCoreTest, ServesWhatItHasAtTheUploadLimitAndDropsWhatIsFiveSecondsAhead) {
  beginSmall();
  auto& seeder = join(false);
  know();
  deliverPiece(seeder, 0);
  auto& leecher = dialNext();
  EXPECT_TRUE(leecher.on(handshake(payload.infoHash)).ends_with("bitfield 8000, interested"));
  leecher.on(frame(2));
  const auto ask = [&](std::uint32_t piece, std::uint32_t begin, std::uint32_t length) {
    return leecher.on(frame(6, numbers({piece, begin, length})));
  };
  EXPECT_EQ(ask(0, 0, 0) + ask(0, 0, 32769) + ask(1, 0, 100) + ask(0, kBlock + 1, kBlock) +
                ask(99, 0, 1) + ask(0, 0xFFFFFFFF, 2),
            "");
  feed(*leecher.peer, frame(6, numbers({0, 0, 32768})));
  EXPECT_TRUE(std::ranges::equal(ByteSpan(leecher.link->take().at(0).body).subspan(8),
                                 payload.block(0, 0, 32768)));
  feed(*leecher.peer, frame(6, numbers({0, 32767, 1})));
  EXPECT_EQ(leecher.link->take().at(0).body[8], payload.block(0, 32767, 1)[0]);
  for (const double part : {0.5, 0.25}) {
    tick();
    EXPECT_EQ(core->makeSnapshot().upRate, 32769 * part);
    EXPECT_EQ(core->makeSnapshot().downRate, 32768 * part);
  }

  core->setUploadLimit([] { return kBlock; });
  EXPECT_EQ(ask(0, 0, kBlock), "piece 0 0 +16384");
  for (int i = 0; i < 8; ++i) EXPECT_EQ(ask(0, 0, kBlock), "");
  std::string perSecond;
  for (int second = 1; second <= 7; ++second) {
    EXPECT_EQ(wakeAt, second <= 5 ? 1 : 0) << second;
    wakeAt = 0;
    clock.advance(1);
    core->sendDueBlocks();
    perSecond += std::to_string(leecher.link->take().size());
  }
  EXPECT_EQ(perSecond, "1111100") << "what would leave later than five seconds ahead was dropped";

  core->setUploadLimit([] { return 1000; });
  for (int i = 0; i < 4500; ++i) ask(0, 0, 1);
  clock.advance(60);
  core->sendDueBlocks();
  EXPECT_EQ(leecher.link->take().size(), 4096U) << "no more than that wait, behind the first one";
  EXPECT_EQ(core->makeSnapshot().uploaded, 32769 + 6 * kBlock + 4097);
}

TEST_F(SessionCoreTest, AClosedPeersBlockGoesToTheOthersAtOnce) {
  begin(makeTorrent({kBlock}, kBlock));
  auto &one = join(), &other = join();
  know();
  EXPECT_EQ(one.asked() + "; " + other.asked(), "0.0; ");
  one.peer->close();
  EXPECT_EQ(other.asked(), "0.0") << "without waiting for a tick";
}

TEST_F(SessionCoreTest, StoppedMeansStopped) {
  beginSmall();
  auto& end = join();
  know();
  const auto order = core->scheduler().order();
  core->stop();
  core->onTrackerResult({{{QStringLiteral("10.0.0.9"), 1}}, {}, {}});
  core->onAnnounceDone();
  tick(200);
  core->setPlayhead(19 * kBlock);
  QDir(directory).removeRecursively();
  core->start();
  EXPECT_EQ(core->scheduler().order(), order);
  EXPECT_FALSE(core->storage().isOpen() || QDir(directory).exists());
  EXPECT_EQ(end.link->closed, 1);
  EXPECT_EQ(dialled.size() + announces.size(), 2U);
  EXPECT_EQ(core->makeSnapshot().knownPeers, 2);
}

TEST_F(SessionCoreTest, RangesAreThereWhenTheirPiecesAreAndNeverBecauseOfAnOldPayload) {
  beginSmall();
  core->setMeta(payload.meta, false);
  core->storage().write(0, payload.bytes());
  beginSmall();
  EXPECT_FALSE(core->hasRange(0, 1)) << "before the metadata";
  know();
  EXPECT_FALSE(core->hasRange(0, 1));
  EXPECT_TRUE(holdsThePayload()) << "what stood in the file is left standing";
  auto& end = join(false);
  for (const std::int64_t piece : {0, 1, 5, 9}) deliverPiece(end, piece);
  const std::int64_t piece = 2 * kBlock;
  const std::tuple<std::int64_t, std::int64_t, bool> ranges[] = {{0, 1, true},
                                                                 {0, 2 * piece, true},
                                                                 {5 * piece, piece, true},
                                                                 {9 * piece, piece, true},
                                                                 {-1, 1, false},
                                                                 {0, 2 * piece + 1, false},
                                                                 {5 * piece - 1, 2, false},
                                                                 {5 * piece, piece + 1, false},
                                                                 {9 * piece, 0, false},
                                                                 {9 * piece, piece + 1, false}};
  for (const auto& [at, length, there] : ranges)
    EXPECT_EQ(core->hasRange(at, length), there) << at << ' ' << length;
  EXPECT_FALSE(core->hasRange(9 * piece, std::numeric_limits<std::int64_t>::max()));
}

} // namespace
} // namespace vellum::test
