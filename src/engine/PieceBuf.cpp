#include "engine/PieceBuf.h"
#include <algorithm>
#include <cstring>

namespace vellum {

namespace {
constexpr std::int64_t kReadBack = 0x40000; // bytes at a time
}

PieceBuf::PieceBuf(std::int64_t offset, std::int64_t length, ByteVector memory)
    : m_offset(offset), m_length(length), m_data(std::move(memory)),
      m_got(static_cast<std::size_t>(blockCount(length))) {}

std::int64_t PieceBuf::blockLength(std::int64_t block) const {
  return std::min(kBlockSize, m_length - block * kBlockSize);
}

bool PieceBuf::store(std::int64_t block, ByteSpan data, PieceStore& disk) {
  const std::int64_t begin = block * kBlockSize;
  if (inMemory())
    std::memcpy(m_data.data() + begin, data.data(), data.size());
  else if (!disk.write(m_offset + begin, data))
    return false;
  m_got[static_cast<std::size_t>(block)] = true;
  ++m_count;
  while (m_firstMissing < blocks() && has(m_firstMissing)) ++m_firstMissing;
  if (inMemory()) {
    hashInMemory();
  } else if (begin == m_hashedTo) {
    m_sha.update(data);
    m_hashedTo += blockLength(block);
  }
  return true;
}

void PieceBuf::hashInMemory() {
  const std::int64_t ready = std::min(m_firstMissing * kBlockSize, m_length);
  if (ready <= m_hashedTo) return;
  m_sha.update(ByteSpan(m_data).subspan(static_cast<std::size_t>(m_hashedTo),
                                        static_cast<std::size_t>(ready - m_hashedTo)));
  m_hashedTo = ready;
}

bool PieceBuf::spill(PieceStore& disk) {
  const ByteVector memory = std::move(m_data);
  m_data.clear();
  for (std::int64_t block = 0; block < blocks(); ++block) {
    if (!has(block)) continue;
    const std::int64_t begin = block * kBlockSize;
    const auto data = ByteSpan(memory).subspan(static_cast<std::size_t>(begin),
                                               static_cast<std::size_t>(blockLength(block)));
    if (!disk.write(m_offset + begin, data)) return false;
  }
  return true;
}

std::optional<Hash20> PieceBuf::digest(PieceStore& disk) {
  ByteVector chunk;
  while (m_hashedTo < m_length) {
    chunk.resize(static_cast<std::size_t>(std::min(kReadBack, m_length - m_hashedTo)));
    if (!disk.read(m_offset + m_hashedTo, chunk)) return std::nullopt;
    m_sha.update(chunk);
    m_hashedTo += static_cast<std::int64_t>(chunk.size());
  }
  return m_sha.finish();
}

} // namespace vellum
