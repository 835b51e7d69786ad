// A whole swarm on virtual time: seeders with seeded faults, and one session that must get the
// file through all of them. A failure prints its seed.
#include "SwarmWorld.h"
#include <gtest/gtest.h>
#include <random>

namespace vellum {
namespace {

using namespace test;

constexpr std::int64_t kBlock = 16384;

// A seeder that answers a few requests in each tenth of a second, and has moods.
struct Seeder {
  SwarmWorld::Dialled end;
  bool honest = true;
  std::vector<RecordingLink::Message> waiting;

  void collect() {
    for (auto& message : end.link->take())
      if (message.id == 6) waiting.push_back(std::move(message));
  }
  void answer(const MadeTorrent& payload, std::mt19937& random) {
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

void runSwarm(std::uint32_t seed) {
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  const MadeTorrent payload =
      makeTorrent({{"a.mkv", 90 * kBlock + 77}, {"a.srt", 3000}}, 4 * kBlock);
  SwarmWorld world;
  const auto core = world.makeCore(payload.infoHash);
  core->start();
  core->setMeta(payload.meta, false);
  core->select(0, {1});
  std::vector<PeerAddr> list;
  for (std::uint16_t port = 1; port <= 8; ++port)
    list.push_back({QStringLiteral("10.0.0.1"), port});
  core->addPeers(list);

  std::vector<Seeder> seeders;
  for (auto& end : world.dialled) {
    seeders.push_back({end, seeders.size() < 2, {}});
    end.peer->connected();
    feed(*end.peer, handshake(payload.infoHash, false));
    feed(*end.peer, frame(5, ByteVector(3, std::byte{0xFF})));
    feed(*end.peer, frame(1));
  }
  int tenths = 0;
  for (; tenths < 3000 && !core->makeSnapshot().complete; ++tenths) {
    world.clock.advance(0.1);
    for (auto& seeder : seeders) {
      seeder.collect();
      ASSERT_LE(seeder.end.peer->inflight().size(), 10U);
      seeder.answer(payload, random);
    }
    if (tenths % 10 == 9) core->tick();
    if (random() % 40 == 0) core->setPlayhead(static_cast<std::int64_t>(random() % (90 * kBlock)));
  }
  ASSERT_TRUE(core->makeSnapshot().complete) << "not complete after 300 s";
  ByteVector onDisk(payload.bytes.size());
  ASSERT_TRUE(core->storage().read(0, onDisk));
  EXPECT_TRUE(std::ranges::equal(onDisk, payload.bytes));
}

TEST(SimulatedSwarm, TwoHonestSeedersAmongSixMoodyOnesAreEnough) {
  for (std::uint32_t seed = 1; seed <= 40; ++seed) runSwarm(seed);
}

} // namespace
} // namespace vellum
