#include "engine/FrameBuffer.h"
#include <algorithm>
#include <cstring>

namespace vellum {

namespace {
constexpr std::uint8_t kBitfield = 5;
constexpr std::uint8_t kExtended = 20;
constexpr std::size_t kPrefix = 4;
constexpr std::size_t kUsualCapacity = 2 * FrameBuffer::kReadSize;
} // namespace

std::span<std::byte> FrameBuffer::prepare() {
  const std::size_t held = m_end - m_begin;
  if (m_data.size() - m_end < kReadSize) {
    if (held > 0) std::memmove(m_data.data(), m_data.data() + m_begin, held);
    m_begin = 0;
    m_end = held;
    const bool oversized = m_data.size() > 2 * kUsualCapacity && held < kReadSize;
    if (m_data.size() - m_end < kReadSize || oversized) {
      m_data.resize(std::max(kUsualCapacity, held + kReadSize));
      if (oversized) m_data.shrink_to_fit();
    }
  }
  return std::span(m_data).subspan(m_end);
}

void FrameBuffer::commit(std::size_t size) {
  m_end += size;
  dropSkipped();
}

void FrameBuffer::dropSkipped() {
  const std::size_t dropped = std::min(m_skip, m_end - m_begin);
  m_begin += dropped;
  m_skip -= dropped;
  if (m_begin == m_end) m_begin = m_end = 0;
}

std::optional<ByteSpan> FrameBuffer::take(std::size_t size) {
  if (m_end - m_begin < size) return std::nullopt;
  const auto bytes = ByteSpan(m_data).subspan(m_begin, size);
  m_begin += size;
  return bytes;
}

std::size_t FrameBuffer::keptOf(std::uint8_t id, std::size_t frameSize,
                                std::size_t bitfieldBytes) const {
  if (frameSize <= kAlwaysKept) return frameSize;
  if (id == kBitfield) return std::min(frameSize, 1 + bitfieldBytes);
  if (id == kExtended && frameSize <= kLargestExtended) return frameSize;
  return 1;
}

FrameBuffer::State FrameBuffer::next(Frame& frame, std::size_t bitfieldBytes) {
  while (m_end - m_begin >= kPrefix) {
    const auto held = ByteSpan(m_data).subspan(m_begin, m_end - m_begin);
    const std::size_t size = rd32(held, 0);
    if (size > kLargestFrame) return State::TooLong;
    if (size == 0) {
      m_begin += kPrefix;
      continue;
    }
    if (held.size() == kPrefix) return State::Waiting;
    const auto id = std::to_integer<std::uint8_t>(held[kPrefix]);
    const std::size_t kept = keptOf(id, size, bitfieldBytes);
    if (held.size() < kPrefix + kept) return State::Waiting;
    frame = {id, held.subspan(kPrefix + 1, kept - 1), size - 1};
    m_begin += kPrefix + kept;
    m_skip = size - kept;
    dropSkipped();
    return State::Ready;
  }
  return State::Waiting;
}

} // namespace vellum
