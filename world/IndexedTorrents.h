// What the loopback indexers know: torrents of films, and how a query finds them. Pure.
#pragma once
#include <QString>
#include <cstdint>
#include <vector>

namespace vellum::world {

// Which of the indexers list a torrent; combined with |.
enum IndexerSet : unsigned { kOnApiBay = 1, kOnYts = 2, kOnTorznab = 4, kOnAllIndexers = 7 };

struct IndexedTorrent {
  QString title; // of the film
  int year = 0;
  QString quality;    // "480p"; may be empty: then YTS does not list it
  QString infoHash;   // 40 hexadecimal digits
  QString torrentUrl; // an address, or a path on the server that plays the indexers; may be empty
  std::int64_t size = 0; // bytes
  int seeders = 0;
  int leechers = 0; // without the seeders
  unsigned on = kOnAllIndexers;

  QString name() const; // "Title (year) quality"
};

using IndexedTorrents = std::vector<IndexedTorrent>;

// Some thirty made-up films in one to three qualities each, with hashes that nobody seeds. Always
// the same.
IndexedTorrents inventedTorrents();

// Those listed there whose name holds every word of the query, in any case. All of them for an
// empty query.
IndexedTorrents torrentsFor(const IndexedTorrents& all, const QString& query, IndexerSet listedOn);

} // namespace vellum::world
