#include "providers/ProviderParser.h"
#include "providers/ApiBayProvider.h"
#include "providers/TorznabProvider.h"
#include "providers/YTSProvider.h"

namespace vellum {

TorrentResults parseResults(ProviderKind kind, const QByteArray& bytes, const QString& source) {
  switch (kind) {
  case ProviderKind::ArchiveOrg: return {};
  case ProviderKind::Apibay: return ApiBayProvider::parse(bytes, source);
  case ProviderKind::Yts: return YTSProvider::parse(bytes, source);
  case ProviderKind::Torznab: return TorznabProvider::parse(bytes, source);
  }
  return {};
}

} // namespace vellum
