// Bytes on their way out of a connection.
#pragma once
#include "base/Bytes.h"

namespace vellum {

// One queue at a time. Takes no more memory than about what waits, also on a line that is never
// idle.
class SendBuffer {
public:
  void append(ByteSpan bytes) { m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end()); }
  // What waits, in order; valid until the next append() or consume().
  ByteSpan front() const { return ByteSpan(m_bytes).subspan(m_gone); }
  std::size_t size() const { return m_bytes.size() - m_gone; }
  void consume(std::size_t count) {
    m_gone += count;
    // Moving what waits for every few bytes would cost more than it saves.
    if (m_gone < m_bytes.size() && m_gone < kMostGone) return;
    m_bytes.erase(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(m_gone));
    m_gone = 0;
  }
  void clear() {
    m_bytes.clear();
    m_gone = 0;
  }
  std::size_t held() const { return m_bytes.capacity(); }

private:
  static constexpr std::size_t kMostGone = 0x10000; // bytes

  ByteVector m_bytes;
  std::size_t m_gone = 0; // bytes at the start that are sent
};

} // namespace vellum
