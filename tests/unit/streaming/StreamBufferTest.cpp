#include "streaming/StreamBuffer.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <set>

namespace vellum {
namespace {

constexpr std::int64_t kMiB = 0x100000;

StreamBuffer reference() {
  StreamBuffer buffer;
  buffer.fileOffset = 5500000;
  buffer.fileLength = 100 * kMiB;
  buffer.pieceLength = kMiB;
  buffer.pieceCount = 120;
  return buffer;
}

// The order as five lists of indexes, each index at its first place.
std::vector<std::int64_t> naiveOrder(const StreamBuffer& buffer) {
  PieceOrder runs = buffer.extraPieces;
  runs.insert(runs.begin(), {buffer.windowPieces(), buffer.tailPieces()});
  runs.push_back(buffer.pieces(buffer.playhead, buffer.fileLength - buffer.playhead));
  runs.push_back(buffer.pieces(0, buffer.fileLength));
  std::vector<std::int64_t> order;
  std::set<std::int64_t> seen;
  for (const std::int64_t piece : expand(runs))
    if (seen.insert(piece).second) order.push_back(piece);
  return order;
}

TEST(StreamBuffer, RunsExpandToTheOrderOfTheFiveLists) {
  std::mt19937_64 random(3);
  const std::int64_t lengths[] = {0, 1, 100'000, 3 * kMiB, 6 * kMiB, 8 * kMiB + 1, 40'000'000};
  const auto below = [&](std::int64_t end) {
    return static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(end));
  };
  for (int round = 0; round < 3000; ++round) {
    StreamBuffer buffer;
    buffer.pieceLength = std::int64_t{16384} << below(8);
    buffer.fileLength = lengths[below(std::ssize(lengths))];
    buffer.fileOffset = below(5'000'000);
    const std::int64_t end = buffer.fileOffset + buffer.fileLength;
    buffer.pieceCount = (end + below(3'000'000)) / buffer.pieceLength + 1;
    for (auto extras = below(6); extras > 0; --extras) {
      const auto first = below(buffer.pieceCount);
      buffer.extraPieces.push_back({first, std::min(first + below(4), buffer.pieceCount - 1)});
    }
    buffer.playhead = buffer.clamped(below(50'000'000));
    const PieceOrder order = buffer.priorityOrder();
    ASSERT_EQ(expand(order), naiveOrder(buffer)) << "round " << round;
    for (std::size_t i = 1; i < order.size(); ++i)
      ASSERT_NE(order[i - 1].last + 1, order[i].first) << "runs that are one, round " << round;
  }
}

TEST(StreamBuffer, PiecesOfHostileRangesStayInTheFile) {
  StreamBuffer buffer = reference();
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  EXPECT_TRUE(buffer.pieces(0, 0).empty());
  EXPECT_TRUE(buffer.pieces(0, -5).empty());
  EXPECT_EQ(buffer.pieces(most, most), (PieceRun{105, 105}));
  EXPECT_EQ(buffer.pieces(0, most), (PieceRun{5, 105}));
  EXPECT_EQ(buffer.pieces(-most, most), (PieceRun{5, 5}));
  buffer.pieceCount = 100; // fewer than the file would need
  EXPECT_EQ(buffer.pieces(0, most), (PieceRun{5, 99}));
}

TEST(StreamBuffer, ReadinessIsTheWindowAndTheTailAtThePlayhead) {
  StreamBuffer buffer = reference();
  EXPECT_EQ(buffer.priorityOrder(), (PieceOrder{{5, 13}, {102, 105}, {14, 101}}));
  const auto progress = [&](std::int64_t had) {
    return buffer.progress([&](std::int64_t piece) { return piece >= 7 && piece <= had; });
  };
  EXPECT_EQ(progress(104), 10.0 / 13.0);
  buffer.playhead = 60 * kMiB;
  EXPECT_EQ(progress(104), 12.0 / 13.0);
  EXPECT_EQ(progress(105), 1.0);
  buffer.fileLength = 0;
  EXPECT_EQ(progress(0), 1.0) << "an empty file needs nothing";
  buffer.fileLength = 6 * kMiB;
  EXPECT_FALSE(buffer.isTailProbe(6 * kMiB - 1));
  buffer.fileLength = 6 * kMiB + 1;
  EXPECT_TRUE(buffer.isTailProbe(6 * kMiB));
  EXPECT_FALSE(buffer.isTailProbe(3 * kMiB)) << "a seek";
}

} // namespace
} // namespace vellum
