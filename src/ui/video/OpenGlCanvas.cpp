#include "ui/video/OpenGlCanvas.h"
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QQuickOpenGLUtils>
#include <QQuickWindow>

namespace vellum {

namespace {

void* procAddress(void*, const char* name) {
  auto* context = QOpenGLContext::currentContext();
  return context != nullptr ? reinterpret_cast<void*>(context->getProcAddress(name)) : nullptr;
}

class PictureRenderer final : public QQuickFramebufferObject::Renderer {
public:
  explicit PictureRenderer(std::shared_ptr<MpvPicture> picture) : m_picture(std::move(picture)) {}

  QOpenGLFramebufferObject* createFramebufferObject(const QSize& size) override {
    m_picture->beginOpenGl(QOpenGLContext::currentContext(), &procAddress);
    return Renderer::createFramebufferObject(size);
  }
  void render() override {
    const auto* target = framebufferObject();
    m_picture->drawOpenGl(QOpenGLContext::currentContext(), static_cast<int>(target->handle()),
                          target->width(), target->height());
    QQuickOpenGLUtils::resetOpenGLState();
  }

private:
  std::shared_ptr<MpvPicture> m_picture;
};

// Lives with a window: keeps a picture until the window's OpenGL context goes, and ends it there.
class PictureKeeper final : public QObject {
public:
  PictureKeeper(std::shared_ptr<MpvPicture> picture, QQuickWindow& window)
      : QObject(&window), m_picture(std::move(picture)) {
    connect(
        &window, &QQuickWindow::sceneGraphInvalidated, this,
        [this] { m_picture->endOpenGl(QOpenGLContext::currentContext()); }, Qt::DirectConnection);
  }
  bool keeps(const MpvPicture& picture) const { return m_picture.get() == &picture; }

private:
  std::shared_ptr<MpvPicture> m_picture;
};

void keepWith(QQuickWindow& window, const std::shared_ptr<MpvPicture>& picture) {
  for (auto* child : window.children())
    if (const auto* keeper = dynamic_cast<PictureKeeper*>(child);
        keeper != nullptr && keeper->keeps(*picture))
      return;
  new PictureKeeper(picture, window); // owned by the window
}

} // namespace

OpenGlCanvas::OpenGlCanvas(std::shared_ptr<MpvPicture> picture, QQuickWindow& window,
                           QQuickItem& parent)
    : QQuickFramebufferObject(&parent), m_picture(std::move(picture)) {
  keepWith(window, m_picture);
  connect(
      m_picture.get(), &MpvPicture::frameReady, this, [this] { update(); }, Qt::QueuedConnection);
}

QQuickFramebufferObject::Renderer* OpenGlCanvas::createRenderer() const {
  return new PictureRenderer(m_picture);
}

} // namespace vellum
