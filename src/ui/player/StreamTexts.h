// What the screens say about a stream. Pure.
#pragma once
#include "playback/StreamState.h"

namespace vellum::ui {

QString stageText(const StreamState& stream);   // "Buffering 42%"
QString numbersText(const StreamState& stream); // "1 peer · ↓ 1.2 MB/s · ↑ 0 KB/s"
QString cornerText(const StreamState& stream);  // the same while it plays, with what was uploaded

// The mini player's line: the stage of a stream that has not begun to play, or the time.
QString miniPlayerText(const std::optional<StreamState>& stream, bool isBuffering,
                       double currentTime, double duration);

// What stands in the middle of the picture.
enum class StreamMiddle { Nothing, Progress, Choices, Failure };
StreamMiddle streamMiddle(const StreamState& stream);
// Whether another try could mend the failure.
bool canRetry(const StreamState& stream);

} // namespace vellum::ui
