#include "playback/SubtitleParser.h"
#include "playback/SubtitleText.h"
#include <algorithm>
#include <cmath>

namespace vellum {

namespace {

using namespace subtitletext;

constexpr QStringView kFormat = u"Format:";
constexpr QStringView kDialogue = u"Dialogue:";

// Where the fields of a Dialogue line stand. A text of the last column may hold commas.
struct Columns {
  qsizetype start = 1;
  qsizetype end = 2;
  qsizetype text = 9;
};

// Nothing for a list without all three, as that of the styles.
std::optional<Columns> columnsOf(QStringView list) {
  Columns found{-1, -1, -1};
  const auto note = [](qsizetype& column, qsizetype at) {
    if (column < 0) column = at;
  };
  qsizetype at = 0;
  for (const QStringView piece : list.tokenize(u',', Qt::SkipEmptyParts)) {
    const QString name = withoutOuterBlanks(piece).toString().toLower();
    if (name == u"start") note(found.start, at);
    if (name == u"end") note(found.end, at);
    if (name == u"text") note(found.text, at);
    ++at;
  }
  if (found.start < 0 || found.end < 0 || found.text < 0) return std::nullopt;
  return found;
}

QString withLineBreaks(QStringView text) {
  QString out;
  out.reserve(text.size());
  for (qsizetype at = 0; at < text.size(); ++at) {
    const bool isBreak =
        text[at] == u'\\' && at + 1 < text.size() && (text[at + 1] == u'N' || text[at + 1] == u'n');
    out.append(isBreak ? QChar(u'\n') : text[at]);
    if (isBreak) ++at;
  }
  return out;
}

std::optional<SubtitleCue> cueOf(QStringView fields, const Columns& columns) {
  // Times that a Format line puts behind the text are never found, and the line is passed over.
  QStringView startField, endField;
  for (qsizetype column = 0; column < columns.text; ++column) {
    const qsizetype comma = fields.indexOf(u',');
    if (comma < 0) return std::nullopt;
    if (column == columns.start) startField = fields.first(comma);
    if (column == columns.end) endField = fields.first(comma);
    fields = fields.sliced(comma + 1);
  }
  const auto start = SubtitleParser::parseTime(startField);
  const auto end = SubtitleParser::parseTime(endField);
  if (!start || !end) return std::nullopt;
  const QString plain = withoutMarkup(fields, u'{', u'}', EmptyPair::Goes);
  QString text = withLineBreaks(plain).trimmed();
  if (text.isEmpty()) return std::nullopt;
  return SubtitleCue{*start, *end, std::move(text)};
}

// A start may be no number at all ("nan"): such a cue never shows, and stands last.
bool startsBefore(const SubtitleCue& one, const SubtitleCue& other) {
  return std::isnan(other.start) ? !std::isnan(one.start) : one.start < other.start;
}

} // namespace

SubtitleCues SubtitleParser::parseASS(QStringView text) {
  const QString plain = withPlainLineFeeds(text);
  Columns columns;
  SubtitleCues cues;
  for (const QStringView line : QStringView(plain).tokenize(u'\n')) {
    if (line.startsWith(kFormat)) {
      columns = columnsOf(line.sliced(kFormat.size())).value_or(columns);
    } else if (line.startsWith(kDialogue)) {
      if (auto cue = cueOf(line.sliced(kDialogue.size()), columns)) cues.push_back(std::move(*cue));
    }
  }
  std::stable_sort(cues.begin(), cues.end(), startsBefore);
  return cues;
}

} // namespace vellum
