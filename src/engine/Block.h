// Blocks: the 16 KiB units in which pieces are requested. Pure.
#pragma once
#include <cstdint>

namespace vellum {

inline constexpr std::int64_t kBlockSize =
    0x4000;                               // bytes; the last block of a piece may be shorter
inline constexpr int kPipelineDepth = 10; // blocks in flight at one peer

// Block number in the low 12 bits, piece index above them.
using BlockKey = std::uint64_t;

constexpr BlockKey blockKey(std::int64_t piece, std::int64_t block) {
  return static_cast<BlockKey>(block) | static_cast<BlockKey>(piece) << 12;
}

constexpr std::int64_t blockCount(std::int64_t pieceLength) {
  return (pieceLength + kBlockSize - 1) / kBlockSize;
}

} // namespace vellum
