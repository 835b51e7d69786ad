#include "base/Clock.h"

namespace vellum {

TimePoint SystemClock::now() const { return std::chrono::steady_clock::now(); }

} // namespace vellum
