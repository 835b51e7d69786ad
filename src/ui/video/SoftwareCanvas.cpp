#include "ui/video/SoftwareCanvas.h"
#include "playback/MpvSoftwarePainter.h"
#include <QImage>
#include <QQuickWindow>
#include <QSGImageNode>

namespace vellum {

namespace {

QImage imageOf(const SoftwareFrame& frame) {
  return {reinterpret_cast<const uchar*>(frame.pixels), frame.width, frame.height,
          static_cast<qsizetype>(frame.stride), QImage::Format_RGB32};
}

} // namespace

SoftwareCanvas::SoftwareCanvas(std::shared_ptr<MpvPicture> picture, QQuickItem& parent)
    : QQuickItem(&parent), m_picture(std::move(picture)) {
  setFlag(ItemHasContents);
  connect(
      m_picture.get(), &MpvPicture::frameReady, this, [this] { update(); }, Qt::QueuedConnection);
}

SoftwareCanvas::~SoftwareCanvas() { m_picture->leaveSoftware(this); }

void SoftwareCanvas::view() {
  const qreal ratio = window() != nullptr ? window()->effectiveDevicePixelRatio() : 1;
  const QSize pixels = (size() * ratio).toSize();
  if (isVisible() && !pixels.isEmpty())
    m_picture->viewInSoftware(this, pixels.width(), pixels.height());
  else
    m_picture->leaveSoftware(this);
}

void SoftwareCanvas::itemChange(ItemChange change, const ItemChangeData& data) {
  QQuickItem::itemChange(change, data);
  if (change == ItemVisibleHasChanged || change == ItemDevicePixelRatioHasChanged) view();
}

void SoftwareCanvas::geometryChange(const QRectF& now, const QRectF& before) {
  QQuickItem::geometryChange(now, before);
  view();
}

QSGNode* SoftwareCanvas::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
  auto* node = static_cast<QSGImageNode*>(old);
  auto frame = m_picture->softwareFrame();
  if (!frame) return node;
  if (node == nullptr) {
    node = window()->createImageNode();
    node->setOwnsTexture(true);
    node->setFiltering(QSGTexture::Linear);
    m_shown.reset();
  }
  if (frame != m_shown) {
    node->setTexture(
        window()->createTextureFromImage(imageOf(*frame), QQuickWindow::TextureIsOpaque));
    m_shown = std::move(frame);
  }
  node->setRect(boundingRect());
  return node;
}

} // namespace vellum
