#include "Require.h"
#include "providers/ResponseClassifier.h"

using namespace vellum;
using fuzz::require;

// The first byte chooses the content type; bytes behind the window change nothing.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const QByteArray body(reinterpret_cast<const char*>(data) + 1, static_cast<qsizetype>(size - 1));
  std::optional<QString> type;
  if (data[0] % 3 == 1) type = QStringLiteral("application/json");
  if (data[0] % 3 == 2) type = QStringLiteral("TEXT/html;x");
  const ResponseKind kind = ResponseClassifier::classify(body, type);
  require(data[0] % 3 != 2 || kind == ResponseKind::Html);
  if (body.size() < ResponseClassifier::kWindow) return 0;
  const QByteArray start = body.first(ResponseClassifier::kWindow);
  require(ResponseClassifier::classify(start, type) == kind);
  require(ResponseClassifier::classify(start + "<html ddos-guard", type) == kind);
  return 0;
}
