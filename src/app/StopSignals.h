// The wish of the system or of a terminal that the program ends.
#pragma once
#include "app/Runtime.h"
#include <asio/signal_set.hpp>

namespace vellum {

// Main thread. Calls back there once, at the first SIGINT or SIGTERM; a second one ends the process
// as usual, should the orderly way take too long.
class StopSignals final {
public:
  // The runtime outlives it. What is called back may be called after the end of this object.
  StopSignals(Runtime& runtime, std::function<void()> stop);
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

private:
  Strand m_strand;
  std::shared_ptr<asio::signal_set> m_signals; // on the strand
};

} // namespace vellum
