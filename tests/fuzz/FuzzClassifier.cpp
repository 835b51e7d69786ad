#include "Require.h"
#include "providers/ResponseClassifier.h"

using namespace vellum;
using fuzz::require;

namespace {
// What the first signs of an answer of ours may be.
bool begins(const QByteArray& body, std::initializer_list<const char*> starts) {
  QString text = QString::fromUtf8(body).toLower();
  const auto isBlank = [](QChar c) { return c.isSpace() || c == QChar::ByteOrderMark; };
  while (!text.isEmpty() && isBlank(text.front())) text.remove(0, 1);
  return std::any_of(starts.begin(), starts.end(),
                     [&](const char* start) { return text.startsWith(QLatin1String(start)); });
}
} // namespace

// The first byte chooses the content type; bytes behind the window change nothing.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const QByteArray body(reinterpret_cast<const char*>(data) + 1, static_cast<qsizetype>(size - 1));
  std::optional<QString> type;
  if (data[0] % 3 == 1) type = QStringLiteral("application/json");
  if (data[0] % 3 == 2) type = QStringLiteral("TEXT/html;x");
  const ResponseKind kind = ResponseClassifier::classify(body, type);
  require(data[0] % 3 != 2 || kind == ResponseKind::Html);
  require(kind != ResponseKind::Json || begins(body, {"{", "["}));
  require(kind != ResponseKind::Xml || begins(body, {"<?xml", "<rss", "<error", "<caps"}));
  if (body.size() < ResponseClassifier::kWindow) return 0;
  const QByteArray start = body.first(ResponseClassifier::kWindow);
  require(ResponseClassifier::classify(start, type) == kind);
  require(ResponseClassifier::classify(start + "<html ddos-guard", type) == kind);
  return 0;
}
