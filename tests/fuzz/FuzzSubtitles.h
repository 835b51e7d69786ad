// What holds for the cues of every subtitle format.
#pragma once
#include "Require.h"
#include "playback/SubtitleTimeline.h"
#include <QRegularExpression>
#include <algorithm>
#include <bit>

namespace vellum::fuzz {

inline QString decoded(const std::uint8_t* data, std::size_t size) {
  return SubtitleParser::decode(
      QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
}

// Blanks and tabs at both ends go.
inline QString trimmedBlanks(QString text) {
  static const QRegularExpression ends(QStringLiteral(R"(\A[\p{Zs}\t]+|[\p{Zs}\t]+\z)"));
  return text.remove(ends);
}

// The cues are those of the reference, numbers that are none included, and the timeline answers as
// a scan of them does.
inline void requireSame(SubtitleCues cues, const SubtitleCues& reference) {
  require(std::equal(cues.begin(), cues.end(), reference.begin(), reference.end(),
                     [](const SubtitleCue& one, const SubtitleCue& other) {
                       return std::bit_cast<std::uint64_t>(one.start) ==
                                  std::bit_cast<std::uint64_t>(other.start) &&
                              std::bit_cast<std::uint64_t>(one.end) ==
                                  std::bit_cast<std::uint64_t>(other.end) &&
                              one.text == other.text && !one.text.isEmpty();
                     }));
  const SubtitleTimeline timeline(std::move(cues));
  for (const SubtitleCue& asked : reference)
    for (const double time : {asked.start, asked.end, asked.end + 0.01}) {
      const auto first =
          std::find_if(reference.begin(), reference.end(), [time](const SubtitleCue& cue) {
            return cue.start <= time && cue.end >= time;
          });
      const SubtitleCue* shown = timeline.at(time);
      require((shown == nullptr) == (first == reference.end()));
      require(shown == nullptr || shown - timeline.cues().data() == first - reference.begin());
    }
}

} // namespace vellum::fuzz
