// When each block was last asked of any peer.
#pragma once
#include "base/Clock.h"
#include "engine/Block.h"
#include <optional>
#include <vector>

namespace vellum {

// A hash table with open addressing, because a request must not allocate. It grows to a few times
// the number of blocks that are in flight at once, at most 450 and what is renewed.
class RequestTable {
public:
  RequestTable();

  std::optional<TimePoint> find(BlockKey key) const;
  void set(BlockKey key, TimePoint when);
  void erase(BlockKey key);
  std::size_t size() const { return m_size; }

  // The keys whose time lies more than `age` seconds before `now`.
  std::vector<BlockKey> olderThan(double age, TimePoint now) const;

private:
  struct Slot {
    BlockKey key = kEmpty;
    TimePoint when;
  };
  static constexpr BlockKey kEmpty = ~BlockKey{0};

  std::size_t home(BlockKey key) const;
  // The slot of the key, or the empty slot where it would stand.
  std::size_t locate(BlockKey key) const;
  void grow();

  std::vector<Slot> m_slots; // a power of two, at most half full
  std::size_t m_size = 0;
};

} // namespace vellum
