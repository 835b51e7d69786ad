#include "providers/ProviderSearch.h"
#include "net/NetError.h"
#include "providers/Json.h"
#include "providers/ProviderError.h"
#include "providers/ProviderParser.h"

namespace vellum {

Flow<TorrentResults> ProviderSearch::run(ProviderConfig config, QString query, Transport transport,
                                         PreferenceStore& memory) {
  const auto request = providerRequest(config.kind, query, config.apiKey);
  if (!request) co_return TorrentResults();
  const auto answer = co_await ProviderClient::fetch(config, *request, transport, memory);
  try {
    co_return parseResults(config.kind, answer.body, config.name);
  } catch (const NetError&) {
    throw ProviderError::unexpectedFormat(config.name);
  } catch (const json::SyntaxError&) {
    throw ProviderError::unexpectedFormat(config.name);
  }
}

} // namespace vellum
