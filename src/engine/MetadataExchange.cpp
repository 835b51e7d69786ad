#include "engine/MetadataExchange.h"
#include "base/Sha1.h"

namespace vellum {

std::optional<std::int64_t> MetadataExchange::nextRequest(std::int64_t advertisedSize,
                                                          TimePoint now) {
  if (m_size == 0) {
    if (advertisedSize <= 0 || advertisedSize >= kSizeLimit) return std::nullopt;
    m_size = advertisedSize;
  }
  for (std::int64_t piece = 0; piece < pieceCount(); ++piece) {
    if (m_pieces.contains(piece)) continue;
    const auto asked = m_requested.find(piece);
    if (asked != m_requested.end() && secondsBetween(asked->second, now) <= kRetry) continue;
    m_requested[piece] = now;
    return piece;
  }
  return std::nullopt;
}

std::shared_ptr<const TorrentMeta> MetadataExchange::receive(std::int64_t piece, ByteSpan data) {
  if (m_size == 0) return nullptr;
  ByteVector& held = m_pieces[piece];
  m_heldBytes += static_cast<std::int64_t>(data.size()) - static_cast<std::int64_t>(held.size());
  held = toVector(data);
  if (m_heldBytes > kSizeLimit || static_cast<std::int64_t>(m_pieces.size()) > kMostEntries) {
    startOver();
    return nullptr;
  }
  if (static_cast<std::int64_t>(m_pieces.size()) != pieceCount()) return nullptr;

  ByteVector whole;
  whole.reserve(static_cast<std::size_t>(m_heldBytes));
  for (const auto& [index, bytes] : m_pieces) whole.insert(whole.end(), bytes.begin(), bytes.end());
  if (static_cast<std::int64_t>(whole.size()) == m_size && Sha1::of(whole) == m_infoHash)
    if (auto meta = TorrentMeta::parse(whole))
      return std::make_shared<const TorrentMeta>(std::move(*meta));
  startOver();
  return nullptr;
}

void MetadataExchange::startOver() {
  m_pieces.clear();
  m_requested.clear();
  m_heldBytes = 0;
}

} // namespace vellum
