// The TCP connection under a peer.
#pragma once
#include "base/Flow.h"
#include "engine/PeerAddr.h"
#include "engine/PeerConn.h"
#include "engine/SendBuffer.h"
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>

namespace vellum {

// Lives on its session's strand; kept alive by its running coroutine and by its peer. Sends collect
// until the peer's current turn is over and leave in one system call.
class PeerSocket final : public PeerLink, public std::enable_shared_from_this<PeerSocket> {
public:
  static constexpr std::chrono::seconds kHandshakeTimeout{9}; // TCP connect included

  explicit PeerSocket(const Strand& strand);

  // Dials, and feeds the peer until either side ends; the coroutine holds this and the peer.
  Flow<> run(PeerAddr address, std::shared_ptr<PeerConn> peer);

  void send(ByteSpan bytes) override;
  std::size_t unsent() const override { return m_out.size(); }
  void close() override;

private:
  Flow<> connect(const PeerAddr& address);
  Flow<> receive(PeerConn& peer);
  bool drain(PeerConn& peer);
  void takeIn(PeerConn& peer, std::size_t size);
  void watchHandshake(const std::shared_ptr<PeerConn>& peer);
  void flush();
  void waitWritable();

  Strand m_strand;
  asio::ip::tcp::socket m_socket;
  asio::steady_timer m_handshakeTimer;
  std::weak_ptr<PeerConn> m_peer;
  SendBuffer m_out;
  bool m_connected = false;
  bool m_closed = false;
  bool m_inTurn = false;         // the peer handles what was received; a flush follows
  bool m_flushScheduled = false; // a flush will come by itself
};

} // namespace vellum
