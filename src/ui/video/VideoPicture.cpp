#include "ui/video/VideoPicture.h"
#include "ui/video/OpenGlCanvas.h"
#include "ui/video/SoftwareCanvas.h"
#include <QQuickWindow>
#include <QSGRendererInterface>

namespace vellum {

VideoPicture::VideoPicture(QQuickItem* parent) : QQuickItem(parent) {}

void VideoPicture::setPlayer(VideoPlayerManager* player) {
  if (player == m_player) return;
  m_player = player;
  rebuild(window());
  Q_EMIT playerChanged();
}

void VideoPicture::itemChange(ItemChange change, const ItemChangeData& data) {
  QQuickItem::itemChange(change, data);
  if (change == ItemSceneChange) rebuild(data.window);
}

void VideoPicture::geometryChange(const QRectF& now, const QRectF& before) {
  QQuickItem::geometryChange(now, before);
  if (m_canvas) m_canvas->setSize(now.size());
}

void VideoPicture::rebuild(QQuickWindow* window) {
  m_canvas.reset();
  if (window == nullptr || m_player == nullptr) return;
  const auto api = window->rendererInterface()->graphicsApi();
  if (api == QSGRendererInterface::OpenGL)
    m_canvas = std::make_unique<OpenGlCanvas>(m_player->picture(), *window, *this);
  else
    m_canvas = std::make_unique<SoftwareCanvas>(m_player->picture(), *this);
  m_canvas->setSize(size());
}

} // namespace vellum
