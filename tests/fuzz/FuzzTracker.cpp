#include "Fuzz.h"
#include "engine/TrackerWire.h"

// Replies of a hostile tracker, over UDP and HTTP.
void vellum::fuzz::check(ByteSpan input) {
  constexpr std::uint32_t id = 0x01020304;
  parseUdpConnect(input, id);
  if (const auto result = parseUdpAnnounce(input, id))
    require(result->peers.size() == (input.size() - 20) / 6);
  parseHttpAnnounce(input);
}
