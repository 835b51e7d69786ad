#include "engine/MetadataExchange.h"
#include "SwarmWorld.h"
#include <gtest/gtest.h>

namespace vellum::test {
namespace {

// 900 pieces make an info dictionary of two metadata pieces.
struct MetadataTest : testing::Test {
  const MadeTorrent payload = makeTorrent({900 * 16}, 16);
  const ByteSpan first = asBytes(payload.infoRaw).first(16384);
  const ByteSpan second = asBytes(payload.infoRaw).subspan(16384);
  const std::int64_t size = payload.infoRaw.size();
  ManualClock clock;
  MetadataExchange exchange{payload.infoHash};

  std::optional<std::int64_t> next(std::int64_t advertised) {
    return exchange.nextRequest(advertised, clock.now());
  }
};

TEST_F(MetadataTest, TheFirstAcceptableSizeDecidesAndEightMebibytesAreTheMost) {
  exchange.receive(0, first);
  EXPECT_EQ(exchange.heldPieces(), 0U) << "nobody was asked yet";
  for (const std::int64_t refused : {std::int64_t{0}, std::int64_t{-5}, 8 * kMiB, kMiB * kMiB})
    EXPECT_FALSE(next(refused)) << refused;
  EXPECT_EQ(next(8 * kMiB - 1), 0);
  EXPECT_EQ(next(100), 1);
  const ByteVector big(8 * kMiB); // peers may send what they like
  for (int round = 0; round < 3; ++round) {
    for (int again = 0; again < 2; ++again) exchange.receive(5, big);
    EXPECT_EQ(exchange.heldPieces(), 1U) << "a piece that comes again counts once";
    exchange.receive(9, ByteVector(1));
    EXPECT_EQ(exchange.heldPieces(), 0U);
  }
}

TEST_F(MetadataTest, AWholeThatMatchesTheHashIsBelievedAndAWrongOneBegunAgain) {
  next(size);
  next(size);
  ByteVector lie = toVector(second), longer = lie;
  lie[lie.size() / 2] ^= std::byte{1}; // within the pieces' hashes: a torrent, but not this one
  longer.push_back(std::byte{0});
  for (const auto& wrong : {lie, longer}) {
    EXPECT_FALSE(exchange.receive(0, first));
    EXPECT_FALSE(exchange.receive(1, wrong));
    EXPECT_EQ(exchange.heldPieces(), 0U);
    EXPECT_EQ(next(size), 0) << "everything is asked for anew";
  }
  EXPECT_FALSE(exchange.receive(1, second));
  const auto meta = exchange.receive(0, first);
  ASSERT_TRUE(meta);
  EXPECT_EQ(meta->hashes, payload.meta->hashes);
  EXPECT_EQ(meta->files, payload.meta->files);
}

} // namespace
} // namespace vellum::test
