#include "base/Fmt.h"
#include <cmath>

namespace vellum {

namespace {

// All by hand: Qt's own ways take the square of the time for a million matches.

QString replaced(const QString& text, QLatin1String what, QLatin1String with) {
  QString out;
  qsizetype from = 0;
  for (qsizetype at = text.indexOf(what); at >= 0; at = text.indexOf(what, from)) {
    out.append(QStringView(text).sliced(from, at - from)).append(with);
    from = at + what.size();
  }
  return out.append(QStringView(text).sliced(from));
}

// "<br", any blanks, maybe "/", and ">" become a line feed.
QString withLineBreaks(const QString& text) {
  const QLatin1String open("<br");
  QString out;
  qsizetype from = 0;
  for (qsizetype at = text.indexOf(open); at >= 0;) {
    qsizetype end = at + open.size();
    while (end < text.size() && text[end].isSpace()) ++end;
    if (end < text.size() && text[end] == u'/') ++end;
    if (end < text.size() && text[end] == u'>') {
      out.append(QStringView(text).sliced(from, at - from)).append(u'\n');
      from = ++end;
    }
    at = text.indexOf(open, end);
  }
  return out.append(QStringView(text).sliced(from));
}

// "<", at least one character that is no ">", and ">" are dropped.
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
  QString plain = withoutTags(withLineBreaks(*text));
  plain = replaced(plain, QLatin1String("&amp;"), QLatin1String("&"));
  plain = replaced(plain, QLatin1String("&quot;"), QLatin1String("\""));
  plain = replaced(plain, QLatin1String("&#39;"), QLatin1String("'"));
  plain = replaced(plain, QLatin1String("&nbsp;"), QLatin1String(" ")).trimmed();
  if (plain.isEmpty()) return std::nullopt;
  return plain;
}

} // namespace vellum
