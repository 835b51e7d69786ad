#include "engine/Tracker.h"
#include "base/Resolve.h"
#include <asio/experimental/awaitable_operators.hpp>
#include <asio/ip/udp.hpp>

namespace vellum {

namespace {

using Udp = asio::ip::udp;
using namespace asio::experimental::awaitable_operators;

constexpr std::chrono::seconds kUdpTimeout{6};
constexpr std::chrono::seconds kHttpTimeout{8};
constexpr int kDefaultUdpPort = 80;
constexpr std::size_t kLargestDatagram = 65536;

Flow<std::size_t> sendAndReceive(Udp::socket& socket, ByteSpan payload, std::span<std::byte> into) {
  co_await socket.async_send(asio::buffer(payload.data(), payload.size()), asio::use_awaitable);
  co_return co_await socket.async_receive(asio::buffer(into.data(), into.size()),
                                          asio::use_awaitable);
}

// Sends one datagram and waits for one: whichever of answer, error and time-out comes first
// decides. Nothing for the other two.
Flow<std::optional<ByteSpan>> exchange(Udp::socket& socket, ByteSpan payload,
                                       std::span<std::byte> buffer) {
  try {
    const auto outcome =
        co_await (sendAndReceive(socket, payload, buffer) || sleepFor(kUdpTimeout));
    if (outcome.index() == 0) co_return buffer.first(std::get<0>(outcome));
  } catch (const std::exception&) {
    // A refused or cancelled exchange is as good as one without an answer.
  }
  co_return std::nullopt;
}

Flow<std::optional<Udp::endpoint>> endpointOf(const QUrl& url) {
  for (const auto& address : co_await resolveHost(url.host()))
    co_return Udp::endpoint(address, static_cast<std::uint16_t>(url.port(kDefaultUdpPort)));
  co_return std::nullopt;
}

std::uint32_t random32(Random& random) { return static_cast<std::uint32_t>(random.next64()); }

} // namespace

Flow<std::optional<TrackerResult>> Tracker::announce(QString url, AnnounceRequest request,
                                                     Random& random, FetchData fetch) {
  const QUrl parsed(url);
  const QString scheme = parsed.scheme().toLower();
  if (parsed.isValid() && scheme == QLatin1String("udp"))
    co_return co_await udp(parsed, request, random);
  if (parsed.isValid() && (scheme == QLatin1String("http") || scheme == QLatin1String("https")))
    co_return co_await http(url, request, fetch);
  co_return std::nullopt;
}

Flow<std::optional<TrackerResult>> Tracker::udp(QUrl url, AnnounceRequest request, Random& random) {
  if (url.host().isEmpty()) co_return std::nullopt;
  const auto endpoint = co_await endpointOf(url);
  if (!endpoint) co_return std::nullopt;
  Udp::socket socket(co_await asio::this_coro::executor);
  asio::error_code error;
  socket.connect(*endpoint, error);
  if (error) co_return std::nullopt;

  ByteVector buffer(kLargestDatagram);
  const std::uint32_t connectId = random32(random);
  const auto connectRequest = udpConnectRequest(connectId);
  const auto connectReply = co_await exchange(socket, connectRequest, buffer);
  if (!connectReply) co_return std::nullopt;
  const auto connection = parseUdpConnect(*connectReply, connectId);
  if (!connection) co_return std::nullopt;

  const std::uint32_t announceId = random32(random);
  const auto announceRequest =
      udpAnnounceRequest(*connection, announceId, request, random32(random));
  const auto announceReply = co_await exchange(socket, announceRequest, buffer);
  if (!announceReply) co_return std::nullopt;
  co_return parseUdpAnnounce(*announceReply, announceId);
}

Flow<std::optional<TrackerResult>> Tracker::http(QString url, AnnounceRequest request,
                                                 FetchData fetch) {
  const QUrl address(httpAnnounceUrl(url, request), QUrl::StrictMode);
  if (!address.isValid()) co_return std::nullopt;
  try {
    const QByteArray body = co_await fetch(address, kHttpTimeout);
    co_return parseHttpAnnounce(asBytes(body));
  } catch (const std::exception&) {
    // No answer is no result, whatever the reason.
  }
  co_return std::nullopt;
}

} // namespace vellum
