#include "engine/PeerSocket.h"
#include "base/Resolve.h"
#include <asio/experimental/as_tuple.hpp>
#include <cassert>

namespace vellum {

namespace {
constexpr auto asTuple = asio::experimental::as_tuple(asio::use_awaitable);
constexpr int kReadsPerTurn = 8;
} // namespace

PeerSocket::PeerSocket(const Strand& strand)
    : m_strand(strand), m_socket(strand), m_handshakeTimer(strand) {}

Flow<> PeerSocket::run(PeerAddr address, std::shared_ptr<PeerConn> peer) {
  const auto self = shared_from_this();
  m_peer = peer;
  watchHandshake(peer);
  try {
    co_await connect(address);
    peer->connected();
    co_await receive(*peer);
  } catch (const std::exception&) {
    // Every failure of a connection ends the peer, and nothing else.
  }
  peer->close();
}

void PeerSocket::watchHandshake(const std::shared_ptr<PeerConn>& peer) {
  m_handshakeTimer.expires_after(kHandshakeTimeout);
  m_handshakeTimer.async_wait([weak = std::weak_ptr(peer)](asio::error_code error) {
    const auto held = weak.lock();
    if (!error && held) held->handshakeTimedOut();
  });
}

Flow<> PeerSocket::connect(const PeerAddr& address) {
  const auto found = co_await resolveHost(address.host);
  if (m_closed || found.empty()) throw asio::system_error(asio::error::host_not_found);
  const asio::ip::tcp::endpoint endpoint(found.front(), address.port);
  m_socket.open(endpoint.protocol());
  co_await m_socket.async_connect(endpoint, asio::use_awaitable);
  m_socket.set_option(asio::ip::tcp::no_delay(true));
  m_socket.non_blocking(true);
  m_connected = true;
}

Flow<> PeerSocket::receive(PeerConn& peer) {
  while (!peer.isClosed()) {
    const auto room = peer.receiveRoom().first(FrameBuffer::kReadSize);
    const auto [error, size] =
        co_await m_socket.async_read_some(asio::buffer(room.data(), room.size()), asTuple);
    if (error || size == 0) co_return;
    takeIn(peer, size);
    if (!drain(peer)) co_return;
  }
}

// Takes what has arrived meanwhile without a trip through the reactor; a few reads, since other
// peers wait for the strand. False at the end of the connection.
bool PeerSocket::drain(PeerConn& peer) {
  for (int i = 0; i < kReadsPerTurn && !peer.isClosed(); ++i) {
    const auto room = peer.receiveRoom().first(FrameBuffer::kReadSize);
    asio::error_code error;
    const std::size_t size = m_socket.read_some(asio::buffer(room.data(), room.size()), error);
    if (error == asio::error::would_block) return true;
    if (error || size == 0) return false;
    takeIn(peer, size);
  }
  return true;
}

void PeerSocket::takeIn(PeerConn& peer, std::size_t size) {
  m_inTurn = true;
  peer.received(size);
  m_inTurn = false;
  flush();
}

void PeerSocket::send(ByteSpan bytes) {
  assert(m_strand.running_in_this_thread());
  m_out.append(bytes);
  if (m_flushScheduled || m_inTurn) return;
  m_flushScheduled = true;
  asio::post(m_strand, [self = shared_from_this()] {
    self->m_flushScheduled = false;
    self->flush();
  });
}

void PeerSocket::flush() {
  if (!m_connected || unsent() == 0) return;
  asio::error_code error;
  const ByteSpan waiting = m_out.front();
  m_out.consume(m_socket.write_some(asio::buffer(waiting.data(), waiting.size()), error));
  // Other errors show on the receiving side.
  if (error == asio::error::would_block || (!error && unsent() > 0)) return waitWritable();
  const auto peer = m_peer.lock();
  if (!error && peer) peer->writable();
}

void PeerSocket::waitWritable() {
  if (m_flushScheduled) return;
  m_flushScheduled = true;
  m_socket.async_wait(asio::ip::tcp::socket::wait_write,
                      [self = shared_from_this()](asio::error_code error) {
                        self->m_flushScheduled = false;
                        if (!error) self->flush();
                      });
}

void PeerSocket::close() {
  assert(m_strand.running_in_this_thread());
  m_closed = true;
  asio::error_code ignored;
  m_socket.close(ignored);
  m_handshakeTimer.cancel();
  m_connected = false;
  m_out.clear();
}

} // namespace vellum
