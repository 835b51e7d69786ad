#include "ui/player/PointerWatch.h"
#include <QMouseEvent>
#include <QQuickWindow>
#include <utility>

namespace vellum::ui {

void PointerWatch::itemChange(ItemChange change, const ItemChangeData& data) {
  QQuickItem::itemChange(change, data);
  if (change != ItemSceneChange) return;
  if (m_window) m_window->removeEventFilter(this);
  m_window = data.window;
  if (m_window) m_window->installEventFilter(this);
}

bool PointerWatch::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseMove && isVisible()) {
    const QPointF at = static_cast<QMouseEvent*>(event)->scenePosition();
    // Some systems repeat the last move when windows change.
    if (at != std::exchange(m_last, at) && contains(mapFromScene(at))) Q_EMIT moved();
  }
  return QQuickItem::eventFilter(watched, event);
}

} // namespace vellum::ui
