// Frames drawn by the processor, for scene graphs without OpenGL and for runs without a window.
#pragma once
#include "playback/MpvHandle.h"
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

struct mpv_render_context;

namespace vellum {

// 32 bits a pixel: blue, green, red, unused. Rows begin every `stride` bytes.
struct SoftwareFrame {
  int width = 0;
  int height = 0;
  std::size_t stride = 0;
  std::unique_ptr<std::byte[]> memory;
  std::byte* pixels = nullptr; // in `memory`, aligned for vector instructions
};

// Made and gone on the main thread; draws on its own thread. Nobody touches a frame once it has
// been handed out.
class MpvSoftwarePainter {
public:
  // onFrame comes on the painter's thread.
  MpvSoftwarePainter(std::shared_ptr<MpvHandle> handle, std::function<void()> onFrame);
  ~MpvSoftwarePainter();
  MpvSoftwarePainter(const MpvSoftwarePainter&) = delete;
  MpvSoftwarePainter& operator=(const MpvSoftwarePainter&) = delete;

  bool isWorking() const { return m_context != nullptr; }
  void view(const void* viewer, int width, int height);
  void leave(const void* viewer);
  std::shared_ptr<const SoftwareFrame> frame() const;

private:
  struct Viewer {
    const void* who;
    int width;
    int height;
  };

  static void wake(void* painter);
  void run();
  void draw(int width, int height);

  std::shared_ptr<MpvHandle> m_handle;
  std::function<void()> m_onFrame;
  mpv_render_context* m_context = nullptr;
  mutable std::mutex m_mutex; // guards what follows up to m_thread
  std::condition_variable m_woken;
  std::vector<Viewer> m_viewers; // the latest last
  std::shared_ptr<const SoftwareFrame> m_frame;
  bool m_isDue = false; // something may have to be drawn
  bool m_hasEnded = false;
  std::thread m_thread;
};

} // namespace vellum
