#include "providers/ResponseClassifier.h"
#include <algorithm>
#include <array>
#include <initializer_list>

namespace vellum {

namespace {

QStringView withoutSpaceAround(QStringView text) {
  const auto isSpace = [](QChar c) { return c.isSpace() || c == QChar::ByteOrderMark; };
  while (!text.isEmpty() && isSpace(text.front())) text = text.sliced(1);
  while (!text.isEmpty() && isSpace(text.back())) text.chop(1);
  return text;
}

bool startsWithAny(QStringView text, std::initializer_list<const char*> starts) {
  return std::any_of(starts.begin(), starts.end(),
                     [&](const char* start) { return text.startsWith(QLatin1String(start)); });
}

// The pages that filters put before a site say so somewhere, whatever type they claim to have.
bool isChallenge(QStringView window) {
  constexpr std::array kMarks{"just a moment...", "cf-browser-verification", "challenge-platform",
                              "attention required! | cloudflare", "ddos-guard"};
  return std::any_of(kMarks.begin(), kMarks.end(),
                     [&](const char* mark) { return window.contains(QLatin1String(mark)); });
}

} // namespace

ResponseKind ResponseClassifier::classify(const QByteArray& body,
                                          const std::optional<QString>& contentType) {
  const QString window = QString::fromUtf8(body.first(std::min(body.size(), kWindow))).toLower();
  const QStringView head = withoutSpaceAround(window);
  if (contentType && contentType->contains(QLatin1String("text/html"), Qt::CaseInsensitive))
    return ResponseKind::Html;
  if (startsWithAny(head, {"<!doctype html", "<html", "<head", "<body"})) return ResponseKind::Html;
  if (isChallenge(window)) return ResponseKind::Html;
  if (startsWithAny(head, {"{", "["})) return ResponseKind::Json;
  if (startsWithAny(head, {"<?xml", "<rss", "<error", "<caps"})) return ResponseKind::Xml;
  return ResponseKind::Unknown;
}

} // namespace vellum
