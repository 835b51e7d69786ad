#include "base/Text.h"
#include <QCoreApplication>
#include <algorithm>
#include <array>

namespace vellum {

namespace {
struct Unit {
  const char* name;
  int decimals;
};
constexpr std::array<Unit, 6> kUnits{
    {{"KB", 0}, {"MB", 1}, {"GB", 2}, {"TB", 2}, {"PB", 2}, {"EB", 2}}};

// Unicode's embeddings, overrides and isolates.
bool turnsDirection(QChar c) {
  return (c >= QChar(0x202A) && c <= QChar(0x202E)) || (c >= QChar(0x2066) && c <= QChar(0x2069));
}

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(ByteCount)
};

QString trimmed(double value, int decimals) {
  QString text = QString::number(value, 'f', decimals);
  if (decimals > 0) {
    while (text.endsWith(u'0')) text.chop(1);
    if (text.endsWith(u'.')) text.chop(1);
  }
  return text;
}
} // namespace

QString formatByteCount(std::int64_t bytes) {
  if (bytes < 0) return QStringLiteral("—");
  if (bytes == 0) return Texts::tr("Zero KB");
  if (bytes == 1) return Texts::tr("1 byte");
  if (bytes < 1000) return Texts::tr("%1 bytes").arg(bytes);
  double value = static_cast<double>(bytes) / 1000.0;
  std::size_t unit = 0;
  // 999.95 MB would print as "1000 MB": what rounds up to 1000 takes the next unit.
  while (unit + 1 < kUnits.size() &&
         QString::number(value, 'f', kUnits[unit].decimals).toDouble() >= 1000.0) {
    value /= 1000.0;
    ++unit;
  }
  return withDecimalSign(trimmed(value, kUnits[unit].decimals)) + u' ' +
         QLatin1String(kUnits[unit].name);
}

QString withDecimalSign(const QString& number) {
  return QString(number).replace(u'.', Texts::tr(".", "decimal sign"));
}

QString printable(QString text) {
  for (QChar& c : text) {
    const bool isControl = c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
                           c == QChar::ParagraphSeparator || turnsDirection(c);
    if (isControl) c = QChar::ReplacementCharacter;
  }
  return text;
}

QString shortened(const QString& text, qsizetype longest) {
  if (text.size() <= longest) return text;
  QString cut = text.first(longest - 1);
  if (cut.back().isHighSurrogate()) cut.chop(1);
  return cut + QChar(0x2026);
}

QString oneLine(const QString& text) {
  constexpr qsizetype kLongestLine = 300;
  return printable(shortened(text, kLongestLine).simplified());
}

std::optional<qint64> parseInt64(QStringView text) {
  const bool hasSign = text.startsWith(u'+') || text.startsWith(u'-');
  const QStringView digits = hasSign ? text.sliced(1) : text;
  const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
  if (digits.isEmpty() || !std::all_of(digits.begin(), digits.end(), isDigit)) return std::nullopt;
  bool fits = false;
  const qint64 value = text.toLongLong(&fits);
  if (!fits) return std::nullopt;
  return value;
}

} // namespace vellum
