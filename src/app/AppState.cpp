#include "app/AppState.h"

namespace vellum {

namespace {

// Holds the provider for as long as the search runs.
Flow<MediaItems> searchOf(std::shared_ptr<const ArchiveOrgProvider> provider, CatalogQuery query) {
  co_return co_await provider->search(std::move(query));
}

CatalogState::Search catalogSearch(Runtime& runtime) {
  const auto provider = std::make_shared<const ArchiveOrgProvider>(runtime.http.fetcher());
  return [provider](CatalogQuery query) { return searchOf(provider, std::move(query)); };
}

} // namespace

// Answers the engine's questions from settings, cache and stream server.
class AppState::EngineSurroundings final : public TorrentEngine::Surroundings {
public:
  EngineSurroundings(Runtime& runtime, SettingsStore& settings, CacheManager& cache,
                     const Options& options)
      : m_runtime(runtime), m_settings(settings), m_cache(cache), m_options(options) {}

  QString streamsDirectory() override {
    if (!m_options.streamsDirectory.isEmpty()) return m_options.streamsDirectory;
    return m_cache.torrentDir() + QStringLiteral("/streams");
  }
  bool stopSeedingOnClose() const override { return m_settings.stopSeedingOnClose(); }
  bool keepAfterPlayback() const override {
    return m_options.keep.value_or(m_settings.keepAfterPlayback());
  }
  std::function<std::int64_t()> uploadLimit() const override {
    return
        [&preferences = m_runtime.preferences] { return SettingsStore::uploadLimit(preferences); };
  }
  void unregister(const QString& key) override { m_runtime.server.unregisterSource(key); }
  void cacheChanged() override { m_cache.refresh(); }

private:
  Runtime& m_runtime;
  SettingsStore& m_settings;
  CacheManager& m_cache;
  Options m_options;
};

AppState::AppState(Runtime& runtime, const Options& options)
    : settings(runtime.preferences),
      library(SettingsStore::appSupport() + QStringLiteral("/history.json")),
      aggregator(runtime.main, runtime.pool),
      catalog(runtime.main, runtime.pool, catalogSearch(runtime)),
      cache(settings, runtime.main, runtime.pool, runtime.http),
      downloads(settings, runtime.main, runtime.pool, runtime.transfers),
      registry(settings, runtime.preferences, runtime.http.transport(),
               ArchiveOrgProvider(runtime.http.fetcher())),
      m_surroundings(std::make_unique<EngineSurroundings>(runtime, settings, cache, options)),
      engine(runtime.sessionEnvironment(options.defaultTrackers), *m_surroundings) {}

AppState::~AppState() = default;

} // namespace vellum
