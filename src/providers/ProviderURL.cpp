#include "providers/ProviderURL.h"
#include <algorithm>

namespace vellum {

namespace {

// RFC 3986: a query may hold all of these as they are, but "&" and "=" divide its items.
QString encoded(const QString& text) {
  return QString::fromLatin1(QUrl::toPercentEncoding(text, "!$'()*+,;:@/?"));
}

} // namespace

std::optional<QUrl> ProviderURL::validate(const QString& text) {
  const QString trimmed = text.trimmed();
  const auto isSpace = [](QChar c) { return c.isSpace(); };
  if (std::any_of(trimmed.begin(), trimmed.end(), isSpace)) return std::nullopt;
  const QUrl url(trimmed, QUrl::StrictMode);
  const bool isWeb = url.scheme() == u"http" || url.scheme() == u"https"; // QUrl lower-cases it
  if (!url.isValid() || !isWeb || url.host().isEmpty()) return std::nullopt;
  return url;
}

std::optional<QUrl> ProviderURL::build(const QString& base, const QString& path,
                                       const Items& items) {
  auto url = validate(base);
  if (!url) return std::nullopt;
  if (!path.isEmpty()) {
    QString whole = url->path(QUrl::FullyEncoded);
    if (whole.endsWith(u'/')) whole.chop(1);
    url->setPath(whole + path, QUrl::StrictMode);
  }
  QStringList query; // the base's own stays as the user wrote it: "%2B" is no "+" everywhere
  if (const QString own = url->query(QUrl::FullyEncoded); !own.isEmpty()) query.append(own);
  for (const auto& [name, value] : items) query.append(encoded(name) + u'=' + encoded(value));
  if (!query.isEmpty()) url->setQuery(query.join(u'&'), QUrl::StrictMode);
  if (!url->isValid()) return std::nullopt;
  return url;
}

} // namespace vellum
