// An HTTP server on 127.0.0.1 that answers with whatever bytes a test wants, well-formed or not.
#pragma once
#include "base/Flow.h"
#include "world/LoopbackThread.h"
#include <QByteArray>
#include <QUrl>
#include <asio/ip/tcp.hpp>
#include <atomic>
#include <chrono>
#include <functional>

namespace vellum::world {

// Runs on a thread of its own; public operations from any thread. One request a connection.
class ScriptedServer {
public:
  struct Answer {
    QByteArray head; // sent once
    QByteArray body; // sent `times` times, with a pause before each
    int times = 1;
    std::chrono::milliseconds pause{0};
    bool thenHang = false; // keeps the connection until the other side drops it
    double rate = 0;       // of the body, bytes per second; 0 for no limit
  };
  // Called on the server's thread with the head of each request.
  using Script = std::function<Answer(const QByteArray& request)>;

  explicit ScriptedServer(Script script);
  ~ScriptedServer();

  QUrl url(const QString& path = QStringLiteral("/")) const;
  int requests() const { return m_requests; }
  // Connections that the other side closed before all was sent.
  int dropped() const { return m_dropped; }

  // A well-formed answer of one body.
  static Answer reply(int status, const QByteArray& body, const QByteArray& headers = {});

private:
  Flow<> accept();
  Flow<> serve(asio::ip::tcp::socket socket);
  static Flow<> send(asio::ip::tcp::socket& socket, const QByteArray& body, double rate);

  LoopbackThread m_thread;
  Script m_script;
  asio::ip::tcp::acceptor m_acceptor;
  FlowGroup m_flows;
  std::uint16_t m_port;
  std::atomic<int> m_requests = 0;
  std::atomic<int> m_dropped = 0;
};

} // namespace vellum::world
