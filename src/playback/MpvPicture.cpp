#include "playback/MpvPicture.h"
#include "playback/MpvSoftwarePainter.h"
#include <mpv/render_gl.h>

namespace vellum {

MpvPicture::MpvPicture(std::shared_ptr<MpvHandle> handle) : m_handle(std::move(handle)) {}

MpvPicture::~MpvPicture() { endOpenGl(m_context); }

void MpvPicture::viewInSoftware(const void* viewer, int width, int height) {
  if (!m_software) {
    if (m_isReady) return; // OpenGL was first
    m_software = std::make_unique<MpvSoftwarePainter>(m_handle, [this] { Q_EMIT frameReady(); });
    m_isReady = m_software->isWorking();
    if (m_isReady) Q_EMIT ready();
  }
  m_software->view(viewer, width, height);
}

void MpvPicture::leaveSoftware(const void* viewer) {
  if (m_software) m_software->leave(viewer);
}

std::shared_ptr<const SoftwareFrame> MpvPicture::softwareFrame() const {
  return m_software ? m_software->frame() : nullptr;
}

void MpvPicture::beginOpenGl(const void* context, GetProcAddress getProcAddress) {
  if (m_isReady || m_handle->get() == nullptr) return;
  char api[] = MPV_RENDER_API_TYPE_OPENGL;
  mpv_opengl_init_params init{getProcAddress, nullptr};
  mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, api},
                                   {MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &init},
                                   {MPV_RENDER_PARAM_INVALID, nullptr}};
  if (mpv_render_context_create(&m_openGl, m_handle->get(), parameters) < 0) {
    m_openGl = nullptr;
    return;
  }
  m_context = context;
  mpv_render_context_set_update_callback(
      m_openGl, [](void* self) { Q_EMIT static_cast<MpvPicture*>(self)->frameReady(); }, this);
  m_isReady = true;
  Q_EMIT ready();
}

void MpvPicture::drawOpenGl(const void* context, int framebuffer, int width, int height) {
  if (m_context != context) return;
  mpv_opengl_fbo target{framebuffer, width, height, 0};
  int block = 0;
  mpv_render_param parameters[] = {{MPV_RENDER_PARAM_OPENGL_FBO, &target},
                                   {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &block},
                                   {MPV_RENDER_PARAM_INVALID, nullptr}};
  mpv_render_context_render(m_openGl, parameters);
}

void MpvPicture::endOpenGl(const void* context) {
  if (context == nullptr || m_context != context) return;
  m_isReady = false;
  m_context = nullptr;
  mpv_render_context_set_update_callback(m_openGl, nullptr, nullptr);
  mpv_render_context_free(std::exchange(m_openGl, nullptr));
}

} // namespace vellum
