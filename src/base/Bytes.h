// Bytes of the wire and of files: names for them, big-endian integers, hexadecimal text. Pure.
#pragma once
#include <QByteArray>
#include <QString>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace vellum {

using ByteSpan = std::span<const std::byte>;
using ByteVector = std::vector<std::byte>;

// 20 raw bytes: an info hash, a piece hash or a peer id.
using Hash20 = std::array<std::byte, 20>;

inline constexpr std::int64_t kKiB = 1024;
inline constexpr std::int64_t kMiB = 1024 * kKiB;

std::array<std::byte, 4> be32(std::uint32_t value);
// Writes 4 or 8 bytes, big-endian; `out` must be at least that long.
void putBe32(std::span<std::byte> out, std::uint32_t value);
void putBe64(std::span<std::byte> out, std::uint64_t value);
// Reads 4 or 8 big-endian bytes at `offset`; the caller has checked that they are there.
std::uint32_t rd32(ByteSpan bytes, std::size_t offset);
std::uint64_t rd64(ByteSpan bytes, std::size_t offset);

ByteSpan asBytes(const QByteArray& bytes);
ByteSpan asBytes(std::string_view text);
QByteArray toByteArray(ByteSpan bytes);
ByteVector toVector(ByteSpan bytes);

// Two lower-case digits a byte, nothing between.
QString toHex(ByteSpan bytes);
// Exactly 40 hexadecimal digits of either case; anything else gives nothing.
std::optional<Hash20> hash20FromHex(const QString& text);

} // namespace vellum
