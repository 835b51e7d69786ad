// A BitTorrent peer that has all of one torrent and gives it to whoever asks (BEP 3, 9, 10).
#pragma once
#include "selftest/LoopbackListener.h"
#include "selftest/TestTorrent.h"

namespace vellum::selftest {

// Main thread; what it says, it says on the listener's strand. It checks nothing
// that it is told and knows no limit.
class TestSeeder {
public:
  TestSeeder(IoPool& pool, TestTorrent torrent);
  // The port; nothing if there is none to be had.
  std::optional<std::uint16_t> start() { return m_listener.start(); }
  void cancel() { m_listener.cancel(); }

private:
  LoopbackListener m_listener;
};

} // namespace vellum::selftest
