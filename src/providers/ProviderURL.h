// Addresses of providers: which texts are usable, and how a request is added to one. Pure.
#pragma once
#include <QString>
#include <QUrl>
#include <optional>
#include <utility>
#include <vector>

namespace vellum {

struct ProviderURL {
  using Items = std::vector<std::pair<QString, QString>>; // names and values, not yet encoded

  // An http or https address with a host and without any blank inside.
  static std::optional<QUrl> validate(const QString& text);
  // `path` (percent-encoded, may be empty) behind the base's own path, `items` behind its own
  // query. Nothing if the base is no usable address.
  static std::optional<QUrl> build(const QString& base, const QString& path, const Items& items);
};

} // namespace vellum
