#include "Require.h"
#include "providers/ArchiveOrgProvider.h"

using namespace vellum;
using fuzz::require;

// Whatever arrives, an item has addresses on the catalog and survives its own JSON.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  for (const MediaItem& item : ArchiveOrgProvider::parseSearch(bytes)) {
    require(item.thumbnailURL().host() == QLatin1String("archive.org"));
    require(item.pageURL().isValid());
    require(MediaItem::fromJson(item.toJson()) == item);
    require(!item.summary || !item.summary->isEmpty());
  }
  for (const QString& term : ArchiveOrgProvider::sanitize(QString::fromUtf8(bytes)))
    for (const char c : {'"', ':', '(', ')', '*', ' '}) require(!term.contains(QLatin1Char(c)));
  return 0;
}
