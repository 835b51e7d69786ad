// Shows the frames that the processor draws, as textures of whatever scene graph there is.
#pragma once
#include "playback/MpvPicture.h"
#include <QQuickItem>

namespace vellum {

struct SoftwareFrame;

// Main thread; its node on the scene graph's, while the main thread waits.
class SoftwareCanvas final : public QQuickItem {
  Q_OBJECT

public:
  SoftwareCanvas(std::shared_ptr<MpvPicture> picture, QQuickItem& parent);
  ~SoftwareCanvas() override;

protected:
  QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
  void itemChange(ItemChange change, const ItemChangeData& data) override;
  void geometryChange(const QRectF& now, const QRectF& before) override;

private:
  void view();

  std::shared_ptr<MpvPicture> m_picture;
  std::shared_ptr<const SoftwareFrame> m_shown;
};

} // namespace vellum
