// Replies of a hostile tracker, over UDP and HTTP.
#include "Require.h"
#include "engine/TrackerWire.h"

using namespace vellum;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto bytes = std::as_bytes(std::span(data, size));
  constexpr std::uint32_t id = 0x01020304;
  parseUdpConnect(bytes, id);
  if (const auto result = parseUdpAnnounce(bytes, id))
    fuzz::require(result->peers.size() == (size - 20) / 6);
  parseHttpAnnounce(bytes);
  return 0;
}
