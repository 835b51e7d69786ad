// The address of a peer.
#pragma once
#include <QHash>
#include <QString>
#include <cstdint>
#include <functional>

namespace vellum {

struct PeerAddr {
  QString host; // dotted decimal from compact lists; from a link whatever stood there
  std::uint16_t port = 0;
  bool operator==(const PeerAddr&) const = default;
};

} // namespace vellum

template <>
struct std::hash<vellum::PeerAddr> {
  std::size_t operator()(const vellum::PeerAddr& address) const noexcept {
    return qHash(address.host, address.port);
  }
};
