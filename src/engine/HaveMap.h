// Which pieces are verified, and where the next one that is not lies.
#pragma once
#include "base/Bytes.h"
#include <cstdint>
#include <numeric>
#include <vector>

namespace vellum {

// Invariant: a piece that is had is never lost again. m_next[i] is i for a missing piece, and for
// one that is had some later index with nothing missing in between; finding shortens the chains, so
// that passing over what is had costs next to nothing however much that is.
class HaveMap {
public:
  explicit HaveMap(std::int64_t pieceCount = 0) : m_next(static_cast<std::size_t>(pieceCount) + 1) {
    std::iota(m_next.begin(), m_next.end(), 0U);
  }

  std::int64_t size() const { return static_cast<std::int64_t>(m_next.size()) - 1; }
  std::int64_t count() const { return m_count; }
  // False beyond either end.
  bool has(std::int64_t piece) const {
    return piece >= 0 && piece < size() &&
           m_next[static_cast<std::size_t>(piece)] != static_cast<std::uint32_t>(piece);
  }
  void set(std::int64_t piece) {
    if (has(piece)) return;
    m_next[static_cast<std::size_t>(piece)] = static_cast<std::uint32_t>(piece) + 1;
    ++m_count;
  }
  // The first missing piece at or behind `from` (0 to size()), or size() if there is none.
  std::int64_t firstMissing(std::int64_t from) const {
    auto at = static_cast<std::uint32_t>(from);
    while (m_next[at] != at) {
      m_next[at] = m_next[m_next[at]];
      at = m_next[at];
    }
    return at;
  }
  // As a peer's bitfield message carries it: piece 0 in the top bit of the first byte.
  ByteVector bitfield() const;

private:
  mutable std::vector<std::uint32_t> m_next; // finding shortens it and changes no answer
  std::int64_t m_count = 0;
};

} // namespace vellum
