#include "app/Navigation.h"
#include <array>

namespace vellum {

namespace {
constexpr std::array kNames{"home",    "discover",  "search",  "torrents",
                            "library", "downloads", "settings"};
} // namespace

QString rawValue(SidebarSection section) {
  return QLatin1String(kNames[static_cast<std::size_t>(section)]);
}

std::optional<SidebarSection> sidebarSection(const QString& rawValue) {
  for (std::size_t i = 0; i < kNames.size(); ++i)
    if (rawValue == QLatin1String(kNames[i])) return static_cast<SidebarSection>(i);
  return std::nullopt;
}

void Navigation::setSection(SidebarSection section) {
  if (m_section == section) return;
  m_section = section;
  Q_EMIT sectionChanged();
}

void Navigation::setSelectedItem(std::optional<MediaItem> item) {
  m_selectedItem = std::move(item);
  Q_EMIT selectedItemChanged();
}

void Navigation::setShowPlayer(bool show) {
  if (m_showPlayer == show) return;
  m_showPlayer = show;
  Q_EMIT showPlayerChanged();
}

void Navigation::setNotice(std::optional<QString> notice) {
  m_notice = std::move(notice);
  Q_EMIT noticeChanged();
}

void Navigation::setInspector(std::optional<TorrentInfo> info) {
  m_inspector = std::move(info);
  Q_EMIT inspectorChanged();
}

} // namespace vellum
