#include "world/ScriptedServer.h"
#include <asio/read_until.hpp>
#include <asio/write.hpp>

namespace vellum::world {

using asio::ip::tcp;

ScriptedServer::ScriptedServer(Script script)
    : m_script(std::move(script)),
      m_acceptor(m_thread.io(), tcp::endpoint(asio::ip::address_v4::loopback(), 0)),
      m_flows(m_thread.io().get_executor()), m_port(m_acceptor.local_endpoint().port()) {
  m_thread.run([this] { m_flows.spawn(accept()); });
}

ScriptedServer::~ScriptedServer() {
  m_thread.run([this] {
    m_acceptor.close();
    m_flows.cancelAll();
  });
  m_thread.join();
}

QUrl ScriptedServer::url(const QString& path) const {
  return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_port).arg(path));
}

ScriptedServer::Answer ScriptedServer::reply(int status, const QByteArray& body,
                                             const QByteArray& headers) {
  return {"HTTP/1.1 " + QByteArray::number(status) + " Text\r\nContent-Length: " +
              QByteArray::number(body.size()) + "\r\nConnection: close\r\n" + headers + "\r\n",
          body};
}

Flow<> ScriptedServer::accept() {
  for (;;) m_flows.spawn(serve(co_await m_acceptor.async_accept(asio::use_awaitable)));
}

Flow<> ScriptedServer::send(tcp::socket& socket, const QByteArray& body, double rate) {
  constexpr std::chrono::milliseconds kTick{20};
  const auto whole = std::size_t(body.size());
  const auto atOnce = rate > 0 ? std::max<std::size_t>(1, std::size_t(rate / 50)) : whole;
  for (std::size_t sent = 0; sent < whole; sent += atOnce) {
    if (rate > 0) co_await sleepFor(kTick);
    co_await asio::async_write(socket,
                               asio::buffer(body.data() + sent, std::min(atOnce, whole - sent)),
                               asio::use_awaitable);
  }
}

Flow<> ScriptedServer::serve(tcp::socket socket) {
  std::string request;
  co_await asio::async_read_until(socket, asio::dynamic_buffer(request), "\r\n\r\n",
                                  asio::use_awaitable);
  ++m_requests;
  const Answer answer = m_script(QByteArray::fromStdString(request));
  try {
    co_await asio::async_write(socket, asio::buffer(answer.head.data(), answer.head.size()),
                               asio::use_awaitable);
    for (int i = 0; i < answer.times; ++i) {
      if (answer.pause.count() > 0) co_await sleepFor(answer.pause);
      co_await send(socket, answer.body, answer.rate);
    }
    char rest = 0;
    if (answer.thenHang)
      co_await socket.async_read_some(asio::buffer(&rest, 1), asio::use_awaitable);
  } catch (const asio::system_error&) {
    ++m_dropped;
  }
}

} // namespace vellum::world
