#include "app/MediaSession.h"

namespace vellum {

MediaSession::MediaSession(WindowState& window, MediaControls& controls, StayAwake& stayAwake)
    : m_window(window), m_controls(controls), m_stayAwake(stayAwake) {
  using Player = VideoPlayerManager;
  Player* player = &window.playback.player;
  for (const auto changed : {&Player::isPlayingChanged, &Player::durationChanged,
                             &Player::rateChanged, &Player::volumeChanged, &Player::isMutedChanged,
                             &Player::currentURLChanged, &Player::errorChanged})
    connect(player, changed, this, &MediaSession::tell);
  connect(player, &Player::currentTimeChanged, this, &MediaSession::tell);
  connect(&window.playback.coordinator, &PlaybackCoordinator::nowPlayingChanged, this,
          &MediaSession::tell);

  connect(&controls, &MediaControls::play, this, [this] { setPlaying(true); });
  connect(&controls, &MediaControls::pause, this, [this] { setPlaying(false); });
  connect(&controls, &MediaControls::toggle, player, &Player::toggle);
  connect(&controls, &MediaControls::seek, player, &Player::seek);
  connect(&controls, &MediaControls::seekBy, this,
          [this](double seconds) { m_window.skip(seconds); });
  connect(&controls, &MediaControls::stop, this, [this] { m_window.stop(); });
  connect(&controls, &MediaControls::setVolume, player, [player](double volume) {
    player->setVolume(static_cast<float>(volume));
    if (volume > 0) player->setMuted(false);
  });
  connect(&controls, &MediaControls::raise, this, &MediaSession::windowWanted);
}

void MediaSession::tell() {
  const MediaStatus now = status();
  m_controls.show(now);
  m_stayAwake.setPlaying(now.isLoaded && now.isPlaying);
}

MediaStatus MediaSession::status() const {
  const auto& nowPlaying = m_window.playback.coordinator.nowPlaying();
  const VideoPlayerManager& player = m_window.playback.player;
  MediaStatus status;
  status.isLoaded = nowPlaying && !player.currentURL().isEmpty();
  status.isPlaying = player.isPlaying() && player.error().isNull();
  if (nowPlaying) {
    status.title = nowPlaying->title;
    status.artwork = nowPlaying->thumbnail.value_or(QUrl());
  }
  status.position = player.currentTime();
  status.duration = player.duration();
  status.rate = static_cast<double>(player.rate());
  status.volume = player.isMuted() ? 0 : static_cast<double>(player.volume());
  return status;
}

void MediaSession::setPlaying(bool playing) {
  if (m_window.playback.player.isPlaying() != playing) m_window.playback.player.toggle();
}

} // namespace vellum
