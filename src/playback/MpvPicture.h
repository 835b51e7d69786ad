// What a player shows: one drawing context, over which any number of items take turns.
#pragma once
#include "playback/MpvHandle.h"
#include <QObject>
#include <atomic>
#include <memory>

struct mpv_render_context;

namespace vellum {

class MpvSoftwarePainter;
struct SoftwareFrame;

// Made on the main thread by the player; shared with whoever shows it, so that it can be let go
// where it draws. Draws either on the processor, on a thread of its own, or with OpenGL on one
// thread of the caller's; the first that begins decides.
class MpvPicture final : public QObject {
  Q_OBJECT

public:
  explicit MpvPicture(std::shared_ptr<MpvHandle> handle);
  ~MpvPicture() override;

  // Any thread. The player opens nothing before.
  bool isReady() const { return m_isReady; }

  // Main thread. The frames are made in the size that the latest viewer asked for (pixels; one
  // viewer asks as often as it likes), or thrown away while there is no viewer.
  void viewInSoftware(const void* viewer, int width, int height);
  void leaveSoftware(const void* viewer);
  // Null until there is one.
  std::shared_ptr<const SoftwareFrame> softwareFrame() const;

  // On the thread that draws, with its OpenGL context current, by which the caller names itself:
  // while one has begun, what others ask is passed over. Beginning again does nothing. Whoever
  // began must end before the context goes; what plays shows nothing then until somebody begins.
  using GetProcAddress = void* (*)(void*, const char* name);
  void beginOpenGl(const void* context, GetProcAddress getProcAddress);
  void drawOpenGl(const void* context, int framebuffer, int width, int height);
  void endOpenGl(const void* context);

Q_SIGNALS:
  void ready();      // from any thread
  void frameReady(); // from any thread, which must not draw at once

private:
  std::shared_ptr<MpvHandle> m_handle;
  std::atomic<bool> m_isReady = false;
  std::atomic<const void*> m_context = nullptr; // whose m_openGl is
  mpv_render_context* m_openGl = nullptr;
  std::unique_ptr<MpvSoftwarePainter> m_software;
};

} // namespace vellum
