// A thread with an io_context for one loopback counterpart.
#pragma once
#include <asio/dispatch.hpp>
#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/packaged_task.hpp>
#include <future>
#include <thread>
#include <utility>

namespace vellum::world {

// Owned by any one other thread. Before its own members go, the owner closes its sockets and timers
// in a last run() and calls join(), which waits until nothing is left to run.
class LoopbackThread {
public:
  LoopbackThread() : m_work(m_io.get_executor()), m_thread([this] { m_io.run(); }) {}
  ~LoopbackThread() { join(); }
  LoopbackThread(const LoopbackThread&) = delete;
  LoopbackThread& operator=(const LoopbackThread&) = delete;

  asio::io_context& io() { return m_io; }

  // Runs f on the thread and waits for it; what it throws arrives here.
  template <class F>
  void run(F f) {
    asio::dispatch(m_io, std::packaged_task<void()>(std::move(f))).get();
  }

  void join() {
    m_work.reset();
    if (m_thread.joinable()) m_thread.join();
  }

private:
  asio::io_context m_io{1};
  asio::executor_work_guard<asio::io_context::executor_type> m_work;
  std::thread m_thread;
};

} // namespace vellum::world
