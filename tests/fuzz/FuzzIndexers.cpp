#include "Fuzz.h"
#include "models/QualityPicker.h"
#include "net/NetError.h"
#include "providers/ApiBayProvider.h"
#include "providers/Json.h"
#include "providers/YTSProvider.h"

// Whatever arrives from an indexer that speaks JSON, a row that is made has a hash that can be
// searched for and a magnet; that of a film is among its variants.
void vellum::fuzz::check(ByteSpan input) {
  const auto rowsBy = [&](auto parse) {
    try {
      return parse(toByteArray(input), QStringLiteral("S"));
    } catch (const NetError& error) {
      require(error.reason() == NetError::Reason::Empty);
    } catch (const json::SyntaxError&) {
    }
    return TorrentResults();
  };
  for (const auto& row : rowsBy(ApiBayProvider::parse)) {
    require(row.infoHash && row.infoHash->size() >= 32 && row.id == *row.infoHash);
    require(row.magnet && row.magnet->startsWith(QLatin1String("magnet:?xt=")));
    require(row.sources.size() == 1);
  }
  const TorrentResults films = rowsBy(YTSProvider::parse);
  for (const auto& row : films) require(row.infoHash && row.magnet && row.baseTitle);
  if (films.empty()) return;
  const TorrentResults variants = QualityPicker::variants(films.front(), films);
  require(std::find(variants.begin(), variants.end(), films.front()) != variants.end());
  require(QualityPicker::pick(QStringLiteral("720p"), films).has_value());
}
