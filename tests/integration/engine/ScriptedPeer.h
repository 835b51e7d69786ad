// A listening counterpart on 127.0.0.1 that does whatever its script says to whoever connects.
#pragma once
#include "base/Bytes.h"
#include "base/Flow.h"
#include "unit/engine/Frames.h"
#include "world/LoopbackThread.h"
#include <asio/ip/tcp.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>
#include <atomic>

namespace vellum::test {

using namespace world;

// Runs on a thread of its own; public operations from any thread.
class ScriptedPeer {
public:
  using Socket = asio::ip::tcp::socket;
  // A script that returns keeps its connection until the other side drops it; one that throws
  // closes it.
  using Script = std::function<Flow<>(Socket&)>;

  explicit ScriptedPeer(Script script)
      : m_script(std::move(script)),
        m_acceptor(m_thread.io(), {asio::ip::address_v4::loopback(), 0}),
        m_flows(m_thread.io().get_executor()), m_port(m_acceptor.local_endpoint().port()) {
    m_thread.run([this] { m_flows.spawn(accept()); });
  }
  ~ScriptedPeer() {
    m_thread.run([this] {
      m_acceptor.close();
      m_flows.cancelAll();
    });
    m_thread.join();
  }

  std::uint16_t port() const { return m_port; }
  int dials() const { return m_dials; } // connections accepted
  int ended() const { return m_ended; } // scripts that came to their end or gave up
  int drops() const { return m_drops; } // connections that the other side closed

  static Flow<> say(Socket& socket, ByteSpan bytes) {
    co_await asio::async_write(socket, asio::buffer(bytes.data(), bytes.size()),
                               asio::use_awaitable);
  }
  // Waits for the other side's handshake and answers it.
  static Flow<> greet(Socket& socket, Hash20 infoHash) {
    ByteVector theirs(68);
    co_await asio::async_read(socket, asio::buffer(theirs), asio::use_awaitable);
    co_await say(socket, handshake(infoHash));
  }
  // The next message that is no keep-alive.
  static Flow<RecordingLink::Message> hear(Socket& socket) {
    ByteVector length(4);
    do co_await asio::async_read(socket, asio::buffer(length), asio::use_awaitable);
    while (rd32(length, 0) == 0);
    ByteVector message(rd32(length, 0));
    co_await asio::async_read(socket, asio::buffer(message), asio::use_awaitable);
    co_return RecordingLink::Message{std::to_integer<int>(message[0]),
                                     {message.begin() + 1, message.end()}};
  }

private:
  Flow<> accept() {
    for (;;) m_flows.spawn(serve(co_await m_acceptor.async_accept(asio::use_awaitable)));
  }
  Flow<> serve(Socket socket) {
    ++m_dials;
    bool stays = true;
    try {
      co_await m_script(socket);
    } catch (const asio::system_error&) {
      stays = false;
    }
    ++m_ended;
    ByteVector dropped(65536);
    asio::error_code error;
    while (stays && !error)
      co_await socket.async_read_some(asio::buffer(dropped),
                                      asio::redirect_error(asio::use_awaitable, error));
    if (error != asio::error::operation_aborted) ++m_drops;
  }

  LoopbackThread m_thread;
  const Script m_script;
  asio::ip::tcp::acceptor m_acceptor;
  FlowGroup m_flows;
  std::uint16_t m_port;
  std::atomic<int> m_dials = 0;
  std::atomic<int> m_ended = 0;
  std::atomic<int> m_drops = 0;
};

} // namespace vellum::test
