#include "Fuzz.h"
#include "providers/ArchiveOrgProvider.h"

// Whatever arrives, an item has addresses on the catalog and survives its own JSON; whatever is
// typed, nothing in it means anything to the catalog.
void vellum::fuzz::check(ByteSpan input) {
  const QByteArray bytes = toByteArray(input);
  for (const MediaItem& item : ArchiveOrgProvider::parseSearch(bytes)) {
    require(item.thumbnailURL().host() == QLatin1String("archive.org"));
    require(item.pageURL().isValid());
    require(MediaItem::fromJson(item.toJson()) == item);
    require(!item.summary || !item.summary->isEmpty());
  }
  for (const QString& term : ArchiveOrgProvider::sanitize(QString::fromUtf8(bytes)))
    for (const char c : {'"', ':', '(', ')', '*', ' '}) require(!term.contains(QLatin1Char(c)));
}
