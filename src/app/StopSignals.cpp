#include "app/StopSignals.h"
#include <csignal>

namespace vellum {

StopSignals::StopSignals(Runtime& runtime, std::function<void()> stop)
    : m_strand(runtime.pool.makeStrand()),
      m_signals(std::make_shared<asio::signal_set>(m_strand, SIGINT, SIGTERM)) {
  m_signals->async_wait(
      [&runtime, stop = std::move(stop), signals = m_signals](asio::error_code error, int) mutable {
        if (error) return;
        signals->clear();
        runtime.main.post(std::move(stop));
      });
}

StopSignals::~StopSignals() {
  asio::post(m_strand, [signals = m_signals] { signals->cancel(); });
}

} // namespace vellum
