#include "app/Playback.h"

namespace vellum {

Playback::Playback(Runtime& runtime, const SettingsStore& settings, TorrentEngine& engine,
                   LibraryStore& library, ExternalPlayers::Desktop& desktop, AudioOutput audio)
    : player(runtime.main, audio), subtitles(runtime.main, runtime.pool, runtime.http.fetcher()),
      externalPlayers(desktop), services(runtime, settings, engine), playerOfStreams(player),
      coordinator(runtime.main.executor(),
                  {services, playerOfStreams, subtitles, library, externalPlayers}) {
  using Player = VideoPlayerManager;
  QObject::connect(&player, &Player::currentTimeChanged, &coordinator,
                   &PlaybackCoordinator::playerTime);
  QObject::connect(&player, &Player::finished, &coordinator, &PlaybackCoordinator::playerFinished);
  QObject::connect(&player, &Player::errorChanged, &coordinator, [this] {
    if (!player.error().isNull()) coordinator.playerFailed();
  });
}

} // namespace vellum
