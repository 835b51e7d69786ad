// Subtitle files to cues: SubRip and WebVTT, SubStation Alpha and its advanced form. Pure.
#pragma once
#include <QByteArray>
#include <QString>
#include <optional>
#include <vector>

namespace vellum {

struct SubtitleCue {
  double start = 0; // seconds
  double end = 0;   // seconds; the cue still shows at this moment
  QString text;     // plain, whatever it looks like; lines divided by a line feed
  bool operator==(const SubtitleCue&) const = default;
};
using SubtitleCues = std::vector<SubtitleCue>;

// A malformed cue is passed over without a word. No text costs more than its length in time and
// memory. Any thread.
struct SubtitleParser {
  // UTF-8 if valid, with or without a byte-order mark, else Latin 1.
  static QString decode(const QByteArray& bytes);
  // SubRip and WebVTT alike, in the order of the file.
  static SubtitleCues parse(QStringView text);
  // By start; those of the same start in the order of the file.
  static SubtitleCues parseASS(QStringView text);
  // "h:m:s" or "m:s" with a point or a comma before the fraction, in seconds; no field has a range.
  static std::optional<double> parseTime(QStringView text);
};

} // namespace vellum
