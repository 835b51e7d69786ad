#include "Require.h"
#include "providers/ArchiveOrgProvider.h"

using namespace vellum;
using fuzz::require;

// Whatever arrives, the files of a record lie on the catalog, and each is in one list at most.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const auto details = ArchiveOrgProvider::parseDetails(bytes, QStringLiteral("item"));
  if (!details) return 0;
  require(details->item.id == QLatin1String("item"));
  for (const ArchiveFile& file : details->files) {
    require(file.url.host() == QLatin1String("archive.org"));
    require(file.url.path().startsWith(QLatin1String("/download/item/")));
  }
  require(details->playable().size() + details->otherVideos().size() +
              details->subtitles().size() <=
          details->files.size());
  return 0;
}
