// What an answer turns out to be, by its bytes. Pure.
#pragma once
#include <QByteArray>
#include <QString>
#include <optional>

namespace vellum {

enum class ResponseKind { Json, Xml, Html, Unknown };

struct ResponseClassifier {
  static constexpr qsizetype kWindow = 4096; // bytes that are looked at

  // The content type can prove a web page and nothing else.
  static ResponseKind classify(const QByteArray& body, const std::optional<QString>& contentType);
};

} // namespace vellum
