// The upload budget of one session: when the next block may leave.
#pragma once
#include "base/Clock.h"
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>

namespace vellum {

// A value on its session's strand. At most five seconds' worth of budget can be queued.
class UploadLimiter {
public:
  static constexpr double kLongestWait = 5.0; // seconds

  explicit UploadLimiter(TimePoint now) : m_nextAt(now) {}

  // When a block of `length` bytes may leave under `limit` bytes per second (below 1: no limit);
  // nothing if that is too far ahead, and then no budget is taken.
  std::optional<TimePoint> admit(std::int64_t length, std::int64_t limit, TimePoint now) {
    if (limit < 1) return now;
    const TimePoint sendAt = std::max(now, m_nextAt);
    if (secondsBetween(now, sendAt) > kLongestWait) return std::nullopt;
    const Seconds cost(static_cast<double>(length) / static_cast<double>(limit));
    m_nextAt = sendAt + std::chrono::duration_cast<TimePoint::duration>(cost);
    return sendAt;
  }

private:
  TimePoint m_nextAt;
};

} // namespace vellum
