// The info dictionary from peers, in pieces of 16 KiB (BEP 9, fetching only).
#pragma once
#include "base/Clock.h"
#include "formats/TorrentMeta.h"
#include <map>
#include <memory>
#include <optional>

namespace vellum {

// Lives on its session's strand; decides, and sends nothing itself. Nothing is believed before the
// SHA-1 of the whole equals the info hash; a wrong whole is thrown away and begun again.
class MetadataExchange {
public:
  static constexpr std::int64_t kPieceSize = 16384;    // bytes
  static constexpr std::int64_t kSizeLimit = 8 * kMiB; // an advertised size must lie below it
  static constexpr double kRetry = 8.0;                // seconds per piece
  // What is held of one dictionary: no more bytes than one may have, and no more pieces than that
  // could be, so that a peer that invents indexes costs no memory.
  static constexpr std::int64_t kMostEntries = 2 * kSizeLimit / kPieceSize;

  explicit MetadataExchange(const Hash20& infoHash) : m_infoHash(infoHash) {}

  // Which piece to ask of a peer that advertised this size (0 or less: none), if any. The first
  // acceptable size decides for good.
  std::optional<std::int64_t> nextRequest(std::int64_t advertisedSize, TimePoint now);
  // Stores one piece; gives the metadata when it was the last and the whole is right.
  std::shared_ptr<const TorrentMeta> receive(std::int64_t piece, ByteSpan data);

  std::int64_t size() const { return m_size; } // bytes, 0 while unknown
  std::size_t heldPieces() const { return m_pieces.size(); }

private:
  std::int64_t pieceCount() const { return (m_size + kPieceSize - 1) / kPieceSize; }
  void startOver();

  Hash20 m_infoHash;
  std::int64_t m_size = 0;
  std::map<std::int64_t, ByteVector> m_pieces;
  std::int64_t m_heldBytes = 0;
  std::map<std::int64_t, TimePoint> m_requested;
};

} // namespace vellum
