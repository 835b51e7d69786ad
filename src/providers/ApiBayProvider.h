// The dialect of ApiBay-style indexers: a flat JSON array of torrents. Pure.
#pragma once
#include "models/TorrentResult.h"
#include <QByteArray>

namespace vellum {

struct ApiBayProvider {
  // `source` is the provider's name. Bad rows are skipped. Throws json::SyntaxError, and NetError
  // (Empty) when the document has another shape.
  static TorrentResults parse(const QByteArray& bytes, const QString& source);
};

} // namespace vellum
