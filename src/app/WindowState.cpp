#include "app/WindowState.h"

namespace vellum {

WindowState::WindowState(Runtime& runtime, AppState& appState, AudioOutput audio)
    : app(appState), m_linkServices(app.cache),
      playback(runtime, app.settings, app.engine, app.library, m_programs, audio),
      links(runtime.main, runtime.pool, runtime.http.fetcher(), navigation, m_linkServices),
      entries(playback.coordinator, navigation) {
  playback.coordinator.setAllResults([this] { return app.aggregator.results(); });
  playback.coordinator.setPresentPlayer([this] { navigation.setShowPlayer(true); });
  QObject::connect(&app.catalog, &CatalogState::searchScreenWanted, &navigation,
                   [this] { navigation.setSection(SidebarSection::Search); });
}

void WindowState::stop() {
  playback.coordinator.close();
  navigation.setShowPlayer(false);
}

void WindowState::skip(double seconds) {
  playback.player.seek(playback.player.currentTime() + seconds);
}

} // namespace vellum
