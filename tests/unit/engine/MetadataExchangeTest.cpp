#include "engine/MetadataExchange.h"
#include "MadeTorrent.h"
#include "support/ManualClock.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

using test::makeTorrent;

// 900 pieces make an info dictionary of two metadata pieces.
struct MetadataTest : testing::Test {
  test::MadeTorrent payload = makeTorrent({{"a.mkv", 900 * 16}}, 16);
  test::ManualClock clock;
  MetadataExchange exchange{payload.infoHash};
  std::int64_t size = static_cast<std::int64_t>(payload.infoRaw.size());

  ByteSpan part(std::int64_t piece) const {
    const auto all = ByteSpan(payload.infoRaw);
    const auto at = static_cast<std::size_t>(piece) * 16384;
    return all.subspan(at, std::min<std::size_t>(16384, all.size() - at));
  }
  std::optional<std::int64_t> next(std::int64_t advertised) {
    return exchange.nextRequest(advertised, clock.now());
  }
};

TEST_F(MetadataTest, TheFirstAcceptableSizeDecides) {
  for (const std::int64_t refused :
       {std::int64_t{0}, std::int64_t{-5}, std::int64_t{8'388'608}, std::int64_t{1} << 40})
    EXPECT_FALSE(next(refused)) << refused;
  EXPECT_EQ(exchange.size(), 0);
  EXPECT_EQ(next(8'388'607), 0);
  EXPECT_EQ(next(100), 1);
  EXPECT_EQ(exchange.size(), 8'388'607);
}

TEST_F(MetadataTest, APieceIsAskedForAgainAfterEightSeconds) {
  EXPECT_EQ(next(size), 0);
  EXPECT_EQ(next(size), 1);
  EXPECT_FALSE(next(size));
  clock.advance(8.0);
  EXPECT_FALSE(next(size));
  clock.advance(0.01);
  EXPECT_EQ(next(size), 0);
}

TEST_F(MetadataTest, AWholeThatMatchesTheHashIsBelievedAndAWrongOneBegunAgain) {
  ASSERT_GT(size, 16384);
  next(size);
  next(size);
  const ByteVector lie(16384, std::byte{1});
  EXPECT_FALSE(exchange.receive(0, lie));
  EXPECT_FALSE(exchange.receive(1, part(1)));
  EXPECT_EQ(exchange.heldPieces(), 0U);
  EXPECT_EQ(next(size), 0) << "everything is asked for anew";
  EXPECT_FALSE(exchange.receive(1, part(1)));
  const auto meta = exchange.receive(0, part(0));
  ASSERT_TRUE(meta);
  EXPECT_EQ(meta->hashes, payload.meta->hashes);
  EXPECT_EQ(meta->files, payload.meta->files);
}

TEST_F(MetadataTest, InventedPiecesCostBoundedMemory) {
  next(size);
  for (std::int64_t index = 1'000; index < 100'000; ++index) {
    exchange.receive(index, {});
    ASSERT_LE(static_cast<std::int64_t>(exchange.heldPieces()), MetadataExchange::kMostEntries);
  }
  const ByteVector big(4 * kMiB - 100);
  std::size_t most = 0;
  for (std::int64_t index = 5; index < 50; ++index) {
    exchange.receive(index, big);
    most = std::max(most, exchange.heldPieces());
  }
  EXPECT_LT(most, MetadataExchange::kMostEntries + 3U);
  // A download that follows works still.
  while (exchange.heldPieces() > 0)
    exchange.receive(7, big), exchange.receive(8, big), exchange.receive(9, big);
  exchange.receive(0, part(0));
  EXPECT_TRUE(exchange.receive(1, part(1)));
}

} // namespace
} // namespace vellum
