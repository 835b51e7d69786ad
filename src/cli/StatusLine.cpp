#include "cli/StatusLine.h"
#include "base/Text.h"
#include <algorithm>
#include <cstdio>

namespace vellum {

namespace {

constexpr double kPeriodWithoutTerminal = 5.0; // seconds

QString stageOf(const SessionSnapshot& snapshot, std::int64_t wantedBytes) {
  if (snapshot.complete) return QStringLiteral("complete");
  if (!snapshot.hasMetadata())
    return snapshot.peers > 0 ? QStringLiteral("metadata") : QStringLiteral("connecting");
  if (wantedBytes == 0) return QStringLiteral("selecting");
  return snapshot.streamReady ? QStringLiteral("streaming") : QStringLiteral("buffering");
}

QString rate(double bytesPerSecond) {
  const auto bytes = static_cast<std::int64_t>(bytesPerSecond);
  const QString text = bytes < 1000 ? QStringLiteral("0 KB") : formatByteCount(bytes);
  return text + QStringLiteral("/s");
}

} // namespace

QString statusText(const SessionSnapshot& snapshot, std::int64_t wantedBytes) {
  const double fraction = wantedBytes == 0 ? 0.0
                                           : static_cast<double>(snapshot.downloaded) /
                                                 static_cast<double>(wantedBytes);
  const int percent = snapshot.complete ? 100 : std::min(99, static_cast<int>(fraction * 100));
  return QStringLiteral("%1 %2 %  %3 peers  down %4  up %5")
      .arg(stageOf(snapshot, wantedBytes))
      .arg(percent)
      .arg(snapshot.peers)
      .arg(rate(snapshot.downRate), rate(snapshot.upRate));
}

void StatusLine::show(const QString& text) {
  const TimePoint now = m_clock.now();
  if (m_isTerminal) {
    std::fprintf(stderr, "\r\033[K%s", qUtf8Printable(text));
    m_onScreen = true;
  } else {
    if (m_lastShown && secondsBetween(*m_lastShown, now) < kPeriodWithoutTerminal - 0.1) return;
    std::fprintf(stderr, "%s\n", qUtf8Printable(text));
  }
  std::fflush(stderr);
  m_lastShown = now;
}

void StatusLine::clear() {
  if (m_onScreen) std::fputs("\r\033[K", stderr);
  m_onScreen = false;
}

} // namespace vellum
