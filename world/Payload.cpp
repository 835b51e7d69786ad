#include "world/Payload.h"
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>

namespace vellum::world {

std::shared_ptr<const Payload> Payload::fromBytes(ByteVector bytes) {
  const std::shared_ptr<Payload> payload(new Payload);
  payload->m_owned = std::move(bytes);
  payload->m_bytes = payload->m_owned;
  return payload;
}

std::shared_ptr<const Payload> Payload::fromFile(const std::filesystem::path& path) {
  const auto size = static_cast<std::size_t>(std::filesystem::file_size(path));
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  void* mapped = file < 0 ? MAP_FAILED : ::mmap(nullptr, size, PROT_READ, MAP_SHARED, file, 0);
  const int error = errno;
  if (file >= 0) ::close(file);
  if (mapped == MAP_FAILED) throw std::system_error(error, std::generic_category(), path.string());
  const std::shared_ptr<Payload> payload(new Payload);
  payload->m_mapped = mapped;
  payload->m_bytes = {static_cast<const std::byte*>(mapped), size};
  return payload;
}

Payload::~Payload() {
  if (m_mapped != nullptr) ::munmap(m_mapped, m_bytes.size());
}

ByteVector pseudoRandomBytes(std::size_t size, std::uint64_t seed) {
  ByteVector bytes(size);
  std::uint64_t state = seed;
  for (std::size_t at = 0; at < size; at += sizeof state) {
    // SplitMix64.
    std::uint64_t mixed = state += 0x9e3779b97f4a7c15;
    mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9;
    mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111eb;
    mixed ^= mixed >> 31;
    std::memcpy(bytes.data() + at, &mixed, std::min(sizeof mixed, size - at));
  }
  return bytes;
}

} // namespace vellum::world
