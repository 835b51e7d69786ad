#include "ui/torrents/TableRows.h"
#include <algorithm>
#include <numeric>

namespace vellum::ui {

namespace {

constexpr qint64 kGigabyte = qint64{1} << 30;
const QString kAny = QStringLiteral("Any");

bool passes(const ResultRow& row, const ResultFilter& filter) {
  const TorrentResult& result = row.result;
  if (filter.resolution != kAny && filter.resolution != row.quality()) return false;
  if (filter.format != kAny && filter.format != row.format()) return false;
  if (filter.maxSizeGB > 0 && result.size && *result.size > filter.maxSizeGB * kGigabyte)
    return false;
  return std::any_of(result.sources.begin(), result.sources.end(),
                     [&](const QString& source) { return !filter.hiddenSources.contains(source); });
}

// Keys are taken out once: the rows themselves lie far apart in memory.
template <class Key>
void sortBy(std::vector<std::size_t>& indices, const ResultRows& rows, bool ascending, Key key) {
  using Value = std::decay_t<decltype(key(rows.front()))>;
  std::vector<std::pair<Value, std::size_t>> keyed;
  keyed.reserve(indices.size());
  for (const std::size_t index : indices) keyed.emplace_back(key(rows[index]), index);
  std::stable_sort(keyed.begin(), keyed.end(), [&](const auto& a, const auto& b) {
    return ascending ? a.first < b.first : b.first < a.first;
  });
  for (std::size_t i = 0; i < keyed.size(); ++i) indices[i] = keyed[i].second;
}

template <class Read>
const QString& once(QString& kept, Read read) {
  if (kept.isNull()) kept = read();
  return kept;
}

} // namespace

bool isPlayable(const TorrentResult& result) {
  return result.magnet || result.infoHash || result.torrentURL || result.archiveID;
}

const QString& ResultRow::quality() const {
  return once(m_quality, [this] { return result.quality(); });
}
const QString& ResultRow::format() const {
  return once(m_format, [this] { return result.format(); });
}
const QString& ResultRow::titleKey() const {
  return once(m_titleKey, [this] { return result.title.toCaseFolded(); });
}
const QString& ResultRow::sources() const {
  return once(m_sources, [this] { return result.sourceSort(); });
}

void ResultRow::readAll() const {
  quality();
  format();
  titleKey();
  sources();
}

void ResultRow::replace(const TorrentResult& newer) {
  if (result.title != newer.title) m_quality = m_titleKey = QString();
  if (result.title != newer.title || result.archiveID != newer.archiveID) m_format = QString();
  if (result.sources != newer.sources) m_sources = QString();
  result = newer;
}

void TableRows::setResults(const TorrentResults& results) {
  QHash<QString, std::size_t> known;
  known.reserve(qsizetype(m_rows.size()));
  for (std::size_t i = 0; i < m_rows.size(); ++i) known.insert(m_rows[i].result.id, i);
  ResultRows rows;
  rows.reserve(results.size());
  m_films.clear();
  for (const TorrentResult& result : results) {
    if (result.baseTitle) ++m_films[*result.baseTitle];
    const auto old = known.constFind(result.id);
    if (old == known.constEnd()) {
      rows.emplace_back(result);
      continue;
    }
    rows.push_back(m_rows[*old]);
    rows.back().replace(result);
  }
  m_rows = std::move(rows);
  m_read = 0;
}

bool TableRows::readSome() {
  const std::size_t end = std::min(m_rows.size(), m_read + kReadAtOnce);
  for (; m_read < end; ++m_read) m_rows[m_read].readAll();
  return m_read < m_rows.size();
}

bool TableRows::hasVariants(const TorrentResult& result) const {
  return result.baseTitle && m_films.value(*result.baseTitle) > 1;
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
    by([](const ResultRow& row) -> const QString& { return row.titleKey(); });
    break;
  case ResultColumn::Size: by([](const ResultRow& row) { return row.result.sizeSort(); }); break;
  case ResultColumn::Seeds:
    by([](const ResultRow& row) { return row.result.seedersSort(); });
    break;
  case ResultColumn::Peers:
    by([](const ResultRow& row) { return row.result.leechersSort(); });
    break;
  case ResultColumn::Source:
    by([](const ResultRow& row) -> const QString& { return row.sources(); });
    break;
  }
  return indices;
}

} // namespace vellum::ui
