#include "providers/ApiBayProvider.h"
#include "base/Text.h"
#include "formats/TorrentMetadata.h"
#include "net/NetError.h"
#include "providers/Json.h"
#include "providers/ResultList.h"
#include <algorithm>

namespace vellum {

namespace {

constexpr qsizetype kShortestHash = 32;

// The service sends numbers as strings or as numbers.
std::optional<qint64> number(const QJsonValue& value) {
  return value.isString() ? parseInt64(value.toString()) : json::integer(value);
}

// A hash of zeros marks the service's own row for "no results".
bool isRealHash(const QString& hash) {
  return hash.size() >= kShortestHash &&
         std::any_of(hash.begin(), hash.end(), [](QChar c) { return c != u'0'; });
}

} // namespace

TorrentResults ApiBayProvider::parse(const QByteArray& bytes, const QString& source) {
  const auto rows = json::objects(json::parse(bytes));
  if (!rows) throw NetError::empty();
  ResultList results;
  for (const QJsonObject& row : *rows) {
    const auto name = json::string(row.value(QLatin1String("name")));
    const auto hash = json::string(row.value(QLatin1String("info_hash")));
    if (!name || !hash || !isRealHash(*hash) || !ResultList::isGoodTitle(*name)) continue;
    TorrentResult result;
    result.id = hash->toLower();
    result.infoHash = result.id;
    result.title = *name;
    result.size = number(row.value(QLatin1String("size")));
    result.seeders = number(row.value(QLatin1String("seeders")));
    result.leechers = number(row.value(QLatin1String("leechers")));
    result.sources = {source};
    result.magnet = makeMagnet(*hash, *name);
    results.add(std::move(result));
    if (results.isFull()) break;
  }
  return results.take();
}

} // namespace vellum
