// Draws the picture with OpenGL, in the scene graph's own context.
#pragma once
#include "playback/MpvPicture.h"
#include <QQuickFramebufferObject>

namespace vellum {

// Main thread; its renderer on the scene graph's. The picture begins with the first of them in a
// window and ends with the window's scene graph, not with the item.
class OpenGlCanvas final : public QQuickFramebufferObject {
  Q_OBJECT

public:
  OpenGlCanvas(std::shared_ptr<MpvPicture> picture, QQuickWindow& window, QQuickItem& parent);

  Renderer* createRenderer() const override;

private:
  std::shared_ptr<MpvPicture> m_picture;
};

} // namespace vellum
