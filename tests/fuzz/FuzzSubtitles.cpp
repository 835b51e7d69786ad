#include "Fuzz.h"
#include "playback/SubtitleTimeline.h"
#include <QRegularExpression>
#include <algorithm>
#include <bit>
#include <cmath>

// The rules of either format in the plainest way, whatever it costs.
namespace vellum::fuzz {

// Blanks and tabs at both ends go.
static QString trimmedBlanks(QString text) {
  static const QRegularExpression ends(QStringLiteral(R"(\A[\p{Zs}\t]+|[\p{Zs}\t]+\z)"));
  return text.remove(ends);
}

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

static SubtitleCues referenceASS(QString text) {
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
  std::ranges::stable_sort(cues.begin(), numbers, {}, &SubtitleCue::start);
  return cues;
}

// The cues are those of the reference, numbers that are none included, and the timeline answers as
// a scan of them does.
static void requireSame(SubtitleCues cues, const SubtitleCues& wanted) {
  const auto bits = [](const SubtitleCue& cue) {
    return std::tuple(std::bit_cast<std::uint64_t>(cue.start),
                      std::bit_cast<std::uint64_t>(cue.end), cue.text);
  };
  require(std::ranges::equal(cues, wanted, {}, bits, bits));
  const SubtitleTimeline timeline(std::move(cues));
  for (const SubtitleCue& asked : wanted)
    for (const double time : {asked.start, asked.end, asked.end + 0.01}) {
      const auto found = std::ranges::find_if(timeline.cues(), [time](const SubtitleCue& cue) {
        return cue.start <= time && cue.end >= time;
      });
      require(timeline.at(time) == (found != timeline.cues().end() ? &*found : nullptr));
    }
}

void check(ByteSpan input) {
  const QString text = SubtitleParser::decode(toByteArray(input));
  requireSame(SubtitleParser::parse(text), reference(text));
  requireSame(SubtitleParser::parseASS(text), referenceASS(text));
}

} // namespace vellum::fuzz
