#include "engine/RequestTable.h"
#include <gtest/gtest.h>
#include <map>
#include <random>

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
  std::erase_if(model, [&](const auto& entry) { return secondsBetween(entry.second, now) <= 20; });
  std::map<BlockKey, TimePoint> old;
  for (const BlockKey key : table.olderThan(20.0, now)) old[key] = *table.find(key);
  EXPECT_EQ(old, model);
}

} // namespace
} // namespace vellum
