#include "Fuzz.h"
#include "providers/ResponseClassifier.h"

// What the first signs of an answer of ours may be.
static bool begins(const QByteArray& body, std::initializer_list<const char*> starts) {
  QString text = QString::fromUtf8(body).toLower();
  const auto isBlank = [](QChar c) { return c.isSpace() || c == QChar::ByteOrderMark; };
  while (!text.isEmpty() && isBlank(text.front())) text.remove(0, 1);
  return std::any_of(starts.begin(), starts.end(),
                     [&](const char* start) { return text.startsWith(QLatin1String(start)); });
}

// The first byte chooses the content type; bytes behind the window change nothing.
void vellum::fuzz::check(ByteSpan input) {
  if (input.empty()) return;
  const QByteArray body = toByteArray(input.subspan(1));
  const int choice = std::to_integer<int>(input[0]) % 3;
  std::optional<QString> type;
  if (choice == 1) type = QStringLiteral("application/json");
  if (choice == 2) type = QStringLiteral("TEXT/html;x");
  const ResponseKind kind = ResponseClassifier::classify(body, type);
  require(choice != 2 || kind == ResponseKind::Html);
  require(kind != ResponseKind::Json || begins(body, {"{", "["}));
  require(kind != ResponseKind::Xml || begins(body, {"<?xml", "<rss", "<error", "<caps"}));
  if (body.size() < ResponseClassifier::kWindow) return;
  const QByteArray start = body.first(ResponseClassifier::kWindow);
  require(ResponseClassifier::classify(start, type) == kind);
  require(ResponseClassifier::classify(start + "<html ddos-guard", type) == kind);
}
