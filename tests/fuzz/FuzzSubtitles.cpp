#include "FuzzSubtitles.h"

namespace vellum::fuzz {

// The same rules in the plainest way, whatever it costs.
static SubtitleCues reference(QString text) {
  static const QRegularExpression markup(QStringLiteral("<[^>]+>"));
  const QString arrow = QStringLiteral("-->");
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).remove(QChar(QChar::ByteOrderMark));
  SubtitleCues cues;
  for (const QString& block : text.split(QStringLiteral("\n\n"))) {
    QStringList lines = block.split(u'\n');
    while (!lines.isEmpty() && !lines.front().contains(arrow)) lines.removeFirst();
    const QStringList parts = lines.isEmpty() ? QStringList() : lines.takeFirst().split(arrow);
    if (parts.size() != 2) continue;
    const auto start = SubtitleParser::parseTime(parts[0]);
    const auto end = SubtitleParser::parseTime(trimmedBlanks(parts[1]).section(u' ', 0, 0));
    const QString shown = lines.join(u'\n').remove(markup).trimmed();
    if (start && end && !shown.isEmpty()) cues.push_back({*start, *end, shown});
  }
  return cues;
}

void check(ByteSpan input) {
  const QString text = SubtitleParser::decode(toByteArray(input));
  requireSame(SubtitleParser::parse(text), reference(text));
}

} // namespace vellum::fuzz
