#include "playback/SubtitleTimeline.h"
#include <algorithm>
#include <functional>
#include <queue>

namespace vellum {

SubtitleTimeline::SubtitleTimeline(SubtitleCues cues) : m_cues(std::move(cues)) {
  std::vector<const SubtitleCue*> byStart;
  std::vector<double> times;
  for (const SubtitleCue& cue : m_cues) {
    // False also where one of them is no number.
    if (!(cue.start <= cue.end)) continue;
    byStart.push_back(&cue);
    times.push_back(cue.start);
    times.push_back(cue.end);
  }
  std::sort(byStart.begin(), byStart.end(),
            [](const auto* one, const auto* other) { return one->start < other->start; });
  std::sort(times.begin(), times.end());
  times.erase(std::unique(times.begin(), times.end()), times.end());

  // The first of the list on top, which is the one at the lowest address. A cue that is over stays
  // until it comes to the top.
  std::priority_queue<const SubtitleCue*, decltype(byStart), std::greater<>> begun;
  const auto firstWithout = [&begun](auto isOver) {
    while (!begun.empty() && isOver(begun.top()->end)) begun.pop();
    return begun.empty() ? nullptr : begun.top();
  };
  auto next = byStart.begin();
  m_moments.reserve(times.size());
  for (const double time : times) {
    for (; next != byStart.end() && (*next)->start <= time; ++next) begun.push(*next);
    const SubtitleCue* at = firstWithout([time](double end) { return end < time; });
    const SubtitleCue* after = firstWithout([time](double end) { return end <= time; });
    m_moments.push_back({time, at, after});
  }
}

const SubtitleCue* SubtitleTimeline::at(double time) const {
  const auto later =
      std::upper_bound(m_moments.begin(), m_moments.end(), time,
                       [](double wanted, const Moment& moment) { return wanted < moment.time; });
  if (later == m_moments.begin()) return nullptr;
  const Moment& moment = *std::prev(later);
  return moment.time == time ? moment.at : moment.after;
}

} // namespace vellum
