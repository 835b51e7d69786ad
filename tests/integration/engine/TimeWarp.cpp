// The monotonic clock of this program, which a test may put forward: nobody waits for a time-out.
#include "SessionWorld.h"
#include <ctime>

namespace {
std::atomic<std::int64_t> ahead = 0; // nanoseconds
}

// In place of the library's own.
std::chrono::steady_clock::time_point std::chrono::steady_clock::now() noexcept {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return time_point(seconds(now.tv_sec) + nanoseconds(now.tv_nsec + ahead));
}

namespace vellum::test {

void SessionWorld::pass(double seconds) {
  ahead += static_cast<std::int64_t>(seconds * 1e9);
  // A timer that is due at once makes the reactor look at all of them; what they bring about may
  // take a few more turns.
  for (int turn = 0; turn < 10; ++turn) {
    asio::steady_timer timer(pool->io(), TimePoint::min());
    std::promise<void> looked;
    timer.async_wait([&](asio::error_code) { looked.set_value(); });
    looked.get_future().wait();
  }
}

} // namespace vellum::test
