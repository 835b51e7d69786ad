// A coroutine run to its end on the calling thread.
#pragma once
#include "base/Flow.h"
#include <asio/use_future.hpp>

namespace vellum::test {

// What it throws arrives here. For flows that wait for nothing outside their own io_context.
template <class T>
T runFlow(Flow<T> flow) {
  asio::io_context io;
  auto result = asio::co_spawn(io, std::move(flow), asio::use_future);
  io.run();
  return result.get();
}

} // namespace vellum::test
