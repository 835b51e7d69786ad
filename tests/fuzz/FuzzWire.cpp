#include "Fuzz.h"
#include "unit/engine/SwarmWorld.h"
#include <fuzzer/FuzzedDataProvider.h>

// Bytes of a hostile peer, in random splits, into a session that has metadata or still wants it.
void vellum::fuzz::check(ByteSpan bytes) {
  using namespace test;
  static const MadeTorrent torrent = makeTorrent({100'000, 500}, 32768);
  static SwarmWorld world;
  FuzzedDataProvider input(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  world.begin(torrent);
  if (input.ConsumeBool()) world.know({1});
  world.core->addPeers({{QStringLiteral("10.0.0.1"), 1}, {QStringLiteral("10.0.0.2"), 2}});
  for (auto& end : world.dialled) end.peer->connected();
  if (input.ConsumeBool())
    for (auto& end : world.dialled) feed(*end.peer, handshake(torrent.infoHash));
  while (input.remaining_bytes() > 0) {
    auto& end = world.dialled[input.ConsumeIntegralInRange<std::size_t>(0, 1)];
    const auto some =
        input.ConsumeBytes<std::uint8_t>(input.ConsumeIntegralInRange<std::size_t>(1, 200));
    feed(*end.peer, std::as_bytes(std::span(some)));
    require(end.peer->inflight().size() <= 10);
    world.tick(0.3);
    world.core->sendDueBlocks();
    end.link->out.clear();
  }
  world.core->stop();
}
