// One whole search at one provider: ask, read, or say why not.
#pragma once
#include "models/TorrentResult.h"
#include "providers/ProviderClient.h"

namespace vellum {

// No state; any executor. Parses where it is awaited: keep large answers off the main thread.
struct ProviderSearch {
  // Throws ProviderError, the indexer's own complaint (IndexerError), XmlError, and
  // asio::system_error when cancelled.
  static Flow<TorrentResults> run(ProviderConfig config, QString query, Transport transport,
                                  PreferenceStore& memory);
};

} // namespace vellum
