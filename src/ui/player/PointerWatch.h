// Sees the pointer move over a part of a window, whatever lies there.
#pragma once
#include <QPointF>
#include <QPointer>
#include <QQuickItem>

namespace vellum::ui {

// Main thread. Takes nothing from the items around it. That something appears under a resting
// pointer is no movement of it, unlike to a hover handler.
class PointerWatch : public QQuickItem {
  Q_OBJECT
  QML_ELEMENT

public:
  using QQuickItem::QQuickItem;

  bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
  void moved();

protected:
  void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
  QPointer<QQuickWindow> m_window;
  QPointF m_last; // in the window
};

} // namespace vellum::ui
