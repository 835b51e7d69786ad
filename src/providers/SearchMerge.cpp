#include "providers/SearchMerge.h"
#include <QHash>
#include <algorithm>

namespace vellum {

namespace {

template <class T>
void takeIfAbsent(std::optional<T>& own, std::optional<T>& other) {
  if (!own) own = std::move(other);
}

void fold(TorrentResult& own, TorrentResult& other) {
  own.sources += other.sources;
  own.sources.sort();
  own.sources.removeDuplicates();
  own.seeders = std::max(own.seeders, other.seeders); // an absent one is less than any
  own.leechers = std::max(own.leechers, other.leechers);
  takeIfAbsent(own.size, other.size);
  takeIfAbsent(own.magnet, other.magnet);
  takeIfAbsent(own.torrentURL, other.torrentURL);
  takeIfAbsent(own.pageURL, other.pageURL);
}

} // namespace

TorrentResults mergeResults(TorrentResults results) {
  TorrentResults merged;
  merged.reserve(results.size());
  QHash<QString, std::size_t> rows;
  rows.reserve(qsizetype(results.size()));
  for (TorrentResult& result : results) {
    const QString key = result.infoHash ? result.infoHash->toLower() : result.id;
    const auto known = rows.constFind(key);
    if (known != rows.constEnd()) {
      fold(merged[*known], result);
    } else {
      rows.insert(key, merged.size());
      merged.push_back(std::move(result));
    }
  }
  return merged;
}

} // namespace vellum
