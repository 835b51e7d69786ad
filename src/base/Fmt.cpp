#include "base/Fmt.h"
#include <QRegularExpression>
#include <cmath>

namespace vellum {

namespace {

// "<", at least one character that is no ">", and ">". By hand, since a pattern would look for the
// end of each of a million "<" anew.
QString withoutTags(const QString& text) {
  QString plain;
  qsizetype from = 0;
  while (true) {
    const qsizetype open = text.indexOf(u'<', from);
    const qsizetype close = open < 0 ? -1 : text.indexOf(u'>', open);
    if (close < 0) return plain.append(QStringView(text).sliced(from));
    const bool isTag = close > open + 1;
    plain += QStringView(text).sliced(from, (isTag ? open : close) - from);
    from = isTag ? close + 1 : close;
  }
}

} // namespace

QString Fmt::time(double seconds) {
  // Beyond the second bound a double has no whole seconds any more.
  if (!(seconds >= 0) || seconds >= 0x1p53) return QStringLiteral("0:00");
  const auto whole = static_cast<long long>(seconds);
  const auto two = [](long long value) {
    return QStringLiteral("%1").arg(value, 2, 10, QChar(u'0'));
  };
  if (whole < 3600)
    return QStringLiteral("%1:%2").arg(QString::number(whole / 60), two(whole % 60));
  return QStringLiteral("%1:%2:%3")
      .arg(QString::number(whole / 3600), two(whole / 60 % 60), two(whole % 60));
}

std::optional<QString> Fmt::stripHTML(const std::optional<QString>& text) {
  if (!text) return std::nullopt;
  static const QRegularExpression lineBreak(QStringLiteral("<br\\s*/?>"),
                                            QRegularExpression::UseUnicodePropertiesOption);
  QString plain = *text;
  plain.replace(lineBreak, QStringLiteral("\n"));
  plain = withoutTags(plain);
  plain.replace(QLatin1String("&amp;"), QLatin1String("&"));
  plain.replace(QLatin1String("&quot;"), QLatin1String("\""));
  plain.replace(QLatin1String("&#39;"), QLatin1String("'"));
  plain.replace(QLatin1String("&nbsp;"), QLatin1String(" "));
  plain = plain.trimmed();
  if (plain.isEmpty()) return std::nullopt;
  return plain;
}

} // namespace vellum
