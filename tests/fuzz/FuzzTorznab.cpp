#include "Fuzz.h"
#include "providers/SearchMerge.h"
#include "providers/TorznabParser.h"
#include "providers/TorznabProvider.h"

// A document gives the indexer's complaint, an error, or rows whose links lead to the web.
void vellum::fuzz::check(ByteSpan input) {
  try {
    const TorrentResults rows = TorznabProvider::parse(toByteArray(input), QStringLiteral("S"));
    for (const auto& row : rows) {
      require(!row.torrentURL || row.torrentURL->scheme().startsWith(QLatin1String("http")));
      require(row.leechers.value_or(0) >= 0);
      require(!row.infoHash || (row.id == *row.infoHash && !row.id.isEmpty()));
    }
    const TorrentResults merged = mergeResults(rows);
    require(merged.size() <= rows.size() && mergeResults(merged) == merged);
  } catch (const IndexerError&) {
  } catch (const XmlError& error) {
    require(!error.errorDescription().isEmpty());
  }
}
