// A piece in assembly, between its first block and its verification.
#pragma once
#include "base/Sha1.h"
#include "engine/Block.h"
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace vellum {

// The bytes of unfinished pieces outside memory: their own place in the payload.
class PieceStore {
public:
  virtual ~PieceStore() = default;
  // Offsets count from the start of the payload. Both give false when the disk does not play along.
  virtual bool write(std::int64_t offset, ByteSpan bytes) = 0;
  virtual bool read(std::int64_t offset, std::span<std::byte> into) = 0;
};

// Blocks are hashed as soon as all before them are there, so that the end of a piece costs no more
// than any other block of it. A piece may be moved out of memory (spilled) into its place in the
// payload: memory stays bounded even if somebody sends one block of every piece.
// Invariant: the first hashedTo() bytes have gone into the digest, in order and once.
class PieceBuf {
public:
  // `offset` is the piece's place in the payload, both in bytes.
  PieceBuf(std::int64_t offset, std::int64_t length, ByteVector memory);

  bool has(std::int64_t block) const { return m_got[static_cast<std::size_t>(block)]; }
  bool isComplete() const { return m_count == blocks(); }
  std::int64_t firstMissingBlock() const { return m_firstMissing; }
  std::int64_t blocks() const { return static_cast<std::int64_t>(m_got.size()); }
  std::int64_t length() const { return m_length; }
  bool inMemory() const { return !m_data.empty(); }

  // Stores a block that is not there yet, exactly as long as it must be. False if a spilled
  // piece's block could not be written: the piece is then worth nothing.
  bool store(std::int64_t block, ByteSpan data, PieceStore& disk);
  // Moves the blocks that are there to their place in the payload; false if that failed.
  bool spill(PieceStore& disk);
  // Once complete: the digest of the whole; nothing if a spilled piece could not be read back.
  std::optional<Hash20> digest(PieceStore& disk);

  ByteSpan bytes() const { return m_data; }
  // The memory, to be used for another piece; what was in it is of no more use.
  ByteVector takeMemory() { return std::move(m_data); }

private:
  std::int64_t blockLength(std::int64_t block) const;
  void hashInMemory();

  std::int64_t m_offset;
  std::int64_t m_length;
  ByteVector m_data; // empty once spilled
  std::vector<bool> m_got;
  std::int64_t m_count = 0;
  std::int64_t m_firstMissing = 0;
  std::int64_t m_hashedTo = 0;
  Sha1 m_sha;
};

} // namespace vellum
