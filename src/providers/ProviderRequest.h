// What a search asks of each kind of provider. Pure.
#pragma once
#include "models/ProviderConfig.h"
#include "providers/ProviderURL.h"

namespace vellum {

enum class ExpectedFormat { Json, Xml };

struct ProviderRequest {
  QString path;
  ProviderURL::Items items;
  ExpectedFormat expect = ExpectedFormat::Json;
  bool operator==(const ProviderRequest&) const = default;
};

// Nothing for the catalog, which is asked in its own way.
std::optional<ProviderRequest> providerRequest(ProviderKind kind, const QString& query,
                                               const QString& apiKey);

} // namespace vellum
