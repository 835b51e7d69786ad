#include "Fuzz.h"
#include "models/QualityPicker.h"
#include "net/NetError.h"
#include "providers/Json.h"
#include "providers/YTSProvider.h"

// Whatever arrives, a row that is made belongs to a film, among whose variants it is.
void vellum::fuzz::check(ByteSpan input) {
  try {
    const TorrentResults rows = YTSProvider::parse(toByteArray(input), QStringLiteral("S"));
    for (const auto& row : rows) require(row.infoHash && row.magnet && row.baseTitle);
    if (rows.empty()) return;
    const TorrentResults variants = QualityPicker::variants(rows.front(), rows);
    require(std::find(variants.begin(), variants.end(), rows.front()) != variants.end());
    require(QualityPicker::pick(QStringLiteral("720p"), rows).has_value());
  } catch (const NetError& error) {
    require(error.reason() == NetError::Reason::Empty);
  } catch (const json::SyntaxError&) {
  }
}
