// A clock whose hands the test turns.
#pragma once
#include "base/Clock.h"
#include <chrono>

namespace vellum::test {

// One thread at a time.
class ManualClock final : public Clock {
public:
  TimePoint now() const override { return m_now; }
  void advance(double seconds) {
    m_now += std::chrono::duration_cast<TimePoint::duration>(Seconds(seconds));
  }

private:
  TimePoint m_now = TimePoint{} + std::chrono::hours(1);
};

} // namespace vellum::test
