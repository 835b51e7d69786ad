#include "playback/SubtitleParser.h"
#include "playback/SubtitleText.h"
#include <array>
#include <cstdlib>
#include <locale.h>
#if __has_include(<xlocale.h>)
#include <xlocale.h>
#endif

namespace vellum {

namespace {

// All that the C library reads as a number, exponents, signs and "inf" included, wherever the user
// lives; the whole piece, and no white space.
std::optional<double> number(QStringView piece) {
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  if (QStringView(u" \t\n\v\f\r").contains(piece.front())) return std::nullopt;
  const QByteArray text = piece.toUtf8().replace(',', '.');
  char* end = nullptr;
  const double value = strtod_l(text.constData(), &end, plain);
  if (end != text.constData() + text.size()) return std::nullopt;
  return value;
}

} // namespace

std::optional<double> SubtitleParser::parseTime(QStringView text) {
  const QStringView fields = subtitletext::withoutOuterBlanks(text);
  std::array<double, 3> values{};
  std::size_t count = 0;
  for (const QStringView piece : fields.tokenize(u':', Qt::SkipEmptyParts)) {
    const auto value = count < values.size() ? number(piece) : std::nullopt;
    if (!value) return std::nullopt;
    values[count++] = *value;
  }
  if (count < 2) return std::nullopt;
  const double minutes = values[0] * 60 + values[1];
  return count == 2 ? minutes : values[0] * 3600 + values[1] * 60 + values[2];
}

} // namespace vellum
