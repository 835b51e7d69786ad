#include "Require.h"
#include "providers/SearchMerge.h"
#include "providers/TorznabParser.h"
#include "providers/TorznabProvider.h"

using namespace vellum;
using fuzz::require;

// Whatever arrives, a document gives rows, the indexer's complaint or an error, and rows of which
// the torrent links lead to the web.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  try {
    const TorrentResults rows = TorznabProvider::parse(bytes, QStringLiteral("S"));
    for (const auto& row : rows) {
      require(!row.torrentURL || row.torrentURL->scheme().startsWith(QLatin1String("http")));
      require(row.leechers.value_or(0) >= 0);
      require(!row.infoHash || (row.id == *row.infoHash && !row.id.isEmpty()));
    }
    const TorrentResults merged = mergeResults(rows);
    require(merged.size() <= rows.size() && mergeResults(merged) == merged);
  } catch (const IndexerError&) {
    return 0;
  } catch (const XmlError& error) {
    require(!error.errorDescription().isEmpty());
  }
  return 0;
}
