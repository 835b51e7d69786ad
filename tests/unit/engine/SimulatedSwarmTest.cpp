// A whole swarm on virtual time: seeders with seeded faults, and one session that must get the
// file through all of them. A failure prints its seed.
#include "SwarmWorld.h"
#include <gtest/gtest.h>
#include <random>

namespace vellum::test {
namespace {

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

} // namespace
} // namespace vellum::test
