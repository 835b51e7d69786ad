#include "ui/torrents/TableRows.h"
#include <algorithm>
#include <numeric>

namespace vellum::ui {

namespace {

constexpr qint64 kGigabyte = qint64{1} << 30;
const QString kAny = QStringLiteral("Any");

ResultRow rowOf(const TorrentResult& result) {
  return {result, result.quality(), result.format(), result.title.toCaseFolded(),
          result.sourceSort()};
}

bool passes(const ResultRow& row, const ResultFilter& filter) {
  const TorrentResult& result = row.result;
  if (filter.resolution != kAny && filter.resolution != row.quality) return false;
  if (filter.format != kAny && filter.format != row.format) return false;
  if (filter.maxSizeGB > 0 && result.size && *result.size > filter.maxSizeGB * kGigabyte)
    return false;
  return std::any_of(result.sources.begin(), result.sources.end(),
                     [&](const QString& source) { return !filter.hiddenSources.contains(source); });
}

template <class Key>
void sortBy(std::vector<std::size_t>& indices, const ResultRows& rows, bool ascending, Key key) {
  std::stable_sort(indices.begin(), indices.end(), [&](std::size_t a, std::size_t b) {
    return ascending ? key(rows[a]) < key(rows[b]) : key(rows[b]) < key(rows[a]);
  });
}

} // namespace

void TableRows::setResults(const TorrentResults& results) {
  QHash<QString, std::size_t> known;
  known.reserve(qsizetype(m_rows.size()));
  for (std::size_t i = 0; i < m_rows.size(); ++i) known.insert(m_rows[i].result.id, i);
  ResultRows rows;
  rows.reserve(results.size());
  for (const TorrentResult& result : results) {
    const auto old = known.constFind(result.id);
    if (old == known.constEnd() || m_rows[*old].result.title != result.title) {
      rows.push_back(rowOf(result));
      continue;
    }
    ResultRow row = m_rows[*old];
    row.sources = result.sourceSort();
    row.result = result;
    rows.push_back(std::move(row));
  }
  m_rows = std::move(rows);
}

QStringList TableRows::allSources() const {
  QSet<QString> found;
  for (const ResultRow& row : m_rows)
    for (const QString& source : row.result.sources) found.insert(source);
  QStringList sorted(found.begin(), found.end());
  sorted.sort();
  return sorted;
}

std::vector<std::size_t> TableRows::shown(const ResultFilter& filter,
                                          const ResultOrder& order) const {
  std::vector<std::size_t> indices;
  indices.reserve(m_rows.size());
  for (std::size_t i = 0; i < m_rows.size(); ++i)
    if (passes(m_rows[i], filter)) indices.push_back(i);
  const auto by = [&](auto key) { sortBy(indices, m_rows, order.ascending, key); };
  switch (order.column) {
  case ResultColumn::Title:
    by([](const ResultRow& row) -> const QString& { return row.titleKey; });
    break;
  case ResultColumn::Size: by([](const ResultRow& row) { return row.result.sizeSort(); }); break;
  case ResultColumn::Seeds:
    by([](const ResultRow& row) { return row.result.seedersSort(); });
    break;
  case ResultColumn::Peers:
    by([](const ResultRow& row) { return row.result.leechersSort(); });
    break;
  case ResultColumn::Source:
    by([](const ResultRow& row) -> const QString& { return row.sources; });
    break;
  }
  return indices;
}

} // namespace vellum::ui
