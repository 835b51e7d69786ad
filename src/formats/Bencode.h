// Bencode, the text form of .torrent files, tracker replies and peer extension messages (BEP 3).
// Decoding only. Pure; any thread.
#pragma once
#include "base/Bytes.h"
#include "base/DescribedError.h"
#include <QString>
#include <map>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace vellum {

// The one failure of every torrent parser.
class TorrentParseError final : public DescribedError {
public:
  TorrentParseError(); // "Not a valid .torrent file"
};

// One value. Byte strings stay bytes; dictionary keys are UTF-8 with bad sequences replaced, so two
// raw keys may collapse into one (the later one wins).
class Bencode {
public:
  using Bytes = ByteVector;
  using List = std::vector<Bencode>;
  using Dict = std::map<QString, Bencode>;

  explicit Bencode(std::int64_t value);
  explicit Bencode(Bytes value);
  explicit Bencode(List value);
  explicit Bencode(Dict value);

  // The payload if the value is of that case, else nothing / nullptr. Pointers live as long as
  // the value.
  std::optional<std::int64_t> integer() const;
  const Bytes* bytes() const;
  const List* list() const;
  const Dict* dict() const;
  // The payload of the bytes case as UTF-8 with repair; nothing for every other case.
  std::optional<QString> string() const;
  // The value under `key` if this is a dictionary that has it, else nullptr.
  const Bencode* find(const QString& key) const;

private:
  std::variant<std::int64_t, Bytes, List, Dict> m_value;
};

// A parser over bytes that it does not own: they must outlive it.
class BencodeParser {
public:
  explicit BencodeParser(ByteSpan input) : m_input(input) {}

  // One value at pos(); what follows it is not looked at. Nesting of `depth` 40 and more, and
  // everything malformed, gives nothing; pos() and infoRange() are then meaningless.
  std::optional<Bencode> parse(int depth = 0);

  std::size_t pos() const { return m_pos; }
  // Start and end, in the input, of the value of the last top-level key "info".
  std::optional<std::pair<std::size_t, std::size_t>> infoRange() const { return m_infoRange; }

private:
  std::optional<Bencode> parseDict(int depth);
  std::optional<Bencode> parseList(int depth);
  std::optional<Bencode> parseInteger();
  std::optional<Bencode> parseBytes();

  ByteSpan m_input;
  std::size_t m_pos = 0;
  std::optional<std::pair<std::size_t, std::size_t>> m_infoRange;
};

} // namespace vellum
