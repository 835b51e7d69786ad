// The models of the screens: those that last as long as the window, and those made for a page.
#pragma once
#include "app/WindowState.h"
#include "ui/catalog/CatalogSearchModel.h"
#include "ui/catalog/DiscoverModel.h"
#include "ui/catalog/HomeModel.h"
#include "ui/catalog/ItemModel.h"
#include "ui/manage/DownloadsModel.h"
#include "ui/manage/LibraryModel.h"
#include "ui/manage/SettingsModel.h"
#include "ui/player/PlayerModel.h"
#include "ui/torrents/InspectorModel.h"
#include "ui/torrents/TorrentSearchModel.h"

namespace vellum::ui {

// Main thread.
class Screens final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Given to the window")
  Q_PROPERTY(vellum::ui::HomeModel* home READ home CONSTANT)
  Q_PROPERTY(vellum::ui::DiscoverModel* discover READ discover CONSTANT)
  Q_PROPERTY(vellum::ui::CatalogSearchModel* search READ search CONSTANT)
  Q_PROPERTY(vellum::ui::ItemModel* item READ item CONSTANT)
  Q_PROPERTY(vellum::ui::LibraryModel* library READ library CONSTANT)
  Q_PROPERTY(vellum::ui::DownloadsModel* downloads READ downloads CONSTANT)
  Q_PROPERTY(vellum::ui::SettingsModel* settings READ settings CONSTANT)
  Q_PROPERTY(vellum::ui::PlayerModel* player READ player CONSTANT)
  Q_PROPERTY(vellum::ui::InspectorModel* inspector READ inspector CONSTANT)

public:
  // Both outlive the models.
  Screens(Runtime& runtime, WindowState& window);

  HomeModel* home() { return &m_home; }
  DiscoverModel* discover() { return &m_discover; }
  CatalogSearchModel* search() { return &m_search; }
  ItemModel* item() { return &m_item; }
  LibraryModel* library() { return &m_library; }
  DownloadsModel* downloads() { return &m_downloads; }
  SettingsModel* settings() { return &m_settings; }
  PlayerModel* player() { return &m_player; }
  InspectorModel* inspector() { return &m_inspector; }
  // Lives as long as the page that it is for.
  Q_INVOKABLE vellum::ui::TorrentSearchModel* torrentSearch(QObject* page);

private:
  WindowState& m_window;
  HomeModel m_home;
  DiscoverModel m_discover;
  CatalogSearchModel m_search;
  ItemModel m_item;
  LibraryModel m_library;
  DownloadsModel m_downloads;
  SettingsModel m_settings;
  PlayerModel m_player;
  InspectorModel m_inspector;
};

} // namespace vellum::ui
