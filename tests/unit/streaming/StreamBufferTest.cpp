#include "streaming/StreamBuffer.h"
#include <gtest/gtest.h>
#include <limits>

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

TEST(StreamBuffer, OrdersWindowTailExtrasWhatFollowsAndTheRest) {
  StreamBuffer buffer = reference();
  EXPECT_EQ(buffer.priorityOrder(), (PieceOrder{{5, 13}, {102, 105}, {14, 101}}));
  buffer.playhead = 60 * kMiB;
  EXPECT_EQ(buffer.priorityOrder(), (PieceOrder{{65, 73}, {102, 105}, {74, 101}, {5, 64}}));
  // Each piece at its first place, and runs that touch as one.
  buffer.extraPieces = {{12, 15}, {16, 17}, {73, 74}, {30, 40}, {20, 50}, {30, 40}, {101, 119}};
  EXPECT_EQ(buffer.priorityOrder(), (PieceOrder{{65, 73},
                                                {102, 105},
                                                {12, 17},
                                                {74, 74},
                                                {30, 40},
                                                {20, 29},
                                                {41, 50},
                                                {101, 101},
                                                {106, 119},
                                                {75, 100},
                                                {5, 11},
                                                {18, 19},
                                                {51, 64}}));
  EXPECT_EQ(expand({{3, 5}, {1, 1}}), (std::vector<std::int64_t>{3, 4, 5, 1}));
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
