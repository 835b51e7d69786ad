// The dialect of YTS-style indexers: films in JSON, each with several torrents. Pure.
#pragma once
#include "models/TorrentResult.h"
#include <QByteArray>

namespace vellum {

struct YTSProvider {
  // `source` is the provider's name. The torrents of one film share its baseTitle. Bad rows are
  // skipped. Throws json::SyntaxError, and NetError (Empty) when the document has another shape.
  static TorrentResults parse(const QByteArray& bytes, const QString& source);
};

} // namespace vellum
