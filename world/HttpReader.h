// A plain blocking HTTP client for one request to a loopback server.
#pragma once
#include <QUrl>
#include <array>
#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <string>
#include <sys/time.h>

namespace vellum::world {

// One thread. A server that stays silent for 20 s counts as one that has closed.
class HttpReader {
public:
  // With a small receive buffer the server soon finds that it cannot send on.
  enum class Buffer { Usual, Small };

  explicit HttpReader(Buffer buffer = Buffer::Usual) {
    m_socket.open(asio::ip::tcp::v4());
    const timeval patience{20, 0};
    ::setsockopt(m_socket.native_handle(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    if (buffer == Buffer::Small) m_socket.set_option(asio::socket_base::receive_buffer_size(16384));
  }
  explicit HttpReader(const QUrl& url, Buffer buffer = Buffer::Usual) : HttpReader(buffer) {
    connect(url);
  }

  void connect(const QUrl& url) {
    m_socket.connect({asio::ip::address_v4::loopback(), static_cast<std::uint16_t>(url.port())});
    m_socket.set_option(asio::ip::tcp::no_delay(true));
  }
  // Whatever the server still takes.
  void say(std::string_view text) {
    asio::error_code error;
    while (!text.empty() && !error)
      text.remove_prefix(m_socket.write_some(asio::buffer(text), error));
  }
  void get(const QUrl& url, const std::string& headers = {}) {
    say("GET " + url.path(QUrl::FullyEncoded).toStdString() + " HTTP/1.1\r\n" + headers + "\r\n");
  }
  void endSaying() { m_socket.shutdown(asio::ip::tcp::socket::shutdown_send); }

  // Up to and with the blank line; shorter if the server closes before.
  std::string readHead() {
    constexpr std::string_view blankLine = "\r\n\r\n";
    std::size_t end = 0;
    while ((end = m_held.find(blankLine)) == std::string::npos)
      if (!readMore()) return take(m_held.size());
    return take(end + blankLine.size());
  }
  std::string read(std::size_t size) {
    while (m_held.size() < size && readMore()) {
    }
    return take(std::min(size, m_held.size()));
  }
  std::string readAll() {
    while (readMore()) {
    }
    return take(m_held.size());
  }
  // Reads to the end and keeps nothing; gives how many bytes there were.
  std::int64_t skipAll() {
    auto skipped = static_cast<std::int64_t>(take(m_held.size()).size());
    while (!m_end)
      skipped += static_cast<std::int64_t>(m_socket.read_some(asio::buffer(m_room), m_end));
    return skipped;
  }
  // True once the connection ended otherwise than by an orderly close.
  bool wasReset() const { return m_end && m_end != asio::error::eof; }

private:
  bool readMore() {
    const auto got = m_socket.read_some(asio::buffer(m_room), m_end);
    m_held.append(m_room.data(), got);
    return !m_end;
  }
  std::string take(std::size_t size) {
    std::string taken = m_held.substr(0, size);
    m_held.erase(0, size);
    return taken;
  }

  asio::io_context m_io;
  asio::ip::tcp::socket m_socket{m_io};
  std::string m_held;
  asio::error_code m_end;              // why the last read failed, if it did
  std::array<char, 256 * 1024> m_room; // not cleared: a benchmark makes a reader a request
};

} // namespace vellum::world
