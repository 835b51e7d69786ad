#include "playback/StreamRules.h"
#include "base/Text.h"
#include "formats/TorrentMetadata.h"
#include <QCoreApplication>

namespace vellum {

namespace {
std::optional<std::uint16_t> portOf(const QString& text) {
  for (const QChar c : text)
    if (c < u'0' || c > u'9') return std::nullopt;
  bool fits = false;
  const ushort port = text.toUShort(&fits);
  return fits ? std::optional<std::uint16_t>(port) : std::nullopt;
}
} // namespace

std::vector<PeerAddr> directPeers(const QString& magnet) {
  std::vector<PeerAddr> peers;
  for (const QueryItem& item : queryItems(magnet).value_or(std::vector<QueryItem>{})) {
    const qsizetype colon = item.value ? item.value->lastIndexOf(u':') : -1;
    if (item.name != QLatin1String("x.pe") || colon < 0) continue;
    if (const auto port = portOf(item.value->mid(colon + 1)))
      peers.push_back({item.value->left(colon), *port});
  }
  return peers;
}

std::optional<StreamFailure> checkFreeAtStart(std::int64_t freeBytes) {
  if (freeBytes >= kFreeAtStart) return std::nullopt;
  return StreamFailure::disk(QCoreApplication::translate(
      "StreamFailure",
      "Not enough free disk space for the streaming cache (less than 300 MB free)."));
}

std::optional<StreamFailure> checkFreeFor(std::int64_t neededBytes, std::int64_t freeBytes) {
  // Turned round, since a hostile size plus the margin could overflow.
  if (freeBytes - kFreeMargin >= neededBytes) return std::nullopt;
  return StreamFailure::disk(
      QCoreApplication::translate("StreamFailure",
                                  "Not enough free disk space for the cache (%1 needed).")
          .arg(formatByteCount(neededBytes)));
}

std::optional<QString> NoticeRule::notice(bool isBuffering, const SessionSnapshot& snapshot,
                                          TimePoint now) {
  const bool isStalled = isBuffering && snapshot.peers == 0;
  if (!isStalled)
    m_stalledSince.reset();
  else if (!m_stalledSince)
    m_stalledSince = now;
  if (isStalled && secondsBetween(*m_stalledSince, now) > kStalledNotice)
    return QCoreApplication::translate("StreamState", "Stream stalled — no peers connected");
  if (isBuffering && snapshot.peers > 0 && snapshot.secondsSinceProgress > kWaitingNotice)
    return QCoreApplication::translate("StreamState", "Waiting for data from peers…");
  return std::nullopt;
}

} // namespace vellum
