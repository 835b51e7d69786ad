// The block keys that one peer was asked for and has not delivered: a set of at most ten.
#pragma once
#include "engine/Block.h"
#include <array>
#include <span>

namespace vellum {

// Invariant: no key stands in it twice. Never allocates.
class InflightSet {
public:
  bool isFull() const { return m_size == kPipelineDepth; }
  bool contains(BlockKey key) const {
    for (const BlockKey held : keys())
      if (held == key) return true;
    return false;
  }
  // Only while it is not full.
  void insert(BlockKey key) {
    if (!contains(key)) m_keys[m_size++] = key;
  }
  void erase(BlockKey key) {
    for (std::size_t i = 0; i < m_size; ++i)
      if (m_keys[i] == key) m_keys[i--] = m_keys[--m_size];
  }
  void clear() { m_size = 0; }
  std::size_t size() const { return m_size; }
  std::span<const BlockKey> keys() const { return {m_keys.data(), m_size}; }

private:
  std::array<BlockKey, kPipelineDepth> m_keys{};
  std::size_t m_size = 0;
};

} // namespace vellum
