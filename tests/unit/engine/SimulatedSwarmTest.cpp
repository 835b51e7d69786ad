// A whole swarm on virtual time: seeders with seeded faults, and one session that must get the
// file through all of them. A failure prints its seed.
#include "SwarmWorld.h"
#include <gtest/gtest.h>
#include <random>

namespace vellum::test {
namespace {

// A seeder that answers a few requests in each tenth of a second, and has moods.
struct Seeder {
  SwarmWorld::Dialled end;
  bool honest = true;
  std::vector<Message> waiting;

  void answer(const MadeTorrent& payload, std::mt19937& random) {
    for (auto& message : end.link->take())
      if (message.id == 6) waiting.push_back(std::move(message));
    const int mood = static_cast<int>(random() % 200);
    if (end.peer->isClosed() || (honest && mood < 100)) return; // slow
    if (!honest && mood == 0) return end.peer->close();
    if (!honest && mood == 1) {
      waiting.clear();
      feed(*end.peer, frame(0));
      return feed(*end.peer, frame(1));
    }
    if (!honest && mood < 120) return; // stalls
    for (std::size_t burst = 1 + random() % 4; burst > 0 && !waiting.empty(); --burst) {
      const auto request = waiting.front();
      waiting.erase(waiting.begin());
      ByteVector data =
          toVector(payload.block(request.number(0), request.number(1), request.number(2)));
      if (!honest && random() % 50 == 0) data[0] ^= std::byte{1};
      feed(*end.peer, pieceFrame(request.number(0), request.number(1), data));
    }
  }
};

TEST(SimulatedSwarm, TwoHonestSeedersAmongSixMoodyOnesAreEnough) {
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    SwarmWorld world;
    world.begin(makeTorrent({90 * kBlock + 77, 3000}, 4 * kBlock));
    world.know({1});
    std::vector<Seeder> seeders;
    while (seeders.size() < 8) seeders.push_back({world.join(), seeders.size() < 2, {}});
    for (int tenths = 0; tenths < 3000 && !world.core->makeSnapshot().complete; ++tenths) {
      world.clock.advance(0.1);
      for (auto& seeder : seeders) {
        seeder.answer(world.payload, random);
        ASSERT_LE(seeder.end.peer->inflight().size(), 10U);
      }
      if (tenths % 10 == 9) world.core->tick();
      if (random() % 40 == 0)
        world.core->setPlayhead(static_cast<std::int64_t>(random() % (90 * kBlock)));
    }
    ASSERT_TRUE(world.core->makeSnapshot().complete) << "not complete after 300 s";
    EXPECT_TRUE(world.holdsThePayload());
  }
}

} // namespace
} // namespace vellum::test
