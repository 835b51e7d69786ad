#include "base/Random.h"
#include <limits>
#include <random>

namespace vellum {

std::uint32_t Random::uniform(std::uint32_t low, std::uint32_t high) {
  const std::uint64_t count = std::uint64_t{high} - low + 1;
  // Values of the incomplete last round would favour the low numbers.
  const std::uint64_t limit = std::numeric_limits<std::uint64_t>::max() / count * count;
  std::uint64_t value = next64();
  while (value >= limit) value = next64();
  return low + static_cast<std::uint32_t>(value % count);
}

std::uint64_t SystemRandom::next64() {
  std::random_device source;
  return std::uint64_t{source()} << 32 | source();
}

} // namespace vellum
