#include "providers/YTSProvider.h"
#include "formats/TorrentMetadata.h"
#include "net/NetError.h"
#include "providers/Json.h"
#include "providers/ResultList.h"
#include <QCoreApplication>
#include <cmath>

namespace vellum {

namespace {

struct Film {
  QString title; // with its year: "Big Buck Bunny (2008)"
  std::optional<QString> year;
  std::optional<QUrl> page;
};

// A fraction is cut off; what does not fit 64 bits is no size.
std::optional<qint64> byteCount(const QJsonValue& value) {
  if (const auto whole = json::integer(value)) return whole;
  const double number = value.toDouble(NAN);
  if (!(std::abs(number) < 0x1p63)) return std::nullopt;
  return static_cast<qint64>(number);
}

Film readFilm(const QJsonObject& object) {
  Film film;
  if (const auto year = json::integer(object.value(QLatin1String("year"))))
    film.year = QString::number(*year);
  const QString title = json::string(object.value(QLatin1String("title")))
                            .value_or(QCoreApplication::translate("YTSProvider", "Untitled"));
  film.title = title + QStringLiteral(" (") + film.year.value_or(QStringLiteral("?")) + u')';
  film.page = ResultList::link(object.value(QLatin1String("url")).toString());
  return film;
}

std::optional<TorrentResult> readTorrent(const QJsonObject& object, const Film& film,
                                         const QString& source) {
  const auto hash = json::string(object.value(QLatin1String("hash")));
  if (!hash) return std::nullopt;
  const QString quality = object.value(QLatin1String("quality")).toString();
  const QString type = object.value(QLatin1String("type")).toString();
  TorrentResult result;
  result.id = hash->toLower();
  result.infoHash = result.id;
  result.title = (film.title + u' ' + quality + u' ' + type).trimmed();
  result.size = byteCount(object.value(QLatin1String("size_bytes")));
  result.seeders = json::integer(object.value(QLatin1String("seeds")));
  result.leechers = json::integer(object.value(QLatin1String("peers")));
  result.sources = {source};
  if (!ResultList::isGoodTitle(result.title)) return std::nullopt;
  result.magnet = makeMagnet(*hash, result.title);
  result.torrentURL = ResultList::link(object.value(QLatin1String("url")).toString());
  result.pageURL = film.page;
  result.year = film.year;
  result.baseTitle = film.title;
  return result;
}

} // namespace

TorrentResults YTSProvider::parse(const QByteArray& bytes, const QString& source) {
  const QJsonValue data = json::parse(bytes)[QLatin1String("data")];
  if (!data.isObject()) throw NetError::empty();
  ResultList results;
  // Without films the service leaves the key out.
  const auto films = json::objects(data[QLatin1String("movies")]);
  if (!films) return {};
  for (const QJsonObject& object : *films) {
    const auto torrents = json::objects(object.value(QLatin1String("torrents")));
    if (!torrents) continue;
    const Film film = readFilm(object);
    for (const QJsonObject& torrent : *torrents) {
      if (auto result = readTorrent(torrent, film, source)) results.add(std::move(*result));
      if (results.isFull()) return results.take();
    }
  }
  return results.take();
}

} // namespace vellum
