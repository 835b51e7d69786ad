#include "selftest/TinyHTTP.h"
#include <array>
#include <asio/write.hpp>

namespace vellum::selftest {

namespace {
constexpr std::size_t kLargestRequest = 8192; // bytes
} // namespace

TinyHTTP::TinyHTTP(IoPool& pool, const QByteArray& body)
    : m_listener(pool, [whole = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n"
                                "Content-Length: " +
                                QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" +
                                body](asio::ip::tcp::socket socket) {
        return answer(std::move(socket), whole);
      }) {}

Flow<> TinyHTTP::answer(asio::ip::tcp::socket socket, QByteArray bytes) {
  std::array<char, kLargestRequest> request{};
  co_await socket.async_read_some(asio::buffer(request), asio::use_awaitable);
  co_await asio::async_write(socket, asio::buffer(bytes.data(), std::size_t(bytes.size())),
                             asio::use_awaitable);
}

} // namespace vellum::selftest
