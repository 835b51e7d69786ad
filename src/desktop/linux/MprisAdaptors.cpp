#include "desktop/linux/MprisAdaptors.h"
#include <cmath>

namespace vellum {

namespace {
constexpr double kMicroseconds = 1e6; // in a second
}

MprisRoot::MprisRoot(Mpris& player) : QDBusAbstractAdaptor(&player), m_player(player) {}

void MprisRoot::Raise() { Q_EMIT m_player.raise(); }

MprisPlayer::MprisPlayer(Mpris& player) : QDBusAbstractAdaptor(&player), m_player(player) {
  connect(&player, &Mpris::seeked, this, &MprisPlayer::Seeked);
}

qlonglong MprisPlayer::position() const {
  return std::llround(m_player.status().position * kMicroseconds);
}

void MprisPlayer::setVolume(double volume) {
  if (isLoaded() && std::isfinite(volume)) Q_EMIT m_player.setVolume(std::clamp(volume, 0.0, 1.0));
}

void MprisPlayer::Play() {
  if (isLoaded()) Q_EMIT m_player.play();
}

void MprisPlayer::Pause() {
  if (isLoaded()) Q_EMIT m_player.pause();
}

void MprisPlayer::PlayPause() {
  if (isLoaded()) Q_EMIT m_player.toggle();
}

void MprisPlayer::Stop() {
  if (isLoaded()) Q_EMIT m_player.stop();
}

void MprisPlayer::Seek(qlonglong offset) {
  if (!canSeek()) return;
  const MediaStatus& status = m_player.status();
  const double back = std::min(0.0, -status.position);
  const double forth = std::max(0.0, status.duration - status.position);
  Q_EMIT m_player.seekBy(std::clamp(static_cast<double>(offset) / kMicroseconds, back, forth));
}

// One that belongs to another film, or lies outside of this one, comes too late or from a mistake.
void MprisPlayer::SetPosition(const QDBusObjectPath& track, qlonglong position) {
  const double seconds = static_cast<double>(position) / kMicroseconds;
  if (!canSeek() || track != m_player.track() || seconds < 0 ||
      seconds > m_player.status().duration)
    return;
  Q_EMIT m_player.seek(seconds);
}

} // namespace vellum
