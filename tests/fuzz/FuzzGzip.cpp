// Bodies that claim to be packed.
#include "Require.h"
#include "net/ContentCoding.h"
#include "net/NetError.h"

using namespace vellum;
using fuzz::require;

// The first byte sets the limit: whatever arrives, no more than that comes out, and a body that is
// handed out at one limit is the same at any larger one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const QByteArray body(reinterpret_cast<const char*>(data) + 1, static_cast<qsizetype>(size - 1));
  const std::int64_t limit = std::int64_t{data[0]} * 64;
  try {
    const QByteArray plain = unpacked(body, kAcceptedCoding, limit);
    require(body.isEmpty() || plain.size() <= limit);
    require(unpacked(body, kAcceptedCoding, limit + 1) == plain);
  } catch (const NetError&) {
  }
  require(unpacked(body, "br", limit) == body);
  return 0;
}
