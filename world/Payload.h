// The bytes that a test torrent is made of, in memory or mapped from a file.
#pragma once
#include "base/Bytes.h"
#include <filesystem>
#include <memory>

namespace vellum::world {

// Immutable; any thread. Shared by everything that serves it.
class Payload {
public:
  static std::shared_ptr<const Payload> fromBytes(ByteVector bytes);
  // Maps the whole file, which must not be empty and must not shrink; throws std::system_error.
  static std::shared_ptr<const Payload> fromFile(const std::filesystem::path& path);
  ~Payload();
  Payload(const Payload&) = delete;
  Payload& operator=(const Payload&) = delete;

  ByteSpan bytes() const { return m_bytes; }

private:
  Payload() = default;

  ByteVector m_owned;
  void* m_mapped = nullptr;
  ByteSpan m_bytes;
};

// `size` bytes that no compressor shrinks, the same for the same seed.
ByteVector pseudoRandomBytes(std::size_t size, std::uint64_t seed);

} // namespace vellum::world
