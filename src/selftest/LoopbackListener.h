// A listener on 127.0.0.1, on any port, for the fixtures of the self-test.
#pragma once
#include "base/Flow.h"
#include "base/IoPool.h"
#include <asio/ip/tcp.hpp>
#include <cstdint>

namespace vellum::selftest {

// Its connections live on one strand of the pool, each a coroutine that `serve` gives and that ends
// by its exception when the other side is gone. The owner lives on the main thread.
class LoopbackListener {
public:
  using Serve = std::function<Flow<>(asio::ip::tcp::socket)>;

  LoopbackListener(IoPool& pool, Serve serve);
  // Closes it and every connection.
  ~LoopbackListener();
  LoopbackListener(const LoopbackListener&) = delete;
  LoopbackListener& operator=(const LoopbackListener&) = delete;

  // The port; nothing if there is none to be had. Main thread.
  std::optional<std::uint16_t> start();
  void cancel();

private:
  struct State;
  static Flow<> accept(std::shared_ptr<State> state);

  std::shared_ptr<State> m_state;
};

} // namespace vellum::selftest
