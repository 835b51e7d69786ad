// What stands behind the Play and Resume buttons of catalog files, saved files and the history.
// Torrent results do not pass here: they go to the coordinator.
#pragma once
#include "app/Navigation.h"
#include "playback/PlaybackCoordinator.h"

namespace vellum {

// Main thread.
class PlayEntryPoints {
public:
  // Both outlive it.
  PlayEntryPoints(PlaybackCoordinator& playback, Navigation& navigation)
      : m_playback(playback), m_navigation(navigation) {}

  // A file of a catalog item, with its subtitle files.
  void play(const ArchiveFile& file, const MediaItem& item, const ArchiveFiles& subtitles);
  // A file on this disk.
  void playLocal(const QUrl& file);
  void resume(const HistoryEntry& entry);

  // The subtitle files beside a video whose names begin with its own, without extension.
  static SubtitleTracks siblingSubtitles(const QUrl& video);

private:
  PlaybackCoordinator& m_playback;
  Navigation& m_navigation;
};

} // namespace vellum
