// Four kinds of provider on 127.0.0.1, good ones and troublesome mirrors, and a film catalog.
#pragma once
#include "world/CatalogItems.h"
#include "world/IndexedTorrents.h"
#include "world/Payload.h"
#include "world/RequestHead.h"
#include "world/ScriptedServer.h"
#include <functional>
#include <map>
#include <memory>

namespace vellum::world {

struct LoopbackIndexersOptions {
  IndexedTorrents torrents;        // beside the invented ones
  QString apiKey = {};             // that Torznab asks for; empty: it does not
  QStringList trackers = {};       // in the magnet links of Torznab
  std::filesystem::path film = {}; // folder of the catalog item that plays; may be empty
  double downloadRate = 0;         // of each download, bytes per second; 0: no limit
  std::map<QString, QByteArray> torrentFiles = {}; // by path, as "/torrent/x.torrent"
  // Told of every request, on the server's thread, with its target as sent.
  std::function<void(const QByteArray& target)> onRequest = {};
};

// Serves on a thread of its own; public operations from any thread. Immutable once it stands.
// Throws std::system_error if a file of the film cannot be read.
class LoopbackIndexers {
public:
  explicit LoopbackIndexers(LoopbackIndexersOptions options = {});

  // Base addresses without a "/" at the end, as a user types them.
  QString apiBay() const { return at("/apibay"); }
  QString yts() const { return at("/yts"); }
  QString torznab() const { return at("/torznab/api"); }
  QString catalog() const { return at(""); }
  // Mirrors that any dialect may be pointed at:
  QString webPage() const { return at("/webpage"); }     // an HTML page at status 200
  QString forbidden() const { return at("/forbidden"); } // an HTML page at 403
  QString challenge() const { return at("/challenge"); } // a "Just a moment..." sent as JSON
  QString slow() const { return at("/slow"); }           // never answers
  QString broken() const { return at("/broken"); }       // 500 with JSON

  int requests() const { return m_server.requests(); }

private:
  using Answer = ScriptedServer::Answer;

  QString at(const char* path) const { return m_server.url(QLatin1String(path)).toString(); }
  Answer answer(const QByteArray& bytes) const;
  Answer route(const RequestHead& request) const;
  Answer search(const RequestHead& request) const;
  Answer catalog(const RequestHead& request) const;
  Answer download(const RequestHead& request, const CatalogItem& item, const QString& name) const;

  const LoopbackIndexersOptions m_options;
  const IndexedTorrents m_torrents;
  const CatalogItems m_items;
  std::map<std::filesystem::path, std::shared_ptr<const Payload>> m_files; // of the film
  ScriptedServer m_server; // last: it asks all of the above
};

} // namespace vellum::world
