#include "playback/SubtitleParser.h"
#include "playback/SubtitleText.h"
#include <QUtf8StringView>

namespace vellum {

namespace {

using namespace subtitletext;

constexpr QStringView kArrow = u"-->";

// A block is independent of all others: a header, a note or a counter has no timing line.
std::optional<SubtitleCue> cueOf(QStringView block) {
  const qsizetype arrow = block.indexOf(kArrow);
  if (arrow < 0) return std::nullopt;
  const qsizetype lineStart = block.first(arrow).lastIndexOf(u'\n') + 1;
  const qsizetype feed = block.indexOf(u'\n', arrow);
  const qsizetype lineEnd = feed < 0 ? block.size() : feed;

  QStringView behind = block.sliced(arrow + kArrow.size()).first(lineEnd - arrow - kArrow.size());
  if (behind.contains(kArrow)) return std::nullopt;
  // Settings may follow the end, behind a blank.
  behind = withoutOuterBlanks(behind);
  if (const qsizetype blank = behind.indexOf(u' '); blank >= 0) behind.truncate(blank);
  const auto start = SubtitleParser::parseTime(block.sliced(lineStart, arrow - lineStart));
  const auto end = SubtitleParser::parseTime(behind);
  if (!start || !end || feed < 0) return std::nullopt;

  QString text = withoutMarkup(block.sliced(feed), u'<', u'>', EmptyPair::Stays).trimmed();
  if (text.isEmpty()) return std::nullopt;
  return SubtitleCue{*start, *end, std::move(text)};
}

} // namespace

QString SubtitleParser::decode(const QByteArray& bytes) {
  return QUtf8StringView(bytes).isValidUtf8() ? QString::fromUtf8(bytes)
                                              : QString::fromLatin1(bytes);
}

SubtitleCues SubtitleParser::parse(QStringView text) {
  const QString plain = withPlainLineFeeds(text).remove(QChar(QChar::ByteOrderMark));
  SubtitleCues cues;
  for (const QStringView block : QStringView(plain).tokenize(u"\n\n"))
    if (auto cue = cueOf(block)) cues.push_back(std::move(*cue));
  return cues;
}

} // namespace vellum
