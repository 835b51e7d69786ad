// Which blocks a session asks of whom, and what becomes of them: over peers that a test plays.
#include "SwarmWorld.h"
#include <csignal>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sys/resource.h>

namespace vellum::test {
namespace {

struct SchedulerTest : testing::Test, SwarmWorld {
  PieceScheduler& scheduler() { return core->scheduler(); }
  // A session that knows a torrent of files of these sizes, of which nothing else is true.
  void beginMadeUp(std::int64_t pieceLength, std::size_t hashes,
                   const std::vector<std::int64_t>& sizes, const std::vector<int>& subtitles = {}) {
    TorrentMeta meta{QStringLiteral("Film"), pieceLength, std::vector<Hash20>(hashes), {}, {}, 0};
    for (const auto size : sizes) {
      meta.files.push_back({QString::number(size), size});
      meta.offsets.push_back(meta.total);
      meta.total += size;
    }
    begin({});
    payload.meta = std::make_shared<const TorrentMeta>(std::move(meta));
    know(subtitles);
  }
};

TEST_F(SchedulerTest, TenBlocksAreInFlightAndEachDeliveryBringsOneMore) {
  begin(makeTorrent({40 * kBlock}, 4 * kBlock));
  core->select(0, {});
  auto &one = join(), &other = join(), &choking = join(false);
  core->setMeta(payload.meta, false);
  core->setPlayhead(5);
  for (const int noFile : {-1, 1}) core->select(noFile, {});
  tick();
  EXPECT_EQ(one.asked(), "") << "nothing is selected yet";
  EXPECT_EQ(core->makeSnapshot().streamProgress, 0.0);
  EXPECT_EQ(choking.on(frame(5, ByteVector(2, std::byte{0xFF}))), "");
  core->select(0, {});
  EXPECT_EQ(one.asked(), "0.0 0.1 0.2 0.3 1.0 1.1 1.2 1.3 2.0 2.1");
  EXPECT_EQ(other.asked(), "2.2 2.3 3.0 3.1 3.2 3.3 4.0 4.1 4.2 4.3");
  EXPECT_EQ(choking.asked(), "");
  deliver(one, 0, kBlock);
  EXPECT_EQ(one.asked(), "5.0");
  feed(*one.peer, frame(0));
  deliver(other, 2, 2 * kBlock);
  EXPECT_EQ(other.asked(), "0.0") << "what was asked of a peer that chokes is free at once";
  deliver(other, 2, 2 * kBlock);
  deliver(other, 0, 0);
  EXPECT_EQ(other.asked(), "0.2") << "what is stored is asked for no more";
  deliver(choking, 2, 3 * kBlock);
  deliver(other, 2, 3 * kBlock);
  EXPECT_EQ(other.asked(), "0.3") << "a block that another brought first leaves its place as well";
}

TEST_F(SchedulerTest, ABlockIsFreeAgainAtFifteenSecondsAndForgottenAfterTwenty) {
  begin(makeTorrent({10 * kBlock}, 4 * kBlock));
  auto& mute = join();
  know();
  const char* const all = "0.0 0.1 0.2 0.3 1.0 1.1 1.2 1.3 2.0 2.1";
  EXPECT_EQ(mute.asked(), all);
  clock.advance(14.99);
  auto& other = join();
  EXPECT_EQ(other.asked(), "");
  tick(0.01);
  EXPECT_EQ(other.asked(), all);
  EXPECT_EQ(mute.asked(), "");
  tick(20);
  EXPECT_EQ(mute.asked() + other.asked(), "") << "exactly twenty seconds are not more";
  tick(0.001);
  EXPECT_EQ(mute.asked(), all) << "the record dies for all peers at once";
}

TEST_F(SchedulerTest, OnlyExactBlocksOfMissingPiecesAreTaken) {
  begin(makeTorrent({2 * kBlock + 100}, 2 * kBlock));
  auto& end = join();
  know();
  EXPECT_EQ(end.asked(), "0.0 0.1 1.0+100") << "a short last piece";
  const std::tuple<std::uint32_t, std::uint32_t, std::size_t> refused[] = {
      {0, 100, kBlock}, {0, 0, 1},     {0, 2 * kBlock, kBlock},          {2, 0, kBlock},
      {1, 0, 101},      {1, 0, 99},    {0xFFFFFFFF, 0xFFFFC000, kBlock}, {1, kBlock, 100},
      {0, kBlock, 100}, {0, 1, kBlock}};
  for (const auto& [piece, begin, length] : refused)
    EXPECT_EQ(end.on(pieceFrame(piece, begin, ByteVector(length))), "") << piece << ' ' << begin;
  EXPECT_EQ(core->makeSnapshot().downloaded, 0);
  deliver(end, 1, 0, 100);
  deliver(end, 1, 0, 100);
  EXPECT_EQ(end.link->said(), "have 1");
  EXPECT_EQ(core->makeSnapshot().downloaded, 100) << "nothing is taken of a piece that is had";

  deliver(end, 0, kBlock);
  EXPECT_EQ(end.on(pieceFrame(0, 0, ByteVector(kBlock))),
            "request 0 0 16384, request 0 16384 16384")
      << "a piece with a wrong hash is fetched anew, at once and from its beginning";
  EXPECT_EQ(scheduler().piecesInAssembly(), 0U);
  EXPECT_FALSE(core->makeSnapshot().complete);
}

TEST_F(SchedulerTest, SubtitlesFollowTheTailAndASeekMovesTheWindow) {
  // A film of 32 pieces; subtitles: nothing within a piece, a whole one, a byte that begins one.
  beginMadeUp(kMiB, 36, {32 * kMiB, kMiB / 2, 0, kMiB / 2, kMiB, kMiB, 1}, {-1, 7, 2, 4, 6});
  EXPECT_EQ(scheduler().order(), (PieceOrder{{0, 7}, {29, 31}, {33, 33}, {35, 35}, {8, 28}}));
  core->setPlayhead(20 * kMiB);
  core->setPlayhead(30 * kMiB); // a look at the tail is no seek
  EXPECT_EQ(scheduler().order().front(), (PieceRun{20, 27}));
  auto& end = join();
  EXPECT_TRUE(end.asked().starts_with("20.0 20.1"));
  end.peer->inflight().clear(); // there would be room
  core->setPlayhead(20 * kMiB);
  EXPECT_EQ(end.asked(), "") << "the same place twice pumps nobody";
  core->setPlayhead(3 * kMiB);
  EXPECT_TRUE(end.asked().starts_with("3.0 3.1"));

  core->select(5, {0});
  EXPECT_EQ(scheduler().order(), (PieceOrder{{34, 34}, {0, 31}})) << "the first file after it";
  core->select(2, {});
  EXPECT_TRUE(core->makeSnapshot().streamReady) << "an empty file has nothing to wait for";
}

TEST_F(SchedulerTest, ReadyWithWindowAndTailAndCompleteWithAllOfWhatIsSelected) {
  begin(makeTorrent({12 * kMiB, kMiB}, kMiB));
  auto& end = join(false);
  know();
  know(); // chosen twice: what is missing is counted once
  std::string seen;
  for (const std::int64_t piece : {12, 9, 10, 11, 0, 1, 2, 3, 4, 5, 6, 7, 8}) {
    for (std::int64_t begin = 0; begin < kMiB; begin += kBlock) deliver(end, piece, begin);
    const auto now = core->makeSnapshot();
    seen += now.complete ? 'C' : now.streamReady ? 'r' : '.';
    seen += std::to_string(milestones);
  }
  EXPECT_EQ(seen, ".0.0.0.0.0.0.0.0.0.0.0r1C2");
  EXPECT_EQ(core->makeSnapshot().streamProgress, 1.0);
  core->setMeta(payload.meta, false);
  know();
  EXPECT_FALSE(core->makeSnapshot().complete) << "believed is what came in this session";
  EXPECT_EQ(milestones, 3) << "told at once when it is chosen";
}

TEST_F(SchedulerTest, ChoosingAnotherFileAndTheFirstOneAgainAsksForWhatIsMissing) {
  begin(makeTorrent({kBlock, 2 * kBlock}, kBlock));
  auto& end = join();
  know();
  clock.advance(9);
  deliver(end, 0, 0);
  EXPECT_EQ(end.link->said(), "request 0 0 16384, have 0");
  clock.advance(5);
  EXPECT_EQ(core->makeSnapshot().secondsSinceProgress, 5);
  core->select(1, {});
  EXPECT_EQ(core->makeSnapshot().secondsSinceProgress, 0);
  EXPECT_FALSE(core->makeSnapshot().complete);
  EXPECT_EQ(end.asked(), "1.0 2.0");
  core->select(0, {});
  EXPECT_TRUE(core->makeSnapshot().complete);
  EXPECT_EQ(end.asked(), "");
}

// Pieces of two blocks and a half, 614 of which fit into the 24 MiB; the last block comes before
// the one in the middle.
TEST_F(SchedulerTest, WhatDoesNotFitIntoMemoryWaitsInThePayloadFile) {
  constexpr std::int64_t kPiece = kBlock * 5 / 2;
  begin(makeTorrent({1101 * kPiece}, kPiece));
  auto& end = join(false);
  know();
  const auto half = [&](std::int64_t piece, bool second) {
    if (second) deliver(end, piece, 2 * kBlock, kBlock / 2);
    deliver(end, piece, second ? kBlock : 0);
  };
  for (const bool second : {false, true}) half(0, second);
  EXPECT_EQ(scheduler().assemblyBytes(), 0);
  for (std::int64_t piece = 1100; piece > 0; --piece) {
    half(piece, piece % 2 == 0);
    ASSERT_EQ(scheduler().assemblyBytes(), std::min<std::int64_t>(1101 - piece, 614) * kPiece);
  }
  EXPECT_EQ(scheduler().piecesInAssembly(), 1100U);
  for (std::int64_t piece = 1; piece <= 1100; ++piece) half(piece, piece % 2 == 1);
  EXPECT_TRUE(core->makeSnapshot().complete);
  EXPECT_TRUE(holdsThePayload());
  EXPECT_EQ(scheduler().assemblyBytes(), 0);
}

TEST_F(SchedulerTest, OfPiecesOnDiskTheOldestBeyond8192AreForgotten) {
  beginMadeUp(kBlock + 1, 9800, {9800 * (kBlock + 1)});
  auto& end = join(false);
  for (std::uint32_t piece = 0; piece < 9800; ++piece)
    feed(*end.peer, pieceFrame(piece, kBlock, ByteVector(1)));
  EXPECT_EQ(scheduler().assemblyBytes() / (kBlock + 1), 1535);
  EXPECT_EQ(scheduler().piecesInAssembly(), 1535U + 8192);
}

// The limit on the size of a file stands for a disk without room: writes beyond it fail.
TEST_F(SchedulerTest, ADiskWithoutRoomCostsNothingButTheData) {
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const rlimit narrow{100, before.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &narrow);
  beginMadeUp(24 * kKiB, 1100, {1100 * 24 * kKiB});
  for (std::uint32_t piece = 0; piece < 1100; ++piece)
    feed(*(piece == 0 ? join(false) : dialled[0]).peer, pieceFrame(piece, 0, ByteVector(kBlock)));
  EXPECT_EQ(scheduler().piecesInAssembly(), 1099U) << "nothing is given away a second time";

  constexpr std::int64_t kLarge = 25 * kMiB;
  begin(makeTorrent({kLarge}, kLarge));
  auto& end = join();
  know();
  end.asked();
  deliver(end, 0, 0);
  EXPECT_EQ(end.asked(), "0.0") << "what could not be put on disk is asked for again";
  for (std::int64_t begin = 0; begin < kLarge; begin += kBlock) deliver(end, 0, begin);
  ::setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_TRUE(core->makeSnapshot().complete) << "verified, whatever the disk says";
  ByteVector onDisk(101);
  EXPECT_EQ(core->storage().readSome(0, onDisk), 100U) << "as far as it goes";
}

// A whole swarm on virtual time: seeders with seeded faults, and one session that must get the
// file through all of them.
TEST(SimulatedSwarm, TwoHonestSeedersAmongSixMoodyOnesAreEnough) {
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    SwarmWorld world;
    world.begin(makeTorrent({90 * kBlock + 77, 3000}, 4 * kBlock));
    world.know({1});
    std::vector<std::deque<Message>> asked(8); // of each, and not yet answered
    for (std::size_t i = 0; i < asked.size(); ++i) world.join();
    for (int tenths = 0; tenths < 3000 && !world.core->makeSnapshot().complete; ++tenths) {
      world.clock.advance(0.1);
      for (std::size_t i = 0; i < asked.size(); ++i) {
        auto& [address, peer, link] = world.dialled[i];
        for (auto& message : link->take())
          if (message.id == 6) asked[i].push_back(std::move(message));
        const bool honest = i < 2;
        const auto mood = random() % 200;
        if (!honest && mood == 0) peer->close();
        if (!honest && mood == 1) {
          asked[i].clear();
          feed(*peer, frame(0));
          feed(*peer, frame(1));
        }
        if (mood < 100 || asked[i].empty()) continue; // slow
        const auto piece = asked[i].front().number(0), begin = asked[i].front().number(1);
        ByteVector data = toVector(world.payload.block(piece, begin, asked[i].front().number(2)));
        asked[i].pop_front();
        if (!honest && random() % 50 == 0) data[0] ^= std::byte{1};
        feed(*peer, pieceFrame(piece, begin, data));
        ASSERT_LE(peer->inflight().size(), 10U);
      }
      if (tenths % 10 == 9) world.core->tick();
      if (random() % 40 == 0)
        world.core->setPlayhead(static_cast<std::int64_t>(random() % (90 * kBlock)));
    }
    ASSERT_TRUE(world.core->makeSnapshot().complete) << "not complete after 300 s";
    EXPECT_TRUE(world.holdsThePayload());
  }
}

TEST(RequestTable, BehavesAsAMapThroughCollisionsErasuresAndGrowth) {
  std::mt19937 random(7);
  RequestTable table;
  std::map<BlockKey, TimePoint> model;
  for (int step = 0; step < 60'000; ++step) {
    // Few pieces and blocks, so that keys come again and neighbours collide.
    const BlockKey key = blockKey(random() % 40, random() % (step < 30'000 ? 8 : 64));
    const TimePoint when{std::chrono::seconds(random() % 100)};
    if (random() % 3 == 0) {
      table.erase(key);
      model.erase(key);
    } else {
      table.set(key, when);
      model[key] = when;
    }
    const BlockKey probe = blockKey(random() % 40, random() % 64);
    const auto expected = model.find(probe);
    const auto found = table.find(probe);
    ASSERT_EQ(found.has_value(), expected != model.end()) << step;
    if (found) ASSERT_EQ(*found, expected->second) << step;
    ASSERT_EQ(table.size(), model.size()) << step;
  }
}

} // namespace
} // namespace vellum::test
