// When bytes leave a simulated line: serialisation at a rate, then a delay. Pure.
#pragma once
#include "base/Clock.h"
#include <algorithm>
#include <chrono>
#include <cstddef>

namespace vellum::world {

// One direction of a line that carries one thing after the other. One thread at a time.
class LinkModel {
public:
  // `bytesPerSecond` 0 = no limit.
  LinkModel(double bytesPerSecond, std::chrono::nanoseconds delay)
      : m_rate(bytesPerSecond), m_delay(delay) {}

  // When the last of `size` bytes that are handed over at `now` is at the other end.
  TimePoint arrival(TimePoint now, std::size_t size) {
    m_free = std::max(now, m_free);
    if (m_rate > 0)
      m_free += std::chrono::duration_cast<TimePoint::duration>(Seconds(double(size) / m_rate));
    return m_free + std::chrono::duration_cast<TimePoint::duration>(m_delay);
  }

private:
  double m_rate;
  std::chrono::nanoseconds m_delay;
  TimePoint m_free{}; // when the line has sent everything so far
};

} // namespace vellum::world
