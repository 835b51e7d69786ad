// What all providers are to a search, and the providers that there are.
#pragma once
#include "models/ProviderConfig.h"
#include "models/TorrentResult.h"
#include "net/Transport.h"
#include "providers/ArchiveOrgProvider.h"
#include "storage/PreferenceStore.h"

namespace vellum {

// Immutable; any thread. Holds a copy of its record: later edits do not reach a running search.
class TorrentSearchProvider {
public:
  explicit TorrentSearchProvider(ProviderConfig config) : m_config(std::move(config)) {}
  virtual ~TorrentSearchProvider() = default;
  TorrentSearchProvider(const TorrentSearchProvider&) = delete;
  TorrentSearchProvider& operator=(const TorrentSearchProvider&) = delete;

  const ProviderConfig& config() const { return m_config; }
  // Awaitable on any executor, where it also parses; the provider outlives it. Throws errors with a
  // sentence, and asio::system_error when cancelled.
  virtual Flow<TorrentResults> search(QString query) const = 0;

private:
  const ProviderConfig m_config;
};

using TorrentSearchProviders = std::vector<std::shared_ptr<const TorrentSearchProvider>>;

// An indexer of any kind, asked by ProviderSearch.
class IndexerProvider final : public TorrentSearchProvider {
public:
  IndexerProvider(ProviderConfig config, Transport transport, PreferenceStore& memory)
      : TorrentSearchProvider(std::move(config)), m_transport(std::move(transport)),
        m_memory(memory) {}
  Flow<TorrentResults> search(QString query) const override;

private:
  Transport m_transport;
  PreferenceStore& m_memory;
};

// The film catalog as one provider among the others. Its rows are no torrents: they carry an
// archiveID and no info hash.
class ArchiveSearchProvider final : public TorrentSearchProvider {
public:
  static constexpr int kRows = 30;

  ArchiveSearchProvider(ProviderConfig config, ArchiveOrgProvider catalog)
      : TorrentSearchProvider(std::move(config)), m_catalog(std::move(catalog)) {}
  Flow<TorrentResults> search(QString query) const override;

private:
  ArchiveOrgProvider m_catalog;
};

} // namespace vellum
