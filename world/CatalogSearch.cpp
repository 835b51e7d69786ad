#include "world/CatalogSearch.h"
#include <QRegularExpression>
#include <algorithm>

namespace vellum::world {

namespace {

constexpr int kUsualRows = 50;

QStringList wordsOf(const QString& text) {
  static const QRegularExpression gaps(QStringLiteral("[^\\p{L}\\p{M}\\p{N}]+"));
  return text.toLower().split(gaps, Qt::SkipEmptyParts);
}

bool holdsAll(const QString& text, const QString& terms) {
  const QStringList words = wordsOf(text);
  const QStringList wanted = terms.split(QStringLiteral(" AND "));
  return std::ranges::all_of(wanted,
                             [&](const QString& term) { return words.contains(term.toLower()); });
}

struct Clauses {
  explicit Clauses(const QString& query) {
    static const QRegularExpression clause(QStringLiteral("([A-Za-z_]+):\\(([^()]*)\\)"));
    for (auto all = clause.globalMatch(query); all.hasNext();) {
      const auto match = all.next();
      list.emplace_back(match.captured(1), match.captured(2));
    }
    withoutRestricted = query.contains(QStringLiteral("-access-restricted-item:true"));
  }

  bool match(const CatalogItem& item) const {
    if (list.empty() || (withoutRestricted && item.restricted)) return false;
    bool looksForWords = false;
    bool hasWords = false;
    for (const auto& [field, value] : list) {
      const bool isTitle = field == u"title";
      const bool isDescription = field == u"description";
      if (isTitle || isDescription || field == u"subject") {
        looksForWords = true;
        hasWords = hasWords || holdsAll(isTitle         ? item.title
                                        : isDescription ? item.description
                                                        : item.subjects.join(u' '),
                                        value);
      } else if (field == u"collection") {
        if (value != item.collection) return false;
      } else if (field != u"mediatype" || value != u"movies") {
        return false;
      }
    }
    return hasWords || !looksForWords;
  }

  std::vector<std::pair<QString, QString>> list;
  bool withoutRestricted = false;
};

std::int64_t sortKey(const CatalogItem& item, const QString& field) {
  if (field == u"downloads") return item.downloads;
  if (field == u"week") return item.week;
  return field == u"year" ? item.year : 0;
}

void sortBy(std::vector<const CatalogItem*>& items, const QString& order) {
  const QString field = order.section(u' ', 0, 0);
  const bool descending = order.section(u' ', 1, 1) == u"desc";
  std::ranges::stable_sort(items, [&](const CatalogItem* a, const CatalogItem* b) {
    return descending ? sortKey(*a, field) > sortKey(*b, field)
                      : sortKey(*a, field) < sortKey(*b, field);
  });
}

int number(const QUrlQuery& query, const char* name, int otherwise) {
  bool isNumber = false;
  const int value = query.queryItemValue(QLatin1String(name)).toInt(&isNumber);
  return isNumber && value >= 0 ? value : otherwise;
}

} // namespace

CatalogPage searchCatalog(const CatalogItems& items, const QUrlQuery& query) {
  const auto value = [&](const char* name) {
    return query.queryItemValue(QLatin1String(name), QUrl::FullyDecoded);
  };
  const Clauses clauses(value("q"));
  CatalogPage page;
  for (const CatalogItem& item : items)
    if (clauses.match(item)) page.items.push_back(&item);
  page.found = page.items.size();
  sortBy(page.items, value("sort[]"));
  const auto rows = std::size_t(number(query, "rows", kUsualRows));
  const auto first =
      std::min(rows * std::size_t(std::max(1, number(query, "page", 1)) - 1), page.items.size());
  const auto last = std::min(first + rows, page.items.size());
  page.items = {page.items.begin() + std::ptrdiff_t(first),
                page.items.begin() + std::ptrdiff_t(last)};
  return page;
}

} // namespace vellum::world
