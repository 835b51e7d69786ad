// What a program with a window has besides its services: where the user is, and what plays.
#pragma once
#include "app/AppState.h"
#include "app/DesktopServices.h"
#include "app/PlayEntryPoints.h"
#include "app/Playback.h"

namespace vellum {

// Main thread. The order of the fields is that of construction: at the end what plays goes before
// everything that it plays through.
class WindowState final {
public:
  // Both outlive it.
  WindowState(Runtime& runtime, AppState& app, AudioOutput audio = AudioOutput::Automatic);
  WindowState(const WindowState&) = delete;
  WindowState& operator=(const WindowState&) = delete;

  // Saves where the viewer is, lets go of what plays, and shows no player.
  void stop();
  void skip(double seconds); // forward, or back when negative

  AppState& app;
  Navigation navigation;

private:
  DesktopPrograms m_programs;
  LinkServices m_linkServices;

public:
  Playback playback;
  LinkOpener links;
  PlayEntryPoints entries;
};

} // namespace vellum
