// A blocking HTTP client of a few lines that never waits for ever.
#pragma once
#include <asio/ip/tcp.hpp>
#include <asio/write.hpp>
#include <chrono>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vellum::test {

class StreamClient {
public:
  static constexpr int kPatience = 20'000; // milliseconds

  explicit StreamClient(std::uint16_t port) : m_socket(m_io) {
    m_socket.connect({asio::ip::address_v4::loopback(), port});
    m_socket.set_option(asio::ip::tcp::no_delay(true));
  }
  StreamClient(std::uint16_t port, std::string_view request) : StreamClient(port) { send(request); }

  // A server that closed meanwhile is no failure: what it said shows on reading.
  void send(std::string_view text) {
    asio::error_code ignored;
    asio::write(m_socket, asio::buffer(text), ignored);
  }
  // The next bytes, at most `most`; empty at the end of the connection, however it ended.
  std::string next(std::size_t most) {
    pollfd waited{m_socket.native_handle(), POLLIN, 0};
    if (::poll(&waited, 1, kPatience) != 1)
      throw std::runtime_error("the server says nothing and stays");
    std::string bytes(most, '\0');
    asio::error_code error;
    bytes.resize(m_socket.read_some(asio::buffer(bytes), error));
    return bytes;
  }
  // Up to the end of the connection.
  std::string rest() {
    std::string all;
    for (std::string more = next(1 << 20); !more.empty(); more = next(1 << 20))
      all += more;
    return all;
  }
  // The head with its blank line, read byte by byte so that nothing of a body is lost.
  std::string head() {
    std::string all;
    while (!all.ends_with("\r\n\r\n")) {
      const std::string more = next(1);
      if (more.empty())
        break;
      all += more;
    }
    return all;
  }
  std::string exactly(std::size_t size) {
    std::string all;
    while (all.size() < size) {
      const std::string more = next(size - all.size());
      if (more.empty())
        break;
      all += more;
    }
    return all;
  }
  bool hasMore() {
    asio::error_code ignored;
    return m_socket.available(ignored) > 0;
  }

private:
  asio::io_context m_io;
  asio::ip::tcp::socket m_socket;
};

} // namespace vellum::test
