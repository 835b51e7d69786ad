// What every fuzzer is: a check of one input, at which a broken promise ends the process.
#pragma once
#include "base/Bytes.h"

namespace vellum::fuzz {

inline void require(bool kept) {
  if (!kept) __builtin_trap();
}

void check(ByteSpan input);

} // namespace vellum::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vellum::fuzz::check(std::as_bytes(std::span(data, size)));
  return 0;
}
