#include "ui/window/WindowModel.h"
#include "base/Text.h"

namespace vellum::ui {

WindowModel::WindowModel(WindowState& window) : m_window(window) {
  const Navigation* navigation = &window.navigation;
  const PlaybackCoordinator* playback = &window.playback.coordinator;
  connect(navigation, &Navigation::sectionChanged, this, &WindowModel::sectionChanged);
  connect(navigation, &Navigation::showPlayerChanged, this, &WindowModel::playerChanged);
  connect(playback, &PlaybackCoordinator::nowPlayingChanged, this, &WindowModel::playerChanged);
  connect(navigation, &Navigation::noticeChanged, this, &WindowModel::noticeChanged);
  connect(playback, &PlaybackCoordinator::zeroSeedPromptChanged, this,
          &WindowModel::asksAboutSeedersChanged);
  connect(&window.playback.player, &VideoPlayerManager::isMutedChanged, this,
          &WindowModel::isMutedChanged);
}

QVariantList WindowModel::sections() {
  const auto row = [](SidebarSection section, const QString& title, const char* icon) {
    return QVariantMap{{QStringLiteral("id"), rawValue(section)},
                       {QStringLiteral("title"), title},
                       {QStringLiteral("icon"), QLatin1String(icon)}};
  };
  using S = SidebarSection;
  return {row(S::Home, tr("Home"), "home"),
          row(S::Discover, tr("Discover"), "discover"),
          row(S::Search, tr("Search"), "search"),
          row(S::Torrents, tr("Torrent Search"), "torrents"),
          row(S::Library, tr("Library"), "library"),
          row(S::Downloads, tr("Downloads"), "downloads"),
          row(S::Settings, tr("Settings"), "settings")};
}

void WindowModel::setSection(const QString& section) {
  if (const auto known = sidebarSection(section)) m_window.navigation.setSection(*known);
}

bool WindowModel::showsPlayer() const {
  return m_window.navigation.showPlayer() && coordinator().nowPlaying();
}

bool WindowModel::showsMiniPlayer() const {
  return !m_window.navigation.showPlayer() && coordinator().nowPlaying();
}

QString WindowModel::title() const {
  return showsPlayer() ? printable(coordinator().nowPlaying()->title) : QStringLiteral("Vellum");
}

void WindowModel::answerAboutSeeders(bool tryAnyway) {
  const auto prompt = coordinator().zeroSeedPrompt();
  m_window.playback.coordinator.clearZeroSeedPrompt();
  if (tryAnyway && prompt)
    m_window.playback.coordinator.playFromSearchResult(prompt->result, prompt->quality, true, true);
}

} // namespace vellum::ui
