#include "world/IndexerDocuments.h"
#include "base/Text.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace vellum::world {

namespace {

QString text(const char* latin1) { return QString::fromLatin1(latin1); }

QByteArray bytes(const QJsonArray& array) {
  return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

QJsonObject apiBayRow(int id, const QString& name, const QString& hash,
                      const IndexedTorrent& torrent) {
  const auto number = [](std::int64_t value) { return QString::number(value); };
  return {{text("id"), number(id)},
          {text("name"), name},
          {text("info_hash"), hash},
          {text("leechers"), number(torrent.leechers)},
          {text("seeders"), number(torrent.seeders)},
          {text("num_files"), number(id == 0 ? 0 : 1)},
          {text("size"), number(torrent.size)},
          {text("username"), id == 0 ? QString() : text("projectionist")},
          {text("added"), number(id == 0 ? 0 : 1'600'000'000 + id)},
          {text("status"), text(id == 0 ? "member" : "vip")},
          {text("category"), number(id == 0 ? 0 : 201)},
          {text("imdb"), QString()}};
}

QJsonObject ytsTorrent(const IndexedTorrent& torrent, const QUrl& base) {
  const QString hash = torrent.infoHash.toUpper();
  const QString url =
      torrent.torrentUrl.isEmpty() ? text("/torrent/download/") + hash : torrent.torrentUrl;
  return {{text("url"), base.resolved(QUrl(url)).toString()},
          {text("hash"), hash},
          {text("quality"), torrent.quality},
          {text("type"), text("web")},
          {text("is_repack"), text("0")},
          {text("video_codec"), text("x264")},
          {text("seeds"), torrent.seeders},
          {text("peers"), torrent.leechers},
          {text("size"), formatByteCount(torrent.size)},
          {text("size_bytes"), qint64(torrent.size)},
          {text("date_uploaded"), text("2020-09-13 12:26:40")},
          {text("date_uploaded_unix"), 1'600'000'000}};
}

QJsonObject ytsFilm(const IndexedTorrent& torrent, int id, const QUrl& base) {
  const QString longTitle = QStringLiteral("%1 (%2)").arg(torrent.title).arg(torrent.year);
  static const QRegularExpression gaps(text("[^a-z0-9]+"));
  const QString slug = torrent.title.toLower().replace(gaps, text("-"));
  return {{text("id"), id},
          {text("url"), base.resolved(QUrl(text("/yts/movies/") + slug)).toString()},
          {text("imdb_code"), QString()},
          {text("title"), torrent.title},
          {text("title_long"), longTitle},
          {text("slug"), slug},
          {text("year"), torrent.year},
          {text("rating"), 6.5},
          {text("runtime"), 0},
          {text("genres"), QJsonArray{text("Drama")}},
          {text("language"), text("en")},
          {text("state"), text("ok")},
          {text("torrents"), QJsonArray()}};
}

// The torrents of one film stand below it, wherever they are in the list.
QJsonArray ytsFilms(const IndexedTorrents& torrents, const QUrl& base) {
  QJsonArray films;
  for (const IndexedTorrent& torrent : torrents) {
    qsizetype at = 0;
    while (at < films.size() && (films[at][text("title")].toString() != torrent.title ||
                                 films[at][text("year")].toInt() != torrent.year))
      ++at;
    QJsonObject film = at < films.size() ? films.takeAt(at).toObject()
                                         : ytsFilm(torrent, 1000 + int(films.size()), base);
    QJsonArray below = film[text("torrents")].toArray();
    below.append(ytsTorrent(torrent, base));
    film[text("torrents")] = below;
    films.insert(at, film);
  }
  return films;
}

} // namespace

QByteArray apiBayDocument(const IndexedTorrents& torrents) {
  if (torrents.empty())
    return bytes({apiBayRow(0, text("No results returned"), QString(40, u'0'), {})});
  QJsonArray rows;
  for (const IndexedTorrent& torrent : torrents)
    rows.append(apiBayRow(int(rows.size()) + 1, torrent.name() + text(" WEB x264"),
                          torrent.infoHash.toUpper(), torrent));
  return bytes(rows);
}

QByteArray ytsDocument(const IndexedTorrents& torrents, const QUrl& base, int limit) {
  QJsonArray films = ytsFilms(torrents, base);
  QJsonObject data{
      {text("movie_count"), films.size()}, {text("limit"), limit}, {text("page_number"), 1}};
  while (films.size() > limit) films.removeLast();
  if (!films.isEmpty()) data[text("movies")] = films;
  const QJsonObject answer{{text("status"), text("ok")},
                           {text("status_message"), text("Query was successful")},
                           {text("data"), data},
                           {text("@meta"), QJsonObject{{text("api_version"), 2},
                                                       {text("execution_time"), text("0 ms")}}}};
  return QJsonDocument(answer).toJson(QJsonDocument::Compact);
}

} // namespace vellum::world
