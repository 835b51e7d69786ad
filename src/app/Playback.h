// The player with everything that plays through it, joined.
#pragma once
#include "app/PlaybackServices.h"
#include "playback/PlaybackCoordinator.h"

namespace vellum {

// Main thread. Made once, for a program with a window. The order of the fields is that of
// construction: at the end the coordinator goes first and lets go of its stream.
struct Playback {
  // All outlive it.
  Playback(Runtime& runtime, const SettingsStore& settings, TorrentEngine& engine,
           LibraryStore& library, ExternalPlayers::Desktop& desktop,
           AudioOutput audio = AudioOutput::Automatic);
  Playback(const Playback&) = delete;
  Playback& operator=(const Playback&) = delete;

  VideoPlayerManager player;
  SubtitleManager subtitles;
  ExternalPlayers externalPlayers;
  PlaybackServices services;
  PlayerOfStreams playerOfStreams;
  PlaybackCoordinator coordinator;
};

} // namespace vellum
