// Time as a service: whoever needs it is handed a Clock, so that tests turn the hands themselves.
#pragma once
#include <chrono>

namespace vellum {

using TimePoint = std::chrono::steady_clock::time_point;
using Seconds = std::chrono::duration<double>;

// Any thread.
class Clock {
public:
  virtual ~Clock() = default;
  virtual TimePoint now() const = 0;
};

// The machine's monotonic clock. Any thread.
class SystemClock final : public Clock {
public:
  TimePoint now() const override;
};

inline double secondsBetween(TimePoint from, TimePoint to) { return Seconds(to - from).count(); }

} // namespace vellum
