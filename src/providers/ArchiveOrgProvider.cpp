#include "providers/ArchiveOrgProvider.h"
#include "base/Addresses.h"
#include "net/NetError.h"
#include "providers/ProviderURL.h"

namespace vellum {

namespace {

// A mark or joiner belongs to the letter before it: "किताब" is one word.
bool isPartOfWord(char32_t c, bool followsLetter) {
  const bool isJoiner = c == 0x200C || c == 0x200D;
  return QChar::isLetterOrNumber(c) || ((QChar::isMark(c) || isJoiner) && followsLetter);
}

QUrl onCatalog(const QString& path, const ProviderURL::Items& items = {}) {
  const auto url = ProviderURL::build(addresses::catalogBase(), path, items);
  if (!url) throw NetError::badURL();
  return *url;
}

} // namespace

QStringList ArchiveOrgProvider::sanitize(const QString& text) {
  QStringList words;
  QString word;
  const auto codePoints = text.toUcs4();
  for (const char32_t c : codePoints) {
    if (isPartOfWord(c, !word.isEmpty())) {
      word += QString::fromUcs4(&c, 1);
    } else if (!word.isEmpty()) {
      words.append(std::exchange(word, {}));
    }
  }
  if (!word.isEmpty()) words.append(word);
  return words;
}

QString ArchiveOrgProvider::buildQuery(const std::optional<QString>& text,
                                       const std::optional<QString>& extra) {
  QStringList clauses{QStringLiteral("mediatype:(movies)"),
                      QStringLiteral("-access-restricted-item:true")};
  const QString terms = sanitize(text.value_or(QString())).join(QLatin1String(" AND "));
  if (!terms.isEmpty())
    clauses.prepend(QStringLiteral("(title:(%1) OR description:(%1) OR subject:(%1))").arg(terms));
  if (extra && !extra->isEmpty()) clauses.append(*extra);
  return clauses.join(QLatin1String(" AND "));
}

Flow<MediaItems> ArchiveOrgProvider::search(CatalogQuery query) const {
  ProviderURL::Items items{{QStringLiteral("q"), buildQuery(query.text, query.extra)}};
  for (const char* field : {"identifier", "title", "year", "description", "creator", "downloads",
                            "licenseurl", "subject"})
    items.emplace_back(QStringLiteral("fl[]"), QLatin1String(field));
  items.emplace_back(QStringLiteral("sort[]"), query.sort);
  items.emplace_back(QStringLiteral("rows"), QString::number(query.rows));
  items.emplace_back(QStringLiteral("page"), QString::number(query.page));
  items.emplace_back(QStringLiteral("output"), QStringLiteral("json"));
  const QUrl url = onCatalog(QStringLiteral("/advancedsearch.php"), items);
  MediaItems found = parseSearch(co_await fetch(m_fetch, url, kSearchTimeout));
  if (found.size() > std::size_t(query.rows)) found.resize(std::size_t(query.rows));
  co_return found;
}

Flow<ArchiveDetails> ArchiveOrgProvider::details(QString id) const {
  const QUrl url = onCatalog(QStringLiteral("/metadata/") + percentEncodedPath(id));
  auto details = parseDetails(co_await fetch(m_fetch, url, kDetailsTimeout), id);
  if (!details) throw NetError::empty();
  co_return std::move(*details);
}

Flow<QByteArray> ArchiveOrgProvider::fetch(FetchData fetch, QUrl url,
                                           std::chrono::seconds timeout) {
  try {
    co_return co_await fetch(url, timeout);
  } catch (const NetError& error) {
    if (error.reason() != NetError::Reason::TooLarge) throw;
  }
  co_return QByteArray();
}

} // namespace vellum
