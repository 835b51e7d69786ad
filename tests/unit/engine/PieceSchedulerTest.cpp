#include "engine/PieceScheduler.h"
#include "MadeTorrent.h"
#include "support/ManualClock.h"
#include <cstring>
#include <gtest/gtest.h>

namespace vellum {
namespace {

using test::makeTorrent;

struct FakePeer final : PieceScheduler::Peer {
  struct Request {
    std::int64_t piece, begin, length;
    bool operator==(const Request&) const = default;
  };
  bool isHandshaken() const override { return true; }
  bool isChoked() const override { return choked; }
  bool hasPiece(std::int64_t piece) const override { return piece >= firstPiece; }
  InflightSet& inflight() override { return set; }
  void declareInterest() override {}
  void sendRequest(std::int64_t piece, std::int64_t begin, std::int64_t length) override {
    requests.push_back({piece, begin, length});
  }
  void sendHave(std::int64_t piece) override { haves.push_back(piece); }

  bool choked = false;
  std::int64_t firstPiece = 0;
  InflightSet set;
  std::vector<Request> requests;
  std::vector<std::int64_t> haves;
};

struct MemoryDisk final : PieceStore {
  bool write(std::int64_t offset, ByteSpan data) override {
    ++writes;
    if (broken) return false;
    std::memcpy(bytes.data() + offset, data.data(), data.size());
    return true;
  }
  bool read(std::int64_t offset, std::span<std::byte> into) override {
    std::memcpy(into.data(), bytes.data() + offset, into.size());
    return !broken;
  }
  ByteVector bytes;
  int writes = 0;
  bool broken = false;
};

struct SchedulerTest : testing::Test {
  test::ManualClock clock;
  MemoryDisk disk;
  std::vector<FakePeer> peers = std::vector<FakePeer>(2);
  test::MadeTorrent payload;
  std::unique_ptr<PieceScheduler> scheduler;

  void start(const std::vector<test::MadeFile>& files, std::int64_t pieceLength) {
    payload = makeTorrent(files, pieceLength);
    disk.bytes.assign(payload.bytes.size(), std::byte{0});
    scheduler = std::make_unique<PieceScheduler>(
        clock, disk, [this](const std::function<void(PieceScheduler::Peer&)>& visit) {
          for (auto& peer : peers) visit(peer);
        });
    scheduler->setMeta(payload.meta);
  }
  void deliver(FakePeer& peer, const FakePeer::Request& request) {
    scheduler->receiveBlock(peer, static_cast<std::uint32_t>(request.piece),
                            static_cast<std::uint32_t>(request.begin),
                            payload.block(request.piece, request.begin, request.length));
  }
  std::vector<FakePeer::Request> taken(FakePeer& peer) { return std::exchange(peer.requests, {}); }
};

constexpr std::int64_t kBlock = 16384;

TEST_F(SchedulerTest, NothingIsAskedForBeforeASelection) {
  start({{"a.mkv", 10 * kBlock}}, kBlock);
  scheduler->pump(peers[0]);
  EXPECT_TRUE(peers[0].requests.empty());
  EXPECT_FALSE(scheduler->complete());
  scheduler->select(1, {});
  EXPECT_EQ(scheduler->streamFile(), -1) << "an index out of range selects nothing";
}

TEST_F(SchedulerTest, TenBlocksAreInFlightAndEachDeliveryBringsOneMore) {
  start({{"a.mkv", 40 * kBlock}}, 4 * kBlock);
  scheduler->select(0, {});
  auto first = taken(peers[0]);
  ASSERT_EQ(first.size(), 10U);
  EXPECT_EQ(first[0], (FakePeer::Request{0, 0, kBlock}));
  EXPECT_EQ(first[9], (FakePeer::Request{2, kBlock, kBlock}));
  EXPECT_EQ(taken(peers[1])[0], (FakePeer::Request{2, 2 * kBlock, kBlock}))
      << "the next peer goes on where the first one stopped";
  deliver(peers[0], first[0]);
  EXPECT_EQ(taken(peers[0]), (std::vector<FakePeer::Request>{{5, 0, kBlock}}));
  EXPECT_EQ(scheduler->downloaded(), kBlock);
}

TEST_F(SchedulerTest, ABlockIsFreeAgainAtFifteenSecondsAndForgottenAfterTwenty) {
  start({{"a.mkv", 4 * kBlock}}, 4 * kBlock);
  peers[1].choked = true;
  scheduler->select(0, {});
  ASSERT_EQ(taken(peers[0]).size(), 4U);
  peers[1].choked = false;
  clock.advance(14.9);
  scheduler->pump(peers[1]);
  EXPECT_TRUE(peers[1].requests.empty());
  clock.advance(0.1);
  scheduler->pump(peers[1]);
  EXPECT_EQ(taken(peers[1]).size(), 4U);
  clock.advance(20.0);
  scheduler->sweep();
  EXPECT_EQ(peers[0].set.size(), 4U) << "exactly twenty seconds are not more";
  clock.advance(0.001);
  scheduler->sweep();
  EXPECT_EQ(peers[0].set.size(), 0U) << "the record dies for all peers at once";
  EXPECT_EQ(peers[1].set.size(), 0U);
}

TEST_F(SchedulerTest, ChokeAndCloseFreeBlocksAtOnceAndKeepWhatIsStored) {
  start({{"a.mkv", 4 * kBlock}}, 4 * kBlock);
  scheduler->select(0, {});
  const auto asked = taken(peers[0]);
  deliver(peers[0], asked[1]);
  peers[0].choked = true;
  EXPECT_TRUE(scheduler->release(peers[0]));
  EXPECT_FALSE(scheduler->release(peers[0]));
  scheduler->pump(peers[1]);
  EXPECT_EQ(taken(peers[1]), (std::vector<FakePeer::Request>{asked[0], asked[2], asked[3]}));
}

TEST_F(SchedulerTest, OnlyExactBlocksOfMissingPiecesAreTaken) {
  start({{"a.mkv", 2 * kBlock + 100}}, 2 * kBlock);
  scheduler->select(0, {});
  EXPECT_EQ(taken(peers[0])[2], (FakePeer::Request{1, 0, 100})) << "a short last piece";
  const ByteVector data(kBlock);
  const auto try_ = [&](std::uint32_t piece, std::uint32_t begin, std::size_t size) {
    scheduler->receiveBlock(peers[0], piece, begin, ByteSpan(data).first(size));
  };
  try_(0, 100, kBlock);
  try_(0, 0, 1);
  try_(0, 2 * kBlock, kBlock);
  try_(2, 0, kBlock);
  try_(1, 0, 101);
  try_(1, kBlock, 100);
  try_(0xFFFFFFFF, 0xFFFFC000, kBlock);
  EXPECT_EQ(scheduler->downloaded(), 0);
  EXPECT_TRUE(peers[0].requests.empty());
  deliver(peers[0], {1, 0, 100});
  EXPECT_EQ(peers[1].haves, (std::vector<std::int64_t>{1})) << "completes at once";
  deliver(peers[1], {1, 0, 100});
  EXPECT_EQ(scheduler->downloaded(), 100) << "nothing is taken of a piece that is had";
}

TEST_F(SchedulerTest, APieceWithAWrongHashIsFetchedAnew) {
  start({{"a.mkv", 4 * kBlock}}, 2 * kBlock);
  peers[1].choked = true;
  scheduler->select(0, {});
  taken(peers[0]);
  const ByteVector wrong(kBlock, std::byte{1});
  deliver(peers[0], {0, kBlock, kBlock});
  scheduler->receiveBlock(peers[0], 0, 0, wrong);
  EXPECT_FALSE(scheduler->have().has(0));
  EXPECT_EQ(scheduler->piecesInAssembly(), 0U);
  EXPECT_EQ(disk.writes, 0);
  EXPECT_TRUE(peers[1].haves.empty());
  EXPECT_EQ(taken(peers[0]), (std::vector<FakePeer::Request>{{0, 0, kBlock}, {0, kBlock, kBlock}}));
  for (const std::int64_t piece : {0, 1})
    for (const std::int64_t block : {1, 0}) deliver(peers[0], {piece, block * kBlock, kBlock});
  EXPECT_TRUE(scheduler->complete());
  EXPECT_TRUE(std::ranges::equal(disk.bytes, payload.bytes));
  EXPECT_EQ(disk.writes, 2) << "each piece once";
}

TEST_F(SchedulerTest, SubtitlesFollowTheTailAndASeekMovesTheWindow) {
  // 32 pieces of film, 1 of sample, 1 of subtitles.
  start({{"a.mkv", 32 * kMiB}, {"sample.mkv", kMiB}, {"a.srt", 1000}}, kMiB);
  for (auto& peer : peers) peer.choked = true;
  scheduler->select(0, {2, 7, -1});
  EXPECT_EQ(scheduler->order(), (PieceOrder{{0, 7}, {29, 31}, {33, 33}, {8, 28}}));
  peers[0].choked = false;
  scheduler->setPlayhead(29 * kMiB);
  EXPECT_TRUE(peers[0].requests.empty()) << "a look at the tail is no seek";
  scheduler->setPlayhead(20 * kMiB);
  EXPECT_EQ(taken(peers[0])[0].piece, 20);
  clock.advance(16);
  scheduler->setPlayhead(20 * kMiB);
  EXPECT_TRUE(peers[0].requests.empty()) << "the same place twice pumps nobody";
}

TEST_F(SchedulerTest, ReselectingWhatIsHadAsksForNothing) {
  start({{"a.mkv", kBlock}, {"b.mkv", kBlock}}, kBlock);
  scheduler->select(0, {});
  deliver(peers[0], {0, 0, kBlock});
  EXPECT_TRUE(scheduler->complete());
  taken(peers[0]);
  scheduler->select(0, {});
  EXPECT_TRUE(scheduler->complete());
  EXPECT_EQ(scheduler->streamProgress(), 1.0);
  EXPECT_TRUE(peers[0].requests.empty());
  scheduler->select(1, {});
  EXPECT_FALSE(scheduler->complete());
}

TEST_F(SchedulerTest, ABlockOfEveryPieceDoesNotFillTheMemory) {
  const std::int64_t pieceLength = kMiB;
  start({{"a.mkv", 64 * kMiB}}, pieceLength);
  scheduler->select(0, {});
  for (std::int64_t piece = 0; piece < 64; ++piece) {
    deliver(peers[0], {piece, kBlock * (piece % 3), kBlock});
    ASSERT_LE(scheduler->assemblyBytes(), PieceScheduler::kAssemblyBudget);
  }
  EXPECT_EQ(scheduler->piecesInAssembly(), 64U) << "all of them are kept, most on disk";
  for (std::int64_t piece = 0; piece < 64; ++piece)
    for (std::int64_t begin = pieceLength - kBlock; begin >= 0; begin -= kBlock)
      deliver(peers[1], {piece, begin, kBlock});
  EXPECT_TRUE(scheduler->complete());
  EXPECT_TRUE(std::ranges::equal(disk.bytes, payload.bytes));
  EXPECT_EQ(scheduler->downloaded(), 64 * kMiB);
}

TEST_F(SchedulerTest, ADeadDiskCostsNothingButTheData) {
  disk.broken = true;
  for (const std::int64_t pieceLength : {kMiB, 32 * kMiB}) { // the latter is too large for memory
    start({{"a.mkv", 64 * kMiB}}, pieceLength);
    scheduler->select(0, {});
    const std::int64_t pieces = 64 * kMiB / pieceLength;
    for (std::int64_t piece = 0; piece < pieces; ++piece) deliver(peers[0], {piece, 0, kBlock});
    for (std::int64_t begin = 0; begin < pieceLength; begin += kBlock)
      deliver(peers[0], {pieces - 1, begin, kBlock});
    deliver(peers[0], {pieces - 1, 0, kBlock}); // what could not be spilled is fetched anew
    EXPECT_TRUE(scheduler->have().has(pieces - 1)) << "verified, whatever the disk says";
  }
}

} // namespace
} // namespace vellum
