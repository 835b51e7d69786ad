#include "formats/Bencode.h"
#include "formats/Utf8.h"
#include <QCoreApplication>
#include <algorithm>
#include <charconv>

namespace vellum {

namespace {

constexpr int kDeepest = 40;

bool isDigit(std::byte byte) { return byte >= std::byte{'0'} && byte <= std::byte{'9'}; }

// One optional sign, then digits alone, fitting 64 bits.
std::optional<std::int64_t> parseDecimal(ByteSpan text) {
  const auto* begin = reinterpret_cast<const char*>(text.data());
  const auto* const end = begin + text.size();
  if (begin != end && *begin == '+') {
    ++begin;
    if (begin != end && *begin == '-') return std::nullopt;
  }
  std::int64_t value = 0;
  const auto [rest, error] = std::from_chars(begin, end, value);
  if (error != std::errc{} || rest != end) return std::nullopt;
  return value;
}

} // namespace

TorrentParseError::TorrentParseError()
    : DescribedError(QCoreApplication::translate("TorrentFile", "Not a valid .torrent file")) {}

Bencode::Bencode(std::int64_t value) : m_value(value) {}
Bencode::Bencode(Bytes value) : m_value(std::move(value)) {}
Bencode::Bencode(List value) : m_value(std::move(value)) {}
Bencode::Bencode(Dict value) : m_value(std::move(value)) {}

std::optional<std::int64_t> Bencode::integer() const {
  const auto* value = std::get_if<std::int64_t>(&m_value);
  return value != nullptr ? std::optional(*value) : std::nullopt;
}

const Bencode::Bytes* Bencode::bytes() const { return std::get_if<Bytes>(&m_value); }
const Bencode::List* Bencode::list() const { return std::get_if<List>(&m_value); }
const Bencode::Dict* Bencode::dict() const { return std::get_if<Dict>(&m_value); }

std::optional<QString> Bencode::string() const {
  if (bytes() == nullptr) return std::nullopt;
  return utf8Text(*bytes());
}

const Bencode* Bencode::find(const QString& key) const {
  if (dict() == nullptr) return nullptr;
  const auto found = dict()->find(key);
  return found != dict()->end() ? &found->second : nullptr;
}

std::optional<Bencode> BencodeParser::parse(int depth) {
  if (m_pos >= m_input.size() || depth >= kDeepest) return std::nullopt;
  const std::byte kind = m_input[m_pos];
  if (kind == std::byte{'d'}) return parseDict(depth);
  if (kind == std::byte{'l'}) return parseList(depth);
  if (kind == std::byte{'i'}) return parseInteger();
  if (isDigit(kind)) return parseBytes();
  return std::nullopt;
}

std::optional<Bencode> BencodeParser::parseDict(int depth) {
  ++m_pos;
  Bencode::Dict dict;
  while (m_pos < m_input.size()) {
    if (m_input[m_pos] == std::byte{'e'}) {
      ++m_pos;
      return Bencode(std::move(dict));
    }
    const auto key = parse(depth + 1);
    if (!key || key->bytes() == nullptr) return std::nullopt;
    const std::size_t start = m_pos;
    auto value = parse(depth + 1);
    if (!value) return std::nullopt;
    const QString name = utf8Text(*key->bytes());
    if (depth == 0 && name == QLatin1String("info")) m_infoRange.emplace(start, m_pos);
    dict.insert_or_assign(name, std::move(*value));
  }
  return std::nullopt;
}

std::optional<Bencode> BencodeParser::parseList(int depth) {
  ++m_pos;
  Bencode::List list;
  while (m_pos < m_input.size()) {
    if (m_input[m_pos] == std::byte{'e'}) {
      ++m_pos;
      return Bencode(std::move(list));
    }
    auto element = parse(depth + 1);
    if (!element) return std::nullopt;
    list.push_back(std::move(*element));
  }
  return std::nullopt;
}

std::optional<Bencode> BencodeParser::parseInteger() {
  const auto text = m_input.subspan(m_pos + 1);
  const auto end = std::find(text.begin(), text.end(), std::byte{'e'});
  const auto length = static_cast<std::size_t>(end - text.begin());
  if (end == text.end()) {
    m_pos = m_input.size();
    return std::nullopt;
  }
  const auto value = parseDecimal(text.first(length));
  m_pos += length + 2;
  return value ? std::optional(Bencode(*value)) : std::nullopt;
}

std::optional<Bencode> BencodeParser::parseBytes() {
  const auto text = m_input.subspan(m_pos);
  const auto colon = std::find(text.begin(), text.end(), std::byte{':'});
  const auto digits = static_cast<std::size_t>(colon - text.begin());
  if (colon == text.end()) {
    m_pos = m_input.size();
    return std::nullopt;
  }
  const auto length = parseDecimal(text.first(digits));
  m_pos += digits + 1;
  const auto rest = m_input.subspan(m_pos);
  // Never negative: its first byte is a digit.
  if (!length || static_cast<std::uint64_t>(*length) > rest.size()) return std::nullopt;
  const auto size = static_cast<std::size_t>(*length);
  m_pos += size;
  return Bencode(toVector(rest.first(size)));
}

} // namespace vellum
