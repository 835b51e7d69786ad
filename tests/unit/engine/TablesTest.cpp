// The small containers of the scheduler against the standard ones, over many random operations.
#include "engine/HaveMap.h"
#include "engine/InflightSet.h"
#include "engine/RequestTable.h"
#include "engine/SendBuffer.h"
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>

namespace vellum {
namespace {

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
  const TimePoint now{std::chrono::seconds(100)};
  std::set<BlockKey> expired;
  for (const auto& [key, when] : model)
    if (secondsBetween(when, now) > 20.0) expired.insert(key);
  const auto old = table.olderThan(20.0, now);
  EXPECT_EQ(std::set<BlockKey>(old.begin(), old.end()), expired);
}

TEST(HaveMap, FindsTheNextMissingPieceInAnyOrderOfArrival) {
  std::mt19937 random(11);
  for (const std::int64_t count : {1, 2, 63, 500}) {
    HaveMap have(count);
    std::vector<bool> model(static_cast<std::size_t>(count));
    for (int step = 0; step < 2 * count; ++step) {
      const auto piece = static_cast<std::int64_t>(random() % model.size());
      have.set(piece);
      model[static_cast<std::size_t>(piece)] = true;
      const auto from = static_cast<std::int64_t>(random() % (model.size() + 1));
      std::int64_t expected = from;
      while (expected < count && model[static_cast<std::size_t>(expected)]) ++expected;
      ASSERT_EQ(have.firstMissing(from), expected);
    }
    EXPECT_EQ(have.count(), std::count(model.begin(), model.end(), true));
    EXPECT_FALSE(have.has(-1));
    EXPECT_FALSE(have.has(count));
  }
}

TEST(HaveMap, TheBitfieldHasPieceZeroOnTopAndNoSpareBits) {
  HaveMap have(10);
  for (const int piece : {0, 7, 9}) have.set(piece);
  EXPECT_EQ(toHex(have.bitfield()), QStringLiteral("8140"));
}

TEST(SendBuffer, HoldsLittleMoreThanWhatWaitsOnALineThatIsNeverIdle) {
  SendBuffer buffer;
  std::uint8_t next = 0;
  std::uint8_t expected = 0;
  buffer.append(ByteVector(1000)); // never empty from now on
  std::size_t zeros = 1000;
  for (int round = 0; round < 5000; ++round) {
    ByteVector block(16'384);
    for (auto& byte : block) byte = std::byte(next++);
    buffer.append(block);
    for (const std::byte byte : buffer.front().first(block.size())) {
      if (zeros > 0) {
        --zeros;
        ASSERT_EQ(byte, std::byte{0});
      } else {
        ASSERT_EQ(byte, std::byte(expected++));
      }
    }
    buffer.consume(block.size());
    ASSERT_EQ(buffer.size(), 1000U);
  }
  EXPECT_LT(buffer.held(), 0x40000U);
}

TEST(InflightSet, HoldsTenKeysOnceEach) {
  InflightSet set;
  for (BlockKey key = 0; key < 10; ++key) {
    EXPECT_FALSE(set.isFull());
    set.insert(key);
    set.insert(key);
  }
  EXPECT_TRUE(set.isFull());
  set.erase(3);
  set.erase(3);
  EXPECT_EQ(set.size(), 9U);
  EXPECT_FALSE(set.contains(3));
  EXPECT_TRUE(set.contains(9));
}

} // namespace
} // namespace vellum
