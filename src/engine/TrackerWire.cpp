#include "engine/TrackerWire.h"
#include "formats/Bencode.h"
#include <algorithm>

namespace vellum {

namespace {

constexpr std::uint64_t kProtocolId = 0x41727101980;
constexpr std::uint32_t kActionConnect = 0;
constexpr std::uint32_t kActionAnnounce = 1;
constexpr std::uint32_t kEventStarted = 2;
constexpr std::uint32_t kDefaultNumWant = 0xFFFFFFFF;

bool answers(ByteSpan reply, std::size_t least, std::uint32_t action, std::uint32_t transactionId) {
  return reply.size() >= least && rd32(reply, 0) == action && rd32(reply, 4) == transactionId;
}

QString escaped(const Hash20& value) {
  QString text;
  for (const std::byte byte : value)
    text +=
        u'%' + QStringLiteral("%1").arg(std::to_integer<int>(byte), 2, 16, QChar(u'0')).toUpper();
  return text;
}

} // namespace

std::vector<PeerAddr> parseCompact(ByteSpan bytes) {
  std::vector<PeerAddr> peers;
  peers.reserve(bytes.size() / 6);
  for (std::size_t at = 0; at + 6 <= bytes.size(); at += 6) {
    const auto number = [&](std::size_t i) { return std::to_integer<int>(bytes[at + i]); };
    peers.push_back(
        {QStringLiteral("%1.%2.%3.%4").arg(number(0)).arg(number(1)).arg(number(2)).arg(number(3)),
         static_cast<std::uint16_t>(number(4) << 8 | number(5))});
  }
  return peers;
}

std::array<std::byte, 16> udpConnectRequest(std::uint32_t transactionId) {
  std::array<std::byte, 16> out{};
  const std::span all(out);
  putBe64(all, kProtocolId);
  putBe32(all.subspan(8), kActionConnect);
  putBe32(all.subspan(12), transactionId);
  return out;
}

std::optional<std::uint64_t> parseUdpConnect(ByteSpan reply, std::uint32_t transactionId) {
  if (!answers(reply, 16, kActionConnect, transactionId)) return std::nullopt;
  return rd64(reply, 8);
}

std::array<std::byte, 98> udpAnnounceRequest(std::uint64_t connectionId,
                                             std::uint32_t transactionId,
                                             const AnnounceRequest& request, std::uint32_t key) {
  std::array<std::byte, 98> out{};
  const std::span all(out);
  putBe64(all, connectionId);
  putBe32(all.subspan(8), kActionAnnounce);
  putBe32(all.subspan(12), transactionId);
  std::copy(request.infoHash.begin(), request.infoHash.end(), out.begin() + 16);
  std::copy(request.peerId.begin(), request.peerId.end(), out.begin() + 36);
  putBe64(all.subspan(56), 0); // downloaded
  putBe64(all.subspan(64), 1); // left
  putBe64(all.subspan(72), 0); // uploaded
  putBe32(all.subspan(80), kEventStarted);
  putBe32(all.subspan(84), 0); // our address: as the tracker sees it
  putBe32(all.subspan(88), key);
  putBe32(all.subspan(92), kDefaultNumWant);
  out[96] = std::byte(request.port >> 8);
  out[97] = std::byte(request.port & 0xFF);
  return out;
}

std::optional<TrackerResult> parseUdpAnnounce(ByteSpan reply, std::uint32_t transactionId) {
  if (!answers(reply, 20, kActionAnnounce, transactionId)) return std::nullopt;
  TrackerResult result;
  result.leechers = rd32(reply, 12);
  result.seeders = rd32(reply, 16);
  result.peers = parseCompact(reply.subspan(20));
  return result;
}

QString httpAnnounceUrl(const QString& tracker, const AnnounceRequest& request) {
  return tracker + (tracker.contains(u'?') ? u'&' : u'?') + QStringLiteral("info_hash=") +
         escaped(request.infoHash) + QStringLiteral("&peer_id=") + escaped(request.peerId) +
         QStringLiteral("&port=%1").arg(request.port) +
         QStringLiteral("&uploaded=0&downloaded=0&left=1&compact=1&numwant=80&event=started");
}

std::optional<TrackerResult> parseHttpAnnounce(ByteSpan body) {
  const auto root = BencodeParser(body).parse();
  if (!root || root->dict() == nullptr) return std::nullopt;
  const auto count = [&](const char* key) -> std::optional<std::int64_t> {
    const Bencode* value = root->find(QLatin1String(key));
    return value != nullptr ? value->integer() : std::nullopt;
  };
  TrackerResult result;
  const Bencode* peers = root->find(QStringLiteral("peers"));
  if (peers != nullptr && peers->bytes() != nullptr) result.peers = parseCompact(*peers->bytes());
  result.seeders = count("complete");
  result.leechers = count("incomplete");
  return result;
}

} // namespace vellum
