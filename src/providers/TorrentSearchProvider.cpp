#include "providers/TorrentSearchProvider.h"
#include "providers/ProviderSearch.h"

namespace vellum {

Flow<TorrentResults> IndexerProvider::search(QString query) const {
  return ProviderSearch::run(config(), std::move(query), m_transport, m_memory);
}

Flow<TorrentResults> ArchiveSearchProvider::search(QString query) const {
  const MediaItems items =
      co_await m_catalog.search({.text = std::move(query), .extra = {}, .rows = kRows});
  TorrentResults results;
  for (const MediaItem& item : items) {
    TorrentResult result;
    result.id = QStringLiteral("archive:") + item.id;
    result.title = item.title;
    result.sources = {config().name};
    result.archiveID = item.id;
    result.pageURL = item.pageURL();
    result.year = item.year;
    result.license = item.licenseURL;
    results.push_back(std::move(result));
  }
  co_return results;
}

} // namespace vellum
