// A tracker on 127.0.0.1 that speaks UDP (BEP 15) and HTTP with compact lists (BEP 23).
#pragma once
#include "base/Bytes.h"
#include "base/Flow.h"
#include "world/LoopbackThread.h"
#include <QByteArray>
#include <QString>
#include <asio/ip/tcp.hpp>
#include <asio/ip/udp.hpp>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <vector>

namespace vellum::world {

// Runs on a thread of its own; public operations from any thread. Answers every info hash with the
// peers that it was told of, all at 127.0.0.1.
class LoopbackTracker {
public:
  // `delay` is put before every UDP reply.
  explicit LoopbackTracker(std::chrono::milliseconds delay = {});
  ~LoopbackTracker();

  void setPeers(const std::vector<std::uint16_t>& ports);
  QString udpUrl() const; // udp://127.0.0.1:port/announce
  QString httpUrl() const;
  int udpAnnounces() const { return m_udpAnnounces; }
  int httpAnnounces() const { return m_httpAnnounces; }

private:
  Flow<> serveUdp();
  Flow<> answer(asio::ip::udp::endpoint from, ByteVector request);
  ByteVector udpReply(ByteSpan request);
  Flow<> acceptHttp();
  Flow<> serveHttp(asio::ip::tcp::socket socket);

  LoopbackThread m_thread;
  std::chrono::milliseconds m_delay;
  asio::ip::udp::socket m_udp;
  asio::ip::tcp::acceptor m_http;
  FlowGroup m_flows;
  QByteArray m_compactPeers; // on the thread
  std::uint16_t m_udpPort = 0;
  std::uint16_t m_httpPort = 0;
  std::atomic<int> m_udpAnnounces = 0;
  std::atomic<int> m_httpAnnounces = 0;
};

} // namespace vellum::world
