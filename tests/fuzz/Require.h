// How a fuzzer says that a promise was broken.
#pragma once

namespace vellum::fuzz {

inline void require(bool kept) {
  if (!kept) __builtin_trap();
}

} // namespace vellum::fuzz
