#include "base/Bytes.h"
#include <algorithm>
#include <cstring>

namespace vellum {

std::array<std::byte, 4> be32(std::uint32_t value) {
  std::array<std::byte, 4> out{};
  putBe32(out, value);
  return out;
}

void putBe32(std::span<std::byte> out, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) out[static_cast<std::size_t>(i)] = std::byte(value >> (24 - 8 * i));
}

void putBe64(std::span<std::byte> out, std::uint64_t value) {
  putBe32(out, static_cast<std::uint32_t>(value >> 32));
  putBe32(out.subspan(4), static_cast<std::uint32_t>(value));
}

std::uint32_t rd32(ByteSpan bytes, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i)
    value = value << 8 | std::to_integer<std::uint32_t>(bytes[offset + i]);
  return value;
}

std::uint64_t rd64(ByteSpan bytes, std::size_t offset) {
  return std::uint64_t{rd32(bytes, offset)} << 32 | rd32(bytes, offset + 4);
}

ByteSpan asBytes(const QByteArray& bytes) {
  return std::as_bytes(std::span(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

ByteSpan asBytes(std::string_view text) { return std::as_bytes(std::span(text)); }

QByteArray toByteArray(ByteSpan bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

ByteVector toVector(ByteSpan bytes) { return {bytes.begin(), bytes.end()}; }

QString toHex(ByteSpan bytes) { return QString::fromLatin1(toByteArray(bytes).toHex()); }

std::optional<Hash20> hash20FromHex(const QString& text) {
  const auto isHex = [](QChar c) {
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
  };
  if (text.size() != 40 || !std::all_of(text.begin(), text.end(), isHex)) return std::nullopt;
  const QByteArray raw = QByteArray::fromHex(text.toLatin1());
  Hash20 hash{};
  std::memcpy(hash.data(), raw.constData(), hash.size());
  return hash;
}

} // namespace vellum
