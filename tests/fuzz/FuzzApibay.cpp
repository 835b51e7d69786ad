#include "Fuzz.h"
#include "net/NetError.h"
#include "providers/ApiBayProvider.h"
#include "providers/Json.h"

// Whatever arrives, a row that is made has a hash that can be searched for and a magnet.
void vellum::fuzz::check(ByteSpan input) {
  try {
    for (const auto& row : ApiBayProvider::parse(toByteArray(input), QStringLiteral("S"))) {
      require(row.infoHash && row.infoHash->size() >= 32 && row.id == *row.infoHash);
      require(row.magnet && row.magnet->startsWith(QLatin1String("magnet:?xt=")));
      require(row.sources.size() == 1);
    }
  } catch (const NetError& error) {
    require(error.reason() == NetError::Reason::Empty);
  } catch (const json::SyntaxError&) {
  }
}
