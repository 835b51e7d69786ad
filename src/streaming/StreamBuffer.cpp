#include "streaming/StreamBuffer.h"
#include <algorithm>
#include <limits>
#include <map>
#include <optional>

namespace vellum {

namespace {

std::int64_t saturatingSum(std::int64_t a, std::int64_t b) {
  std::int64_t sum = 0;
  if (__builtin_add_overflow(a, b, &sum))
    return b > 0 ? std::numeric_limits<std::int64_t>::max()
                 : std::numeric_limits<std::int64_t>::min();
  return sum;
}

// Builds an order whose runs never overlap: of each added run only what is not there yet is placed.
class OrderBuilder {
public:
  void add(const PieceRun& run) {
    std::int64_t next = run.first;
    while (next <= run.last) {
      const auto placed = placedAtOrBehind(next);
      const std::int64_t gapEnd = placed ? std::min(placed->first - 1, run.last) : run.last;
      if (next <= gapEnd) append({next, gapEnd});
      next = placed ? std::max(next, std::min(placed->last, run.last)) + 1 : run.last + 1;
    }
  }
  PieceOrder take() { return std::move(m_order); }

private:
  // The placed run that holds `piece`, or else the nearest one behind it.
  std::optional<PieceRun> placedAtOrBehind(std::int64_t piece) const {
    auto found = m_sorted.upper_bound(piece);
    if (found != m_sorted.begin() && std::prev(found)->second >= piece) --found;
    if (found == m_sorted.end()) return std::nullopt;
    return PieceRun{found->first, found->second};
  }
  void append(const PieceRun& run) {
    m_sorted.emplace(run.first, run.last);
    if (!m_order.empty() && m_order.back().last + 1 == run.first)
      m_order.back().last = run.last;
    else
      m_order.push_back(run);
  }

  PieceOrder m_order;
  std::map<std::int64_t, std::int64_t> m_sorted; // first to last of every placed run
};

} // namespace

std::vector<std::int64_t> expand(const PieceOrder& order) {
  std::vector<std::int64_t> pieces;
  for (const PieceRun& run : order)
    for (std::int64_t piece = run.first; piece <= run.last; ++piece) pieces.push_back(piece);
  return pieces;
}

std::int64_t StreamBuffer::clamped(std::int64_t pos) const {
  return std::clamp<std::int64_t>(pos, 0, std::max<std::int64_t>(fileLength - 1, 0));
}

PieceRun StreamBuffer::pieces(std::int64_t relStart, std::int64_t length) const {
  if (length < 1 || fileLength < 1) return {};
  const std::int64_t low = clamped(relStart);
  const std::int64_t end = std::min(fileLength, saturatingSum(relStart, length));
  const std::int64_t high = std::max(low, end - 1);
  return {(fileOffset + low) / pieceLength,
          std::min((fileOffset + high) / pieceLength, pieceCount - 1)};
}

PieceRun StreamBuffer::tailPieces() const {
  return pieces(std::max<std::int64_t>(fileLength - kTail, 0), kTail);
}

PieceOrder StreamBuffer::priorityOrder() const {
  OrderBuilder builder;
  builder.add(windowPieces());
  builder.add(tailPieces());
  for (const PieceRun& run : extraPieces) builder.add(run);
  builder.add(pieces(playhead, fileLength - playhead));
  builder.add(pieces(0, fileLength));
  return builder.take();
}

} // namespace vellum
