#include "Fuzz.h"
#include "net/ContentCoding.h"
#include "net/NetError.h"

// The first byte sets the limit: no more than that comes out, and a larger one changes nothing.
void vellum::fuzz::check(ByteSpan input) {
  if (input.empty()) return;
  const QByteArray body = toByteArray(input.subspan(1));
  const std::int64_t limit = std::to_integer<std::int64_t>(input[0]) * 64;
  try {
    const QByteArray plain = unpacked(body, kAcceptedCoding, limit);
    require(body.isEmpty() || plain.size() <= limit);
    require(unpacked(body, kAcceptedCoding, limit + 1) == plain);
  } catch (const NetError&) {
  }
  require(unpacked(body, "br", limit) == body);
}
