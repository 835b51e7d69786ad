// A listening counterpart on 127.0.0.1 that the test plays itself, word by word.
#pragma once
#include "unit/engine/SwarmWorld.h"
#include <asio/ip/tcp.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>

namespace vellum::test {

// What fails, or takes longer than ten seconds, throws.
class PlayedPeer {
public:
  std::uint16_t port() const { return m_acceptor.local_endpoint().port(); }

  void accept() {
    wait([&](auto done) { m_acceptor.async_accept(m_socket, done); });
  }
  // Answers the other side's handshake.
  void greet(const Hash20& infoHash) {
    accept();
    read(68);
    say(handshake(infoHash));
  }
  // Goes on to where it may ask for blocks.
  void leech(const Hash20& infoHash) {
    greet(infoHash);
    say(frame(2));
    hear(1);
  }
  void say(ByteSpan bytes) {
    wait([&](auto done) {
      asio::async_write(m_socket, asio::buffer(bytes.data(), bytes.size()), done);
    });
  }
  ByteVector read(std::size_t size) {
    ByteVector bytes(size);
    wait([&](auto done) { asio::async_read(m_socket, asio::buffer(bytes), done); });
    return bytes;
  }
  // The next message of this kind; others are passed over.
  Message hear(int id) {
    for (;;) {
      const ByteVector message = read(rd32(read(4), 0));
      if (message.at(0) == std::byte(id)) return {id, {message.begin() + 1, message.end()}};
    }
  }
  // Whatever the other side still says, it closes.
  bool isDropped() {
    try {
      for (;;) read(1);
    } catch (const asio::system_error&) {
      return true;
    }
  }

private:
  template <class Start>
  void wait(Start start) {
    std::optional<asio::error_code> ended;
    start([&](asio::error_code error, auto...) { ended = error; });
    m_io.restart();
    m_io.run_for(std::chrono::seconds(10));
    if (!ended) throw std::runtime_error("nothing happened for ten seconds");
    if (*ended) throw asio::system_error(*ended);
  }

  asio::io_context m_io;
  asio::ip::tcp::acceptor m_acceptor{m_io, {asio::ip::address_v4::loopback(), 0}};
  asio::ip::tcp::socket m_socket{m_io};
};

} // namespace vellum::test
