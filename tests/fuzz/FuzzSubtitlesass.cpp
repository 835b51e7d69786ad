#include "FuzzSubtitles.h"
#include <cmath>

using namespace vellum;

namespace {

struct Columns {
  qsizetype start = 1, end = 2, text = 9;
};

Columns columnsOf(const QString& list, const Columns& before) {
  QStringList names;
  for (const QString& piece : list.split(u',', Qt::SkipEmptyParts))
    names << fuzz::trimmedBlanks(piece).toLower();
  const auto at = [&](const char* name) { return names.indexOf(QLatin1String(name)); };
  const Columns found{at("start"), at("end"), at("text")};
  return found.start < 0 || found.end < 0 || found.text < 0 ? before : found;
}

// The same rules in the plainest way, whatever it costs.
SubtitleCues reference(QString text) {
  static const QRegularExpression markup(QStringLiteral(R"(\{[^}]*\})"));
  static const QRegularExpression feed(QStringLiteral(R"(\\[Nn])"));
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  Columns columns;
  SubtitleCues cues;
  for (const QString& line : text.split(u'\n')) {
    if (line.startsWith(QLatin1String("Format:"))) columns = columnsOf(line.mid(7), columns);
    if (!line.startsWith(QLatin1String("Dialogue:"))) continue;
    const QStringList pieces = line.mid(9).split(u',');
    if (pieces.size() <= columns.text || columns.start > columns.text || columns.end > columns.text)
      continue;
    const auto start = SubtitleParser::parseTime(pieces[columns.start]);
    const auto end = SubtitleParser::parseTime(pieces[columns.end]);
    const QString shown = pieces.mid(columns.text)
                              .join(u',')
                              .remove(markup)
                              .replace(feed, QStringLiteral("\n"))
                              .trimmed();
    if (start && end && !shown.isEmpty()) cues.push_back({*start, *end, shown});
  }
  const auto numbers = std::stable_partition(
      cues.begin(), cues.end(), [](const SubtitleCue& cue) { return !std::isnan(cue.start); });
  std::stable_sort(cues.begin(), numbers, [](const SubtitleCue& one, const SubtitleCue& other) {
    return one.start < other.start;
  });
  return cues;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QString text = fuzz::decoded(data, size);
  fuzz::requireSame(SubtitleParser::parseASS(text), reference(text));
  return 0;
}
