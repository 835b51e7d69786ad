// Host names to addresses.
#pragma once
#include "base/Flow.h"
#include <QString>
#include <asio/ip/address.hpp>
#include <vector>

namespace vellum {

// The addresses of a host, IPv4 first; empty if there are none. A literal address (IPv6 also in
// brackets) is answered at once, without asking anybody. Cancellable: throws asio::system_error.
Flow<std::vector<asio::ip::address>> resolveHost(QString host);

} // namespace vellum
