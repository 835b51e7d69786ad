#include "Fuzz.h"
#include "formats/Bencode.h"

// What was read lies within the input, and the same bytes alone are read alike.
void vellum::fuzz::check(ByteSpan input) {
  BencodeParser parser(input);
  const auto value = parser.parse();
  if (!value) return;
  require(parser.pos() > 0 && parser.pos() <= input.size());

  BencodeParser again(input.first(parser.pos()));
  require(again.parse().has_value() && again.pos() == parser.pos());
  require(again.infoRange() == parser.infoRange());
  if (parser.pos() > 1) require(!BencodeParser(input.first(parser.pos() - 1)).parse());

  const auto range = parser.infoRange();
  require(range.has_value() == (value->find(QStringLiteral("info")) != nullptr));
  if (!range) return;
  require(range->first < range->second && range->second < parser.pos());
  BencodeParser info(input.subspan(range->first, range->second - range->first));
  require(info.parse().has_value() && info.pos() == range->second - range->first);
}
