// The dialect of Torznab indexers: a document of XML to results. Pure.
#pragma once
#include "base/DescribedError.h"
#include "models/TorrentResult.h"
#include <QByteArray>

namespace vellum {

// The document is no XML, or XML of a kind that no indexer needs: one with a DTD (nothing that it
// names is ever fetched), with too many attributes, or nested too deeply.
class XmlError final : public DescribedError {
public:
  using DescribedError::DescribedError;
};

struct TorznabProvider {
  static constexpr int kMaxDepth = 256;
  static constexpr int kMaxAttributes = 64; // of one element

  // `source` is the provider's name. Bad items are skipped. Throws the indexer's own complaint
  // (IndexerError), and XmlError.
  static TorrentResults parse(const QByteArray& bytes, const QString& source);
};

} // namespace vellum
