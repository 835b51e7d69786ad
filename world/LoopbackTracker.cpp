#include "world/LoopbackTracker.h"
#include <asio/read_until.hpp>
#include <asio/write.hpp>

namespace vellum::world {

namespace {

using asio::ip::tcp;
using asio::ip::udp;

constexpr std::uint64_t kProtocolId = 0x41727101980;
constexpr std::uint64_t kConnectionId = 0x5650656c6c756d21;
constexpr std::uint32_t kConnect = 0, kAnnounce = 1, kError = 3;
constexpr std::uint32_t kInterval = 1800; // seconds
constexpr std::size_t kPeerBytes = 6;
constexpr std::size_t kMaxHttpHead = 8192;

const asio::ip::address_v4 kLoopback = asio::ip::address_v4::loopback();

void append32(ByteVector& out, std::uint32_t value) {
  const auto bytes = be32(value);
  out.insert(out.end(), bytes.begin(), bytes.end());
}

} // namespace

LoopbackTracker::LoopbackTracker(std::chrono::milliseconds delay)
    : m_delay(delay), m_udp(m_thread.io(), udp::endpoint(kLoopback, 0)),
      m_http(m_thread.io(), tcp::endpoint(kLoopback, 0)), m_flows(m_thread.io().get_executor()),
      m_udpPort(m_udp.local_endpoint().port()), m_httpPort(m_http.local_endpoint().port()) {
  m_thread.run([this] {
    m_flows.spawn(serveUdp());
    m_flows.spawn(acceptHttp());
  });
}

LoopbackTracker::~LoopbackTracker() {
  m_thread.run([this] {
    m_udp.close();
    m_http.close();
    m_flows.cancelAll();
  });
  m_thread.join();
}

void LoopbackTracker::setPeers(const std::vector<std::uint16_t>& ports) {
  QByteArray compact;
  for (const auto port : ports) {
    const char peer[kPeerBytes] = {127, 0, 0, 1, char(port >> 8), char(port & 0xff)};
    compact.append(peer, kPeerBytes);
  }
  m_thread.run([&] { m_compactPeers = compact; });
}

QString LoopbackTracker::udpUrl() const {
  return QStringLiteral("udp://127.0.0.1:%1/announce").arg(m_udpPort);
}

QString LoopbackTracker::httpUrl() const {
  return QStringLiteral("http://127.0.0.1:%1/announce").arg(m_httpPort);
}

Flow<> LoopbackTracker::serveUdp() {
  for (;;) {
    ByteVector request(2048);
    udp::endpoint from;
    const auto size =
        co_await m_udp.async_receive_from(asio::buffer(request), from, asio::use_awaitable);
    request.resize(size);
    m_flows.spawn(answer(from, std::move(request)));
  }
}

Flow<> LoopbackTracker::answer(udp::endpoint from, ByteVector request) {
  const auto reply = udpReply(request);
  if (m_delay.count() > 0) co_await sleepFor(m_delay);
  if (!reply.empty()) co_await m_udp.async_send_to(asio::buffer(reply), from, asio::use_awaitable);
}

ByteVector LoopbackTracker::udpReply(ByteSpan request) {
  if (request.size() < 16) return {};
  const auto action = rd32(request, 8);
  ByteVector reply;
  if (action == kConnect && rd64(request, 0) == kProtocolId) {
    append32(reply, kConnect);
    append32(reply, rd32(request, 12));
    append32(reply, std::uint32_t(kConnectionId >> 32));
    append32(reply, std::uint32_t(kConnectionId));
  } else if (action == kAnnounce && request.size() >= 98 && rd64(request, 0) == kConnectionId) {
    ++m_udpAnnounces;
    const auto peers = asBytes(m_compactPeers);
    append32(reply, kAnnounce);
    append32(reply, rd32(request, 12));
    append32(reply, kInterval);
    append32(reply, 0); // leechers
    append32(reply, std::uint32_t(peers.size() / kPeerBytes));
    reply.insert(reply.end(), peers.begin(), peers.end());
  } else {
    append32(reply, kError);
    append32(reply, rd32(request, 12));
  }
  return reply;
}

Flow<> LoopbackTracker::acceptHttp() {
  for (;;) m_flows.spawn(serveHttp(co_await m_http.async_accept(asio::use_awaitable)));
}

Flow<> LoopbackTracker::serveHttp(tcp::socket socket) {
  std::string head;
  co_await asio::async_read_until(socket, asio::dynamic_buffer(head, kMaxHttpHead), "\r\n\r\n",
                                  asio::use_awaitable);
  const bool isAnnounce =
      head.starts_with("GET /announce?") && head.find("info_hash=") != std::string::npos;
  QByteArray body;
  if (isAnnounce) {
    ++m_httpAnnounces;
    body = "d8:completei" + QByteArray::number(m_compactPeers.size() / qsizetype(kPeerBytes)) +
           "e10:incompletei0e8:intervali" + QByteArray::number(kInterval) + "e5:peers" +
           QByteArray::number(m_compactPeers.size()) + ':' + m_compactPeers + 'e';
  }
  const QByteArray reply = (isAnnounce ? "HTTP/1.1 200 OK\r\n" : "HTTP/1.1 404 Not Found\r\n") +
                           QByteArray("Content-Type: text/plain\r\nConnection: close\r\n") +
                           "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
  co_await asio::async_write(socket, asio::buffer(reply.constData(), std::size_t(reply.size())),
                             asio::use_awaitable);
}

} // namespace vellum::world
