// A coroutine run to its end on the calling thread.
#pragma once
#include "base/Flow.h"
#include <asio/use_future.hpp>

namespace vellum::test {

// One for the whole run: Asio wakes a context after it has let go of its lock, so the thread whose
// answer ended a flow may still be inside the context when `run` has returned.
inline asio::io_context& flowContext() {
  static asio::io_context io;
  return io;
}

// What it throws arrives here.
template <class T>
T runFlow(Flow<T> flow) {
  asio::io_context& io = flowContext();
  io.restart();
  auto result = asio::co_spawn(io, std::move(flow), asio::use_future);
  io.run();
  return result.get();
}

} // namespace vellum::test
