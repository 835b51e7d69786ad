// What stands behind the Play, Resume and Save buttons of catalog files, saved files and the
// history. Torrent results do not pass here: they go to the coordinator.
#pragma once
#include "app/Navigation.h"
#include "playback/PlaybackCoordinator.h"
#include "storage/DownloadManager.h"

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
  // Begins to save a file of a catalog item, and shows the downloads; or says why not.
  void download(const ArchiveFile& file, const MediaItem& item, DownloadManager& downloads);

  // The subtitle files beside a video whose names begin with its own, without extension.
  static SubtitleTracks siblingSubtitles(const QUrl& video);

private:
  PlaybackCoordinator& m_playback;
  Navigation& m_navigation;
};

} // namespace vellum
