#include "FuzzSubtitles.h"
#include <cmath>

namespace vellum::fuzz {

// The same rules in the plainest way, whatever it costs.
static SubtitleCues reference(QString text) {
  static const QRegularExpression markup(QStringLiteral(R"(\{[^}]*\})"));
  static const QRegularExpression feed(QStringLiteral(R"(\\[Nn])"));
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  QStringList names = QStringLiteral(",start,end,,,,,,,text").split(u',');
  SubtitleCues cues;
  for (const QString& line : text.split(u'\n')) {
    if (line.startsWith(QLatin1String("Format:"))) {
      QStringList found;
      for (const QString& name : line.mid(7).split(u',', Qt::SkipEmptyParts))
        found << trimmedBlanks(name).toLower();
      const auto has = [&](const char* name) { return found.contains(QLatin1String(name)); };
      if (has("start") && has("end") && has("text")) names = found;
    }
    const QStringList pieces = line.mid(9).split(u',');
    const auto column = [&](const char* name) { return names.indexOf(QLatin1String(name)); };
    const auto last = column("text");
    if (!line.startsWith(QLatin1String("Dialogue:")) || pieces.size() <= last ||
        column("start") > last || column("end") > last)
      continue;
    const auto start = SubtitleParser::parseTime(pieces[column("start")]);
    const auto end = SubtitleParser::parseTime(pieces[column("end")]);
    QString shown = pieces.mid(last).join(u',').remove(markup);
    shown = shown.replace(feed, QStringLiteral("\n")).trimmed();
    if (start && end && !shown.isEmpty()) cues.push_back({*start, *end, shown});
  }
  const auto numbers = std::stable_partition(
      cues.begin(), cues.end(), [](const SubtitleCue& cue) { return !std::isnan(cue.start); });
  std::stable_sort(cues.begin(), numbers, [](const SubtitleCue& one, const SubtitleCue& other) {
    return one.start < other.start;
  });
  return cues;
}

void check(ByteSpan input) {
  const QString text = SubtitleParser::decode(toByteArray(input));
  requireSame(SubtitleParser::parseASS(text), reference(text));
}

} // namespace vellum::fuzz
