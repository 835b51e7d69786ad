#include "Require.h"
#include "net/NetError.h"
#include "providers/ApiBayProvider.h"
#include "providers/Json.h"

using namespace vellum;
using fuzz::require;

// Whatever arrives, a row that is made has a hash that can be searched for and a magnet.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  try {
    for (const auto& row : ApiBayProvider::parse(bytes, QStringLiteral("S"))) {
      require(row.infoHash && row.infoHash->size() >= 32 && row.id == *row.infoHash);
      require(row.magnet && row.magnet->startsWith(QLatin1String("magnet:?xt=")));
      require(row.sources.size() == 1);
    }
  } catch (const NetError& error) {
    require(error.reason() == NetError::Reason::Empty);
  } catch (const json::SyntaxError&) {
    return 0;
  }
  return 0;
}
