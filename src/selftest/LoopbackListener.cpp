#include "selftest/LoopbackListener.h"

namespace vellum::selftest {

using asio::ip::tcp;

// On its strand.
struct LoopbackListener::State {
  State(IoPool& pool, Serve s)
      : strand(pool.makeStrand()), acceptor(strand), flows(strand), serve(std::move(s)) {}

  void open() {
    acceptor.open(tcp::v4());
    acceptor.bind({asio::ip::address_v4::loopback(), 0});
    acceptor.listen();
  }

  const Strand strand;
  tcp::acceptor acceptor;
  FlowGroup flows;
  const Serve serve;
};

LoopbackListener::LoopbackListener(IoPool& pool, Serve serve)
    : m_state(std::make_shared<State>(pool, std::move(serve))) {}

LoopbackListener::~LoopbackListener() { cancel(); }

Flow<> LoopbackListener::accept(std::shared_ptr<State> state) {
  for (;;) {
    tcp::socket socket = co_await state->acceptor.async_accept(asio::use_awaitable);
    if (!state->acceptor.is_open()) co_return; // cancelled between its arrival and here
    state->flows.spawn(state->serve(std::move(socket)));
  }
}

std::optional<std::uint16_t> LoopbackListener::start() {
  return syncOn(m_state->strand, [state = m_state]() -> std::optional<std::uint16_t> {
    try {
      state->open();
      state->flows.spawn(accept(state));
      return state->acceptor.local_endpoint().port();
    } catch (const asio::system_error&) {
      return std::nullopt;
    }
  });
}

void LoopbackListener::cancel() {
  syncOn(m_state->strand, [state = m_state] {
    state->acceptor.close();
    state->flows.cancelAll();
  });
}

} // namespace vellum::selftest
