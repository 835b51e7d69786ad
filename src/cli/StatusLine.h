// The live line of a stream on standard error.
#pragma once
#include "base/Clock.h"
#include "engine/SessionSnapshot.h"
#include <QString>
#include <optional>

namespace vellum {

// "buffering 43 %  3 peers  down 12.3 MB/s  up 0 KB/s". Pure. `wantedBytes` is what will have
// arrived at the end, 0 while unknown.
QString statusText(const SessionSnapshot& snapshot, std::int64_t wantedBytes);

// Main thread. One line that is written over on a terminal; elsewhere a line every five seconds.
class StatusLine {
public:
  StatusLine(bool isTerminal, const Clock& clock) : m_isTerminal(isTerminal), m_clock(clock) {}
  void show(const QString& text);
  // Makes room for a line of something else.
  void clear();

private:
  bool m_isTerminal;
  const Clock& m_clock;
  std::optional<TimePoint> m_lastShown;
  bool m_onScreen = false;
};

} // namespace vellum
