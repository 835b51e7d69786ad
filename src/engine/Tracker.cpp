#include "engine/Tracker.h"
#include "base/Resolve.h"
#include <asio/experimental/as_tuple.hpp>
#include <asio/experimental/awaitable_operators.hpp>
#include <asio/ip/udp.hpp>

namespace vellum {

namespace {

using Udp = asio::ip::udp;
using namespace asio::experimental::awaitable_operators;

constexpr auto asTuple = asio::experimental::as_tuple(asio::use_awaitable);
constexpr std::chrono::seconds kUdpTimeout{6}; // for each step
constexpr std::chrono::seconds kHttpTimeout{8};
constexpr int kDefaultUdpPort = 80;
constexpr std::size_t kLargestDatagram = 65536;

// Sends one datagram and waits for one; nothing if either fails.
Flow<std::optional<ByteVector>> exchange(Udp::socket& socket, ByteVector payload) {
  const auto [sendError, sent] = co_await socket.async_send(asio::buffer(payload), asTuple);
  if (sendError) co_return std::nullopt;
  ByteVector reply(kLargestDatagram);
  const auto [error, size] = co_await socket.async_receive(asio::buffer(reply), asTuple);
  if (error) co_return std::nullopt;
  reply.resize(size);
  co_return reply;
}

// Looks the host up, opens the socket to it and takes the first step.
Flow<std::optional<ByteVector>> connectTo(Udp::socket& socket, QUrl url, ByteVector payload) {
  const auto found = co_await resolveHost(url.host());
  if (found.empty()) co_return std::nullopt;
  asio::error_code error;
  const auto port = static_cast<std::uint16_t>(url.port(kDefaultUdpPort));
  socket.connect(Udp::endpoint(found.front(), port), error);
  if (error) co_return std::nullopt;
  co_return co_await exchange(socket, std::move(payload));
}

// Whichever of the step's end and the time-out comes first decides.
Flow<std::optional<ByteVector>> inTime(Flow<std::optional<ByteVector>> step) {
  auto outcome = co_await (std::move(step) || sleepFor(kUdpTimeout));
  if (outcome.index() == 0) co_return std::get<0>(std::move(outcome));
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
  Udp::socket socket(co_await asio::this_coro::executor);
  const std::uint32_t connectId = random32(random);
  const auto connectReply =
      co_await inTime(connectTo(socket, url, toVector(udpConnectRequest(connectId))));
  const auto connection = connectReply ? parseUdpConnect(*connectReply, connectId) : std::nullopt;
  if (!connection) co_return std::nullopt;

  const std::uint32_t announceId = random32(random);
  const auto announce = udpAnnounceRequest(*connection, announceId, request, random32(random));
  const auto announceReply = co_await inTime(exchange(socket, toVector(announce)));
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
