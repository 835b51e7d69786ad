// The parser of each kind of indexer. Pure.
#pragma once
#include "models/ProviderConfig.h"
#include "models/TorrentResult.h"
#include <QByteArray>

namespace vellum {

// `source` is the provider's name. Throws what the kind's parser throws; the catalog, which has no
// answers of this sort, gives nothing.
TorrentResults parseResults(ProviderKind kind, const QByteArray& bytes, const QString& source);

} // namespace vellum
