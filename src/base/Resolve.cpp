#include "base/Resolve.h"
#include <algorithm>
#include <cstring>
#include <mutex>
#include <netdb.h>
#include <optional>
#include <thread>

namespace vellum {

namespace {

using Addresses = std::vector<asio::ip::address>;

asio::ip::address toAddress(const sockaddr* from) {
  if (from->sa_family == AF_INET) {
    sockaddr_in v4{};
    std::memcpy(&v4, from, sizeof v4);
    return asio::ip::address_v4(ntohl(v4.sin_addr.s_addr));
  }
  sockaddr_in6 v6{};
  std::memcpy(&v6, from, sizeof v6);
  asio::ip::address_v6::bytes_type bytes{};
  std::memcpy(bytes.data(), &v6.sin6_addr, bytes.size());
  return asio::ip::address_v6(bytes, v6.sin6_scope_id);
}

Addresses lookUp(const std::string& host) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* list = nullptr;
  Addresses found;
  if (getaddrinfo(host.c_str(), nullptr, &hints, &list) != 0) return found;
  for (const addrinfo* entry = list; entry != nullptr; entry = entry->ai_next)
    if (entry->ai_family == AF_INET || entry->ai_family == AF_INET6)
      found.push_back(toAddress(entry->ai_addr));
  freeaddrinfo(list);
  std::stable_partition(found.begin(), found.end(), [](const auto& a) { return a.is_v4(); });
  return found;
}

// getaddrinfo cannot be interrupted. It runs on a thread that nobody waits for and that touches
// nothing but this: a cancelled look-up takes the handler away, and the answer finds none.
template <class Handler>
struct LookUp {
  explicit LookUp(Handler h) : handler(std::move(h)) {}
  void finish(asio::error_code error, Addresses found) {
    std::optional<Handler> taken;
    {
      const std::lock_guard lock(mutex);
      if (!handler) return;
      taken.emplace(std::move(*handler));
      handler.reset();
    }
    const auto executor = asio::get_associated_executor(*taken);
    asio::post(executor, [h = std::move(*taken), error, found = std::move(found)]() mutable {
      std::move(h)(error, std::move(found));
    });
  }
  std::mutex mutex; // guards handler
  std::optional<Handler> handler;
};

template <class Handler>
void startLookUp(Handler handler, std::string host) {
  auto slot = asio::get_associated_cancellation_slot(handler);
  const auto pending = std::make_shared<LookUp<Handler>>(std::move(handler));
  if (slot.is_connected())
    slot.assign([pending](asio::cancellation_type) {
      pending->finish(asio::error::operation_aborted, {});
    });
  std::thread([pending, host = std::move(host)] { pending->finish({}, lookUp(host)); }).detach();
}

std::string unbracketed(const QString& host) {
  QString text = host;
  if (text.startsWith(u'[') && text.endsWith(u']')) text = text.mid(1, text.size() - 2);
  return text.toStdString();
}

} // namespace

Flow<Addresses> resolveHost(QString host) {
  const std::string name = unbracketed(host);
  asio::error_code notLiteral;
  const auto literal = asio::ip::make_address(name, notLiteral);
  if (!notLiteral) co_return Addresses{literal};
  co_return co_await asio::async_initiate<const asio::use_awaitable_t<>&,
                                          void(asio::error_code, Addresses)>(
      [](auto handler, std::string text) { startLookUp(std::move(handler), std::move(text)); },
      asio::use_awaitable, name);
}

} // namespace vellum
