// The models of the screens: those that last as long as the window, and those made for a page.
#pragma once
#include "app/WindowState.h"
#include "ui/player/PlayerModel.h"
#include "ui/torrents/InspectorModel.h"
#include "ui/torrents/TorrentSearchModel.h"

namespace vellum::ui {

// Main thread.
class Screens final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Given to the window")
  Q_PROPERTY(vellum::ui::PlayerModel* player READ player CONSTANT)
  Q_PROPERTY(vellum::ui::InspectorModel* inspector READ inspector CONSTANT)

public:
  // It outlives the models.
  explicit Screens(WindowState& window);

  PlayerModel* player() { return &m_player; }
  InspectorModel* inspector() { return &m_inspector; }
  // Lives as long as the page that it is for.
  Q_INVOKABLE vellum::ui::TorrentSearchModel* torrentSearch(QObject* page);

private:
  WindowState& m_window;
  PlayerModel m_player;
  InspectorModel m_inspector;
};

} // namespace vellum::ui
