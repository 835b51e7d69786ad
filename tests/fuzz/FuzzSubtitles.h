// What holds for the cues of every subtitle format.
#pragma once
#include "Fuzz.h"
#include "playback/SubtitleTimeline.h"
#include <QRegularExpression>
#include <algorithm>
#include <bit>

namespace vellum::fuzz {

// Blanks and tabs at both ends go.
inline QString trimmedBlanks(QString text) {
  static const QRegularExpression ends(QStringLiteral(R"(\A[\p{Zs}\t]+|[\p{Zs}\t]+\z)"));
  return text.remove(ends);
}

// The cues are those of the reference, numbers that are none included, and the timeline answers as
// a scan of them does.
inline void requireSame(SubtitleCues cues, const SubtitleCues& reference) {
  const auto bits = [](const SubtitleCue& cue) {
    return std::tuple(std::bit_cast<std::uint64_t>(cue.start),
                      std::bit_cast<std::uint64_t>(cue.end), cue.text);
  };
  require(std::ranges::equal(cues, reference, {}, bits, bits));
  const SubtitleTimeline timeline(std::move(cues));
  for (const SubtitleCue& asked : reference)
    for (const double time : {asked.start, asked.end, asked.end + 0.01}) {
      const auto shows = [time](const SubtitleCue& cue) {
        return cue.start <= time && cue.end >= time;
      };
      const SubtitleCue* shown = timeline.at(time);
      require((shown != nullptr ? shown - timeline.cues().data() : std::ssize(reference)) ==
              std::ranges::find_if(reference, shows) - reference.begin());
    }
}

} // namespace vellum::fuzz
