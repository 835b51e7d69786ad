// The threads of the engine and the stream server, and the small pool for slow disks.
#pragma once
#include "base/Flow.h"
#include <asio/executor_work_guard.hpp>
#include <atomic>
#include <thread>
#include <vector>

namespace vellum {

// Owned by the main thread. Sockets, timers and strands run on its io threads; file walks and the
// parsing of large bodies on `workers`, so that a slow disk never stops a socket.
class IoPool {
public:
  // One io thread suffices: on it a strand is entered without waking anybody, and one core moves
  // more than a gigabyte a second. Strands keep the code right for more of them.
  explicit IoPool(int ioThreads = 1, int workerThreads = 2);
  // Waits until everything on the pools has ended: whoever runs there must have been cancelled.
  // The main loop goes on turning meanwhile, since what ends may need a last hop to it.
  ~IoPool();
  IoPool(const IoPool&) = delete;
  IoPool& operator=(const IoPool&) = delete;

  asio::io_context& io() { return m_io; }
  Strand makeStrand() { return asio::make_strand(m_io); }
  asio::thread_pool::executor_type workers() { return m_workers.get_executor(); }
  WorkerStrand makeWorkerStrand() { return asio::make_strand(m_workers); }

private:
  asio::io_context m_io;
  asio::executor_work_guard<asio::io_context::executor_type> m_work;
  asio::thread_pool m_workers;
  std::atomic<int> m_running;
  std::vector<std::thread> m_threads;
};

} // namespace vellum
