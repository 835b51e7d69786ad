// Keeps the desktop informed about what plays, and does what its keys and controls ask for.
#pragma once
#include "app/WindowState.h"
#include "desktop/MediaControls.h"
#include "desktop/StayAwake.h"

namespace vellum {

// Main thread.
class MediaSession final : public QObject {
  Q_OBJECT

public:
  // All outlive it.
  MediaSession(WindowState& window, MediaControls& controls, StayAwake& stayAwake);

Q_SIGNALS:
  void windowWanted();

private:
  void tell();
  MediaStatus status() const;
  void setPlaying(bool playing);

  WindowState& m_window;
  MediaControls& m_controls;
  StayAwake& m_stayAwake;
};

} // namespace vellum
