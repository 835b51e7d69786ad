// Bytes of a hostile peer, in random splits, into a session that has metadata or still wants it.
#include "Require.h"
#include "unit/engine/Frames.h"
#include "unit/engine/SwarmWorld.h"
#include <fuzzer/FuzzedDataProvider.h>

using namespace vellum;
using namespace vellum::test;

namespace {
const MadeTorrent& payload() {
  static const MadeTorrent once = makeTorrent({{"a.mkv", 100'000}, {"a.srt", 500}}, 32768);
  return once;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  static SwarmWorld world;
  const auto core = world.makeCore(payload().infoHash);
  core->start();
  if (input.ConsumeBool()) {
    core->setMeta(payload().meta, false);
    core->select(0, {1});
  }
  core->addPeers({{QStringLiteral("10.0.0.1"), 1}, {QStringLiteral("10.0.0.2"), 2}});
  for (auto& end : world.dialled) end.peer->connected();
  if (input.ConsumeBool())
    for (auto& end : world.dialled) feed(*end.peer, handshake(payload().infoHash));
  while (input.remaining_bytes() > 0) {
    auto& end = world.dialled[input.ConsumeIntegralInRange<std::size_t>(0, 1)];
    const auto bytes =
        input.ConsumeBytes<std::uint8_t>(input.ConsumeIntegralInRange<std::size_t>(1, 200));
    feed(*end.peer, std::as_bytes(std::span(bytes)));
    fuzz::require(end.peer->inflight().size() <= 10);
    world.clock.advance(0.3);
    core->tick();
    core->sendDueBlocks();
    end.link->out.clear();
  }
  core->stop();
  return 0;
}
