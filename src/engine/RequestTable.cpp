#include "engine/RequestTable.h"

namespace vellum {

namespace {
constexpr std::size_t kFirstSlots = 64;
}

RequestTable::RequestTable() : m_slots(kFirstSlots) {}

std::size_t RequestTable::home(BlockKey key) const {
  // Fibonacci hashing: neighbouring blocks must not cluster.
  return static_cast<std::size_t>(key * 0x9E3779B97F4A7C15ULL >> 32) & (m_slots.size() - 1);
}

std::size_t RequestTable::locate(BlockKey key) const {
  std::size_t at = home(key);
  while (m_slots[at].key != key && m_slots[at].key != kEmpty) at = (at + 1) & (m_slots.size() - 1);
  return at;
}

std::optional<TimePoint> RequestTable::find(BlockKey key) const {
  const Slot& slot = m_slots[locate(key)];
  if (slot.key != key) return std::nullopt;
  return slot.when;
}

void RequestTable::set(BlockKey key, TimePoint when) {
  if ((m_size + 1) * 2 > m_slots.size()) grow();
  Slot& slot = m_slots[locate(key)];
  if (slot.key == kEmpty) ++m_size;
  slot = {key, when};
}

void RequestTable::erase(BlockKey key) {
  const std::size_t mask = m_slots.size() - 1;
  std::size_t hole = locate(key);
  if (m_slots[hole].key != key) return;
  --m_size;
  // Entries behind the hole that could not stand nearer to their home move up into it.
  for (std::size_t at = (hole + 1) & mask; m_slots[at].key != kEmpty; at = (at + 1) & mask) {
    const std::size_t wanted = home(m_slots[at].key);
    if (((at - wanted) & mask) >= ((at - hole) & mask)) {
      m_slots[hole] = m_slots[at];
      hole = at;
    }
  }
  m_slots[hole].key = kEmpty;
}

void RequestTable::grow() {
  std::vector<Slot> old(m_slots.size() * 2);
  old.swap(m_slots);
  for (const Slot& slot : old)
    if (slot.key != kEmpty) m_slots[locate(slot.key)] = slot;
}

std::vector<BlockKey> RequestTable::olderThan(double age, TimePoint now) const {
  std::vector<BlockKey> keys;
  for (const Slot& slot : m_slots)
    if (slot.key != kEmpty && secondsBetween(slot.when, now) > age) keys.push_back(slot.key);
  return keys;
}

} // namespace vellum
