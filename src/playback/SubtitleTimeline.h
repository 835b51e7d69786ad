// Which cue shows at which moment.
#pragma once
#include "playback/SubtitleParser.h"

namespace vellum {

// A list of cues, prepared once so that a look-up is a binary search. Invariant: the answer is that
// of a scan of the list, the first cue in its order with start <= time <= end, however the cues
// overlap and whatever their order. Never changes; any thread.
class SubtitleTimeline {
public:
  SubtitleTimeline() = default;
  explicit SubtitleTimeline(SubtitleCues cues);
  SubtitleTimeline(const SubtitleTimeline&) = delete;
  SubtitleTimeline& operator=(const SubtitleTimeline&) = delete;

  const SubtitleCues& cues() const { return m_cues; }
  // Null if none shows, and for a time that is no number.
  const SubtitleCue* at(double time) const;

private:
  // Both ends of a cue belong to it, so that a moment at which one begins or ends stands apart
  // from the time up to the next such moment.
  struct Moment {
    double time;
    const SubtitleCue* at;
    const SubtitleCue* after;
  };

  SubtitleCues m_cues;
  std::vector<Moment> m_moments; // by time
};

} // namespace vellum
