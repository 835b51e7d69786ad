#include "playback/MpvSoftwarePainter.h"
#include <algorithm>
#include <mpv/render.h>

namespace vellum {

namespace {

constexpr std::size_t kAlignment = 64; // bytes; the scaler's fast paths want it
constexpr int kLargestSide = 16384;    // pixels
constexpr std::size_t kBytesPerPixel = 4;

std::shared_ptr<SoftwareFrame> makeFrame(int width, int height) {
  auto frame = std::make_shared<SoftwareFrame>();
  frame->width = width;
  frame->height = height;
  const std::size_t row = static_cast<std::size_t>(width) * kBytesPerPixel;
  frame->stride = (row + kAlignment - 1) / kAlignment * kAlignment;
  std::size_t room = frame->stride * static_cast<std::size_t>(height) + kAlignment;
  frame->memory = std::make_unique_for_overwrite<std::byte[]>(room);
  void* begin = frame->memory.get();
  frame->pixels = static_cast<std::byte*>(std::align(kAlignment, room - kAlignment, begin, room));
  return frame;
}

// With width 0 the frame is taken and not drawn.
int render(mpv_render_context* context, SoftwareFrame& frame) {
  int size[2] = {frame.width, frame.height};
  int skip = frame.width == 0 ? 1 : 0;
  int block = 0;
  char format[] = "bgr0";
  mpv_render_param parameters[] = {{MPV_RENDER_PARAM_SW_SIZE, size},
                                   {MPV_RENDER_PARAM_SW_FORMAT, format},
                                   {MPV_RENDER_PARAM_SW_STRIDE, &frame.stride},
                                   {MPV_RENDER_PARAM_SW_POINTER, frame.pixels},
                                   {MPV_RENDER_PARAM_SKIP_RENDERING, &skip},
                                   {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &block},
                                   {MPV_RENDER_PARAM_INVALID, nullptr}};
  return mpv_render_context_render(context, parameters);
}

} // namespace

MpvSoftwarePainter::MpvSoftwarePainter(std::shared_ptr<MpvHandle> handle,
                                       std::function<void()> onFrame)
    : m_handle(std::move(handle)), m_onFrame(std::move(onFrame)) {
  char api[] = MPV_RENDER_API_TYPE_SW;
  mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, api},
                                   {MPV_RENDER_PARAM_INVALID, nullptr}};
  if (m_handle->get() == nullptr ||
      mpv_render_context_create(&m_context, m_handle->get(), parameters) < 0) {
    m_context = nullptr;
    return;
  }
  mpv_render_context_set_update_callback(m_context, &MpvSoftwarePainter::wake, this);
  m_thread = std::thread([this] { run(); });
}

MpvSoftwarePainter::~MpvSoftwarePainter() {
  if (m_context == nullptr) return;
  mpv_render_context_set_update_callback(m_context, nullptr, nullptr);
  {
    const std::lock_guard lock(m_mutex);
    m_hasEnded = true;
  }
  m_woken.notify_one();
  m_thread.join();
  mpv_render_context_free(m_context);
}

void MpvSoftwarePainter::wake(void* painter) {
  auto& self = *static_cast<MpvSoftwarePainter*>(painter);
  {
    const std::lock_guard lock(self.m_mutex);
    self.m_isDue = true;
  }
  self.m_woken.notify_one();
}

void MpvSoftwarePainter::view(const void* viewer, int width, int height) {
  {
    const std::lock_guard lock(m_mutex);
    const Viewer entry{viewer, std::clamp(width, 1, kLargestSide),
                       std::clamp(height, 1, kLargestSide)};
    const auto old = std::ranges::find(m_viewers, viewer, &Viewer::who);
    if (old == m_viewers.end())
      m_viewers.push_back(entry);
    else
      *old = entry;
    m_isDue = true;
  }
  m_woken.notify_one();
}

void MpvSoftwarePainter::leave(const void* viewer) {
  {
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_viewers, [viewer](const Viewer& entry) { return entry.who == viewer; });
    m_isDue = true; // in the size of the viewer before
  }
  m_woken.notify_one();
}

std::shared_ptr<const SoftwareFrame> MpvSoftwarePainter::frame() const {
  const std::lock_guard lock(m_mutex);
  return m_frame;
}

void MpvSoftwarePainter::run() {
  int drawnWidth = 0;
  int drawnHeight = 0;
  for (;;) {
    Viewer viewer{nullptr, 0, 0};
    {
      std::unique_lock lock(m_mutex);
      m_woken.wait(lock, [this] { return m_isDue || m_hasEnded; });
      if (m_hasEnded) return;
      m_isDue = false;
      if (!m_viewers.empty()) viewer = m_viewers.back();
    }
    const bool isNew = (mpv_render_context_update(m_context) & MPV_RENDER_UPDATE_FRAME) != 0;
    const bool isResized = viewer.width != drawnWidth || viewer.height != drawnHeight;
    if (!isNew && (!isResized || viewer.width == 0)) continue;
    drawnWidth = viewer.width;
    drawnHeight = viewer.height;
    draw(viewer.width, viewer.height);
  }
}

void MpvSoftwarePainter::draw(int width, int height) {
  const auto frame = makeFrame(width, height);
  if (render(m_context, *frame) < 0 || width == 0) return;
  {
    const std::lock_guard lock(m_mutex);
    m_frame = frame;
  }
  m_onFrame();
}

} // namespace vellum
