// The messages of tracker exchanges as bytes: BEP 15 (UDP), BEP 3 and BEP 23 (HTTP). Pure.
#pragma once
#include "base/Bytes.h"
#include "engine/PeerAddr.h"
#include <QString>
#include <optional>
#include <vector>

namespace vellum {

// The result of one announce that was answered.
struct TrackerResult {
  std::vector<PeerAddr> peers;
  std::optional<std::int64_t> seeders;
  std::optional<std::int64_t> leechers;
  bool operator==(const TrackerResult&) const = default;
};

// What every announce says about us. The program listens on no port; it always names one.
struct AnnounceRequest {
  Hash20 infoHash{};
  Hash20 peerId{};
  std::uint16_t port = 6881;
};

// IPv4 only, 6 bytes a peer; a rest shorter than that is ignored. Port 0 is kept.
std::vector<PeerAddr> parseCompact(ByteSpan bytes);

// UDP, every integer big-endian.
std::array<std::byte, 16> udpConnectRequest(std::uint32_t transactionId);
// The connection id, or nothing unless at least 16 bytes answer this very transaction.
std::optional<std::uint64_t> parseUdpConnect(ByteSpan reply, std::uint32_t transactionId);
std::array<std::byte, 98> udpAnnounceRequest(std::uint64_t connectionId,
                                             std::uint32_t transactionId,
                                             const AnnounceRequest& request, std::uint32_t key);
// Nothing unless at least 20 bytes answer this very transaction; an error reply is nothing too.
std::optional<TrackerResult> parseUdpAnnounce(ByteSpan reply, std::uint32_t transactionId);

// The address to GET; both binary values have every byte escaped, also letters and digits.
QString httpAnnounceUrl(const QString& tracker, const AnnounceRequest& request);
// Nothing if the body is no dictionary. A refusal by the tracker is a result with no peers.
std::optional<TrackerResult> parseHttpAnnounce(ByteSpan body);

} // namespace vellum
