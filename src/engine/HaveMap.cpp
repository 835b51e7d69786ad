#include "engine/HaveMap.h"

namespace vellum {

ByteVector HaveMap::bitfield() const {
  ByteVector bits(static_cast<std::size_t>((size() + 7) / 8));
  for (std::int64_t piece = 0; piece < size(); ++piece)
    if (has(piece)) bits[static_cast<std::size_t>(piece / 8)] |= std::byte(0x80 >> (piece % 8));
  return bits;
}

} // namespace vellum
