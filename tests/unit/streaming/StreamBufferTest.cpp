#include "streaming/StreamBuffer.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <set>

namespace vellum {
namespace {

StreamBuffer reference() {
  StreamBuffer buffer;
  buffer.fileOffset = 5500000;
  buffer.fileLength = 0x6400000;
  buffer.pieceLength = 0x100000;
  buffer.pieceCount = 120;
  return buffer;
}

// The order as five lists of indexes, each index at its first place.
std::vector<std::int64_t> naiveOrder(const StreamBuffer& buffer) {
  std::vector<std::int64_t> order;
  std::set<std::int64_t> seen;
  const auto add = [&](std::int64_t piece) {
    if (seen.insert(piece).second) order.push_back(piece);
  };
  const auto addBytes = [&](std::int64_t start, std::int64_t length) {
    if (length < 1 || buffer.fileLength < 1) return;
    const std::int64_t low = std::clamp<std::int64_t>(start, 0, buffer.fileLength - 1);
    const std::int64_t high = std::max(low, std::min(buffer.fileLength, start + length) - 1);
    const std::int64_t last =
        std::min((buffer.fileOffset + high) / buffer.pieceLength, buffer.pieceCount - 1);
    for (auto piece = (buffer.fileOffset + low) / buffer.pieceLength; piece <= last; ++piece)
      add(piece);
  };
  addBytes(buffer.playhead, 0x800000);
  addBytes(std::max<std::int64_t>(buffer.fileLength - 0x300000, 0), 0x300000);
  for (const auto piece : expand(buffer.extraPieces)) add(piece);
  addBytes(buffer.playhead, buffer.fileLength - buffer.playhead);
  addBytes(0, buffer.fileLength);
  return order;
}

TEST(StreamBuffer, RunsExpandToTheOrderOfTheFiveLists) {
  std::mt19937_64 random(3);
  const std::int64_t lengths[] = {0, 1, 100'000, 0x300000, 0x600000, 0x800001, 40'000'000};
  for (int round = 0; round < 3000; ++round) {
    StreamBuffer buffer;
    buffer.pieceLength = std::int64_t{16384} << random() % 8;
    buffer.fileLength = lengths[random() % std::size(lengths)];
    buffer.fileOffset = static_cast<std::int64_t>(random() % 5'000'000);
    buffer.pieceCount =
        (buffer.fileOffset + buffer.fileLength + 3'000'000) / buffer.pieceLength + 1;
    for (auto extras = random() % 6; extras > 0; --extras) {
      const auto first =
          static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(buffer.pieceCount));
      const auto last = first + static_cast<std::int64_t>(random() % 4);
      buffer.extraPieces.push_back({first, std::min(last, buffer.pieceCount - 1)});
    }
    buffer.playhead = buffer.clamped(static_cast<std::int64_t>(random() % 50'000'000));
    ASSERT_EQ(expand(buffer.priorityOrder()), naiveOrder(buffer)) << "round " << round;
  }
}

TEST(StreamBuffer, TheReferenceCase) {
  StreamBuffer buffer = reference();
  EXPECT_EQ(buffer.pieces(0, 0x800000), (PieceRun{5, 13}));
  EXPECT_EQ(buffer.pieces(0x6100000, 0x300000), (PieceRun{102, 105}));
  EXPECT_EQ(buffer.priorityOrder(), (PieceOrder{{5, 13}, {102, 105}, {14, 101}}));
  buffer.playhead = 0x3c00000;
  EXPECT_EQ(buffer.priorityOrder(), (PieceOrder{{65, 73}, {102, 105}, {74, 101}, {5, 64}}));
}

TEST(StreamBuffer, PiecesOfHostileRangesStayInTheFile) {
  const StreamBuffer buffer = reference();
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  EXPECT_TRUE(buffer.pieces(0, 0).empty());
  EXPECT_TRUE(buffer.pieces(0, -5).empty());
  EXPECT_EQ(buffer.pieces(most, most), (PieceRun{105, 105}));
  EXPECT_EQ(buffer.pieces(0, most), (PieceRun{5, 105}));
  EXPECT_EQ(buffer.pieces(-most, most), (PieceRun{5, 5}));
}

TEST(StreamBuffer, ReadinessIsTheWindowAndTheTailAtThePlayhead) {
  StreamBuffer buffer = reference();
  std::set<std::int64_t> had;
  const auto have = [&](std::int64_t piece) { return had.contains(piece); };
  EXPECT_EQ(buffer.progress(have), 0.0);
  for (std::int64_t piece : {5, 6, 7, 8, 9, 10, 11, 12, 13, 102, 103, 104}) had.insert(piece);
  EXPECT_EQ(buffer.progress(have), 12.0 / 13.0);
  had.insert(105);
  EXPECT_EQ(buffer.progress(have), 1.0);
  buffer.playhead = 0x3c00000;
  EXPECT_EQ(buffer.progress(have), 4.0 / 13.0);
  buffer.fileLength = 0;
  EXPECT_EQ(buffer.progress(have), 1.0) << "an empty file needs nothing";
}

TEST(StreamBuffer, ATailProbeIsNoSeek) {
  StreamBuffer buffer = reference();
  const std::int64_t tail = buffer.fileLength - 0x300000;
  EXPECT_FALSE(buffer.isTailProbe(tail - 1));
  EXPECT_TRUE(buffer.isTailProbe(tail));
  buffer.fileLength = 0x600000;
  EXPECT_FALSE(buffer.isTailProbe(0x5fffff));
  buffer.fileLength = 0x600001;
  EXPECT_TRUE(buffer.isTailProbe(0x600000));
  EXPECT_EQ(buffer.clamped(-1), 0);
  EXPECT_EQ(buffer.clamped(0x700000), 0x600000);
}

} // namespace
} // namespace vellum
