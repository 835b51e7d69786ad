#include "FuzzSubtitles.h"

using namespace vellum;

namespace {

// The same rules in the plainest way, whatever it costs.
SubtitleCues reference(QString text) {
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
    const auto end = SubtitleParser::parseTime(fuzz::trimmedBlanks(parts[1]).section(u' ', 0, 0));
    const QString shown = lines.join(u'\n').remove(markup).trimmed();
    if (start && end && !shown.isEmpty()) cues.push_back({*start, *end, shown});
  }
  return cues;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QString text = fuzz::decoded(data, size);
  fuzz::requireSame(SubtitleParser::parse(text), reference(text));
  return 0;
}
