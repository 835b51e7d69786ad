// The streaming policy: from the player's position in a file to the order in which to fetch pieces,
// and to a measure of how much of what playback needs now is there. A plain value; its owner's
// queue.
#pragma once
#include <cstdint>
#include <span>
#include <vector>

namespace vellum {

// Consecutive piece indexes, both ends inclusive. Empty when last < first.
struct PieceRun {
  std::int64_t first = 0;
  std::int64_t last = -1;
  bool empty() const { return last < first; }
  bool operator==(const PieceRun&) const = default;
};

// An order of pieces as the runs that it is made of: its length depends on the number of runs,
// never on the number of pieces. No piece stands in it twice.
using PieceOrder = std::vector<PieceRun>;

// The indexes of an order, one by one.
std::vector<std::int64_t> expand(const PieceOrder& order);

class StreamBuffer {
public:
  static constexpr std::int64_t kWindow = 0x800000;         // bytes from the playhead
  static constexpr std::int64_t kTail = 0x300000;           // bytes back from the end of the file
  static constexpr std::int64_t kTailProbeFloor = 0x600000; // files up to this size have no probes

  std::int64_t fileOffset = 0;  // bytes, of the file in the torrent's payload
  std::int64_t fileLength = 0;  // bytes
  std::int64_t pieceLength = 1; // bytes, above 0
  std::int64_t pieceCount = 0;
  PieceOrder extraPieces;    // of the subtitles; may repeat and overlap the video's pieces
  std::int64_t playhead = 0; // byte offset in the file

  // The pieces that a byte range of the file touches; positions are relative to the file.
  PieceRun pieces(std::int64_t relStart, std::int64_t length) const;

  // Window, tail, extra pieces, the rest ahead of the playhead, what lies behind it. Each piece of
  // the selection stands in it exactly once, at its earliest place.
  PieceOrder priorityOrder() const;

  // Fraction, 0.0 to 1.0, of the window's and the tail's pieces that are had. `have` is asked for
  // piece indexes at or above 0 only and must answer false beyond its end.
  template <class Have>
  double progress(const Have& have) const;

  // A read in the last bytes of a file that is large enough: the container's index, not a seek.
  bool isTailProbe(std::int64_t pos) const {
    return fileLength > kTailProbeFloor && pos >= fileLength - kTail;
  }
  // `pos` clamped into the file; 0 for a file of no bytes.
  std::int64_t clamped(std::int64_t pos) const;

  PieceRun windowPieces() const { return pieces(playhead, kWindow); }
  PieceRun tailPieces() const;
};

template <class Have>
double StreamBuffer::progress(const Have& have) const {
  std::int64_t needed = 0;
  std::int64_t had = 0;
  const PieceRun window = windowPieces();
  const auto count = [&](std::int64_t piece) {
    ++needed;
    had += have(piece) ? 1 : 0;
  };
  for (std::int64_t piece = window.first; piece <= window.last; ++piece) count(piece);
  const PieceRun tail = tailPieces();
  for (std::int64_t piece = tail.first; piece <= tail.last; ++piece)
    if (piece < window.first || piece > window.last) count(piece);
  return needed == 0 ? 1.0 : static_cast<double>(had) / static_cast<double>(needed);
}

} // namespace vellum
