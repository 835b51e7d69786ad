#include "Require.h"
#include "models/QualityPicker.h"
#include "net/NetError.h"
#include "providers/Json.h"
#include "providers/YTSProvider.h"

using namespace vellum;
using fuzz::require;

// Whatever arrives, a row that is made belongs to a film, among whose variants it is.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  try {
    const TorrentResults rows = YTSProvider::parse(bytes, QStringLiteral("S"));
    for (const auto& row : rows) require(row.infoHash && row.magnet && row.baseTitle);
    if (rows.empty()) return 0;
    const TorrentResults variants = QualityPicker::variants(rows.front(), rows);
    require(std::find(variants.begin(), variants.end(), rows.front()) != variants.end());
    require(QualityPicker::pick(QStringLiteral("720p"), rows).has_value());
  } catch (const NetError& error) {
    require(error.reason() == NetError::Reason::Empty);
  } catch (const json::SyntaxError&) {
    return 0;
  }
  return 0;
}
