#include "Fuzz.h"
#include "providers/ArchiveOrgProvider.h"

// Whatever the catalog answers, what is made of it lies on the catalog, an item survives its own
// JSON, and a file is in one list at most; whatever is typed, nothing in it means anything there.
void vellum::fuzz::check(ByteSpan input) {
  const QByteArray bytes = toByteArray(input);
  const QString host = QStringLiteral("archive.org");
  for (const MediaItem& item : ArchiveOrgProvider::parseSearch(bytes)) {
    require(item.thumbnailURL().host() == host && item.pageURL().isValid());
    require(MediaItem::fromJson(item.toJson()) == item);
    require(!item.summary || !item.summary->isEmpty());
  }
  for (const QString& term : ArchiveOrgProvider::sanitize(QString::fromUtf8(bytes)))
    for (const char c : {'"', ':', '(', ')', '*', ' '}) require(!term.contains(QLatin1Char(c)));

  const auto details = ArchiveOrgProvider::parseDetails(bytes, QStringLiteral("item"));
  if (!details) return;
  require(details->item.id == QLatin1String("item"));
  for (const ArchiveFile& file : details->files)
    require(file.url.host() == host && file.url.path().startsWith(u"/download/item/"));
  require(details->playable().size() + details->otherVideos().size() +
              details->subtitles().size() <=
          details->files.size());
}
