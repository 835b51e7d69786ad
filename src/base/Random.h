// Randomness as a service, so that tests and simulations are repeatable.
#pragma once
#include <cstdint>

namespace vellum {

// Any thread, as far as the implementation says so.
class Random {
public:
  virtual ~Random() = default;
  virtual std::uint64_t next64() = 0;
  // Uniform over low to high, both inclusive.
  std::uint32_t uniform(std::uint32_t low, std::uint32_t high);
};

// The operating system's strong source. Any thread.
class SystemRandom final : public Random {
public:
  std::uint64_t next64() override;
};

} // namespace vellum
