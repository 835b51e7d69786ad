// The composition root: makes every service once, in a binding order, and holds them for the life
// of the process. No service has a reference to it.
#pragma once
#include "app/CatalogState.h"
#include "app/Runtime.h"
#include "engine/TorrentEngine.h"
#include "providers/ProviderRegistry.h"
#include "providers/SearchAggregator.h"
#include "storage/CacheManager.h"
#include "storage/DownloadManager.h"
#include "storage/LibraryStore.h"
#include "storage/SettingsStore.h"

namespace vellum {

// Main thread.
class AppState final {
public:
  struct Options {
    QStringList defaultTrackers;
    QString streamsDirectory; // empty: below the cache folder
    std::optional<bool> keep; // instead of the setting
  };

  // The runtime outlives it.
  AppState(Runtime& runtime, const Options& options);
  ~AppState();
  AppState(const AppState&) = delete;
  AppState& operator=(const AppState&) = delete;

private:
  class EngineSurroundings;

public:
  // Later ones take earlier ones: the order is that of construction.
  SettingsStore settings;
  LibraryStore library;
  SearchAggregator aggregator;
  CatalogState catalog;
  CacheManager cache;
  DownloadManager downloads;
  ProviderRegistry registry;

private:
  std::unique_ptr<EngineSurroundings> m_surroundings;

public:
  TorrentEngine engine;
};

} // namespace vellum
