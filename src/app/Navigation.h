// Where the user is: the section, and what stands over it.
#pragma once
#include "formats/TorrentMetadata.h"
#include "models/MediaItem.h"
#include <QObject>

namespace vellum {

enum class SidebarSection { Home, Discover, Search, Torrents, Library, Downloads, Settings };

// As it is stored and named in the interface: "home". Nothing for an unknown name.
QString rawValue(SidebarSection section);
std::optional<SidebarSection> sidebarSection(const QString& rawValue);

// Main thread. Values that many write and the window shows; nothing happens here.
class Navigation final : public QObject {
  Q_OBJECT

public:
  SidebarSection section() const { return m_section; }
  const std::optional<MediaItem>& selectedItem() const { return m_selectedItem; }
  bool showPlayer() const { return m_showPlayer; }
  // The one message slot of the program.
  const std::optional<QString>& notice() const { return m_notice; }
  // The torrent or link that the inspector shows.
  const std::optional<TorrentInfo>& inspector() const { return m_inspector; }

  void setSection(SidebarSection section);
  void setSelectedItem(std::optional<MediaItem> item);
  void setShowPlayer(bool show);
  void setNotice(std::optional<QString> notice);
  void setInspector(std::optional<TorrentInfo> info);

Q_SIGNALS:
  void sectionChanged();
  void selectedItemChanged();
  void showPlayerChanged();
  void noticeChanged();
  void inspectorChanged();

private:
  SidebarSection m_section = SidebarSection::Home;
  std::optional<MediaItem> m_selectedItem;
  bool m_showPlayer = false;
  std::optional<QString> m_notice;
  std::optional<TorrentInfo> m_inspector;
};

} // namespace vellum
