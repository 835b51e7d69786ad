#include "providers/ProviderRequest.h"

namespace vellum {

std::optional<ProviderRequest> providerRequest(ProviderKind kind, const QString& query,
                                               const QString& apiKey) {
  const auto item = [](const char* name, const QString& value) {
    return std::pair(QString::fromLatin1(name), value);
  };
  switch (kind) {
  case ProviderKind::ArchiveOrg: return std::nullopt;
  case ProviderKind::Apibay:
    return ProviderRequest{QStringLiteral("/q.php"),
                           {item("q", query), item("cat", QStringLiteral("200"))},
                           ExpectedFormat::Json};
  case ProviderKind::Yts:
    return ProviderRequest{QStringLiteral("/api/v2/list_movies.json"),
                           {item("query_term", query), item("limit", QStringLiteral("30"))},
                           ExpectedFormat::Json};
  case ProviderKind::Torznab: {
    // The base address is the whole address of the interface.
    ProviderRequest request{
        {}, {item("t", QStringLiteral("search")), item("q", query)}, ExpectedFormat::Xml};
    if (!apiKey.isEmpty()) request.items.push_back(item("apikey", apiKey));
    return request;
  }
  }
  return std::nullopt;
}

} // namespace vellum
