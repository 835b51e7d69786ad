// The place on a screen where the film is seen.
#pragma once
#include "playback/VideoPlayerManager.h"
#include <QPointer>
#include <QQuickItem>
#include <qqmlintegration.h>

namespace vellum {

// The player as QML knows it, for its properties and for VideoPlayer.Fit and its kin.
struct VideoPlayerInQml {
  Q_GADGET
  QML_FOREIGN(vellum::VideoPlayerManager)
  QML_NAMED_ELEMENT(VideoPlayer)
  QML_UNCREATABLE("Given to the screens")
};

// Main thread. Any number of them may show one player, with OpenGL in one window at a time; the
// picture goes on where it is when one hands over to another. Drawn with OpenGL where the scene
// graph is, otherwise by the processor. Nothing is drawn while the film does not move.
class VideoPicture : public QQuickItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(
      vellum::VideoPlayerManager* player READ player WRITE setPlayer NOTIFY playerChanged FINAL)

public:
  explicit VideoPicture(QQuickItem* parent = nullptr);

  VideoPlayerManager* player() const { return m_player; }
  void setPlayer(VideoPlayerManager* player);

Q_SIGNALS:
  void playerChanged();

protected:
  void itemChange(ItemChange change, const ItemChangeData& data) override;
  void geometryChange(const QRectF& now, const QRectF& before) override;

private:
  void rebuild(QQuickWindow* window);

  QPointer<VideoPlayerManager> m_player;
  std::unique_ptr<QQuickItem> m_canvas; // what draws, of the kind that the window's scene graph is
};

} // namespace vellum
