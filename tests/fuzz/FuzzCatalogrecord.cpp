#include "Fuzz.h"
#include "providers/ArchiveOrgProvider.h"

// Whatever arrives, the files of a record lie on the catalog, and each is in one list at most.
void vellum::fuzz::check(ByteSpan input) {
  const auto details = ArchiveOrgProvider::parseDetails(toByteArray(input), QStringLiteral("item"));
  if (!details) return;
  require(details->item.id == QLatin1String("item"));
  for (const ArchiveFile& file : details->files) {
    require(file.url.host() == QLatin1String("archive.org"));
    require(file.url.path().startsWith(QLatin1String("/download/item/")));
  }
  require(details->playable().size() + details->otherVideos().size() +
              details->subtitles().size() <=
          details->files.size());
}
