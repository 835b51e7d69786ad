// A coroutine's alarm clock that somebody else may ring.
#pragma once
#include "base/Clock.h"
#include "base/Flow.h"
#include <asio/experimental/as_tuple.hpp>

namespace vellum {

// All on one executor (often the main thread, whose timers must be those of an io_context).
class Wakeup {
public:
  explicit Wakeup(asio::io_context& io) : m_timer(io) {}

  // Returns after `duration`, or at once when ring() was called since the last wait. Throws
  // asio::system_error when the coroutine is cancelled.
  template <class Duration>
  Flow<> wait(Duration duration) {
    if (!m_rung) {
      m_timer.expires_after(
          std::chrono::duration_cast<std::chrono::steady_clock::duration>(duration));
      co_await m_timer.async_wait(asio::experimental::as_tuple(asio::use_awaitable));
    }
    m_rung = false;
    // A rung bell and a cancelled coroutine look alike to the timer; only the latter is an end.
    const auto state = co_await asio::this_coro::cancellation_state;
    if (state.cancelled() != asio::cancellation_type::none)
      throw asio::system_error(asio::error::operation_aborted);
  }
  void ring() {
    m_rung = true;
    m_timer.cancel();
  }

private:
  asio::steady_timer m_timer;
  bool m_rung = false;
};

} // namespace vellum
