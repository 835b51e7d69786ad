#include "world/LoopbackIndexers.h"
#include "world/CatalogDocuments.h"
#include "world/CatalogSearch.h"
#include "world/FileAnswer.h"
#include "world/IndexerDocuments.h"
#include <algorithm>

namespace vellum::world {

namespace {

using Answer = ScriptedServer::Answer;

constexpr int kMostYtsFilms = 50;
constexpr int kUsualYtsFilms = 20;

QString text(const char* latin1) { return QString::fromLatin1(latin1); }

Answer typed(const char* type, const QByteArray& body, int status = 200) {
  return ScriptedServer::reply(status, body, QByteArray("Content-Type: ") + type + "\r\n");
}
Answer json(const QByteArray& body) { return typed("application/json", body); }
Answer xml(const QByteArray& body) { return typed("application/rss+xml; charset=utf-8", body); }
Answer page(int status, const QByteArray& title) {
  return typed("text/html; charset=utf-8",
               "<!DOCTYPE html>\n<html><head><title>" + title + "</title></head><body><h1>" +
                   title + "</h1></body></html>\n",
               status);
}
Answer notFound() { return page(404, "Not Found"); }

// What the troublesome mirrors say, whatever they are asked.
std::optional<Answer> trouble(const QString& path) {
  const QString mirror = path.section(u'/', 1, 1);
  if (mirror == u"webpage") return page(200, "This domain may be for sale");
  if (mirror == u"forbidden") return page(403, "Access to this site is blocked");
  if (mirror == u"challenge") return json("{\"title\":\"Just a moment...\"}");
  if (mirror == u"slow") return Answer{.head = {}, .body = {}, .thenHang = true};
  if (mirror == u"broken")
    return typed("application/json", "{\"error\":\"database is down\"}", 500);
  return std::nullopt;
}

QByteArray mediaType(const QString& name) {
  if (name.endsWith(u".mp4")) return "video/mp4";
  if (name.endsWith(u".srt")) return "application/x-subrip";
  if (name.endsWith(u".vtt")) return "text/vtt";
  return "application/octet-stream";
}

IndexedTorrents joined(IndexedTorrents first, const IndexedTorrents& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

} // namespace

LoopbackIndexers::LoopbackIndexers(LoopbackIndexersOptions options)
    : m_options(std::move(options)), m_torrents(joined(m_options.torrents, inventedTorrents())),
      m_items(inventedItems(m_options.film)), m_files([this] {
        std::map<std::filesystem::path, std::shared_ptr<const Payload>> files;
        for (const CatalogItem& item : m_items)
          for (const CatalogItemFile& file : item.files)
            if (!file.path.empty() && !files.contains(file.path))
              files.emplace(file.path, Payload::fromFile(file.path));
        return files;
      }()),
      m_server([this](const QByteArray& request) { return answer(request); }) {}

Answer LoopbackIndexers::answer(const QByteArray& bytes) const {
  const auto request = RequestHead::parse(bytes);
  if (m_options.onRequest) m_options.onRequest(request.target);
  if (request.method != "GET" && request.method != "HEAD") return page(405, "Method Not Allowed");
  Answer answer = route(request);
  if (request.method == "HEAD") answer.body.clear();
  return answer;
}

Answer LoopbackIndexers::route(const RequestHead& request) const {
  if (const auto troublesome = trouble(request.path)) return *troublesome;
  const auto file = m_options.torrentFiles.find(request.path);
  if (file != m_options.torrentFiles.end()) return typed("application/x-bittorrent", file->second);
  const QString room = request.path.section(u'/', 1, 1);
  return room == u"apibay" || room == u"yts" || room == u"torznab" ? search(request)
                                                                   : catalog(request);
}

Answer LoopbackIndexers::search(const RequestHead& request) const {
  const auto value = [&](const char* name) {
    return request.query.queryItemValue(QLatin1String(name), QUrl::FullyDecoded);
  };
  const auto found = [&](const char* queryItem, IndexerSet listedOn) {
    return torrentsFor(m_torrents, value(queryItem), listedOn);
  };
  if (request.path == u"/apibay/q.php") return json(apiBayDocument(found("q", kOnApiBay)));
  if (request.path == u"/yts/api/v2/list_movies.json") {
    const int limit = value("limit").isEmpty() ? kUsualYtsFilms : value("limit").toInt();
    return json(ytsDocument(found("query_term", kOnYts), m_server.url(),
                            std::clamp(limit, 1, kMostYtsFilms)));
  }
  if (request.path != u"/torznab/api") return notFound();
  if (!m_options.apiKey.isEmpty() && value("apikey") != m_options.apiKey)
    return xml(torznabError(100, text("Incorrect user credentials")));
  if (value("t") != u"search") return xml(torznabError(202, text("No such function")));
  return xml(torznabDocument(found("q", kOnTorznab), m_server.url(), m_options.trackers));
}

Answer LoopbackIndexers::catalog(const RequestHead& request) const {
  if (request.path == u"/advancedsearch.php")
    return json(catalogSearchDocument(searchCatalog(m_items, request.query),
                                      request.query.allQueryItemValues(text("fl[]"))));
  for (const CatalogItem& item : m_items) {
    if (request.path == text("/metadata/") + item.id) return json(catalogRecord(item));
    if (request.path == text("/details/") + item.id)
      return typed("text/html; charset=utf-8", catalogDetailsPage(item));
    if (request.path == text("/services/img/") + item.id)
      return typed("image/png", catalogPoster(item));
    const QString folder = text("/download/") + item.id + u'/';
    if (request.path.startsWith(folder))
      return download(request, item, request.path.sliced(folder.size()));
  }
  // The catalog has an answer for what it does not hold.
  return request.path.startsWith(u"/metadata/") ? json("{}") : notFound();
}

Answer LoopbackIndexers::download(const RequestHead& request, const CatalogItem& item,
                                  const QString& name) const {
  for (const CatalogItemFile& file : item.files) {
    if (file.name != name || file.path.empty()) continue;
    Answer answer = fileAnswer(request, *m_files.at(file.path), mediaType(name));
    answer.rate = m_options.downloadRate;
    return answer;
  }
  return notFound();
}

} // namespace vellum::world
