#include "world/IndexedTorrents.h"
#include "base/Sha1.h"
#include <algorithm>
#include <array>
#include <iterator>

namespace vellum::world {

namespace {

struct Film {
  const char* title;
  int year;
};

constexpr std::array<Film, 30> kFilms{
    {{"The Lantern Keeper", 1931},          {"Salt on the Window", 1948},
     {"A Ferry to Nowhere", 1952},          {"Midnight in Harrow Lane", 1946},
     {"The Clockmaker's Debt", 1939},       {"Seven Paper Boats", 1961},
     {"Dust Over Calloway", 1936},          {"The Glass Orchard", 1957},
     {"Invaders of the Ninth Moon", 1954},  {"Last Train From Ostry", 1943},
     {"The Baker's Alibi", 1950},           {"Winter Comes to Marrow", 1928},
     {"The Silent Semaphore", 1924},        {"Too Many Umbrellas", 1937},
     {"The Thing Below Pier Six", 1959},    {"Queen of the Sawdust Ring", 1933},
     {"Letters to an Empty House", 1949},   {"The Copper Canary", 1947},
     {"Robots Do Not Dream of Rain", 1963}, {"The Mayor of Pudding Hill", 1935},
     {"Shadow Over Vinter Street", 1944},   {"The Cartographer", 1968},
     {"Ballad of a Lost Trumpet", 1955},    {"The Moth and the Candle", 1926},
     {"Four Strangers, One Key", 1951},     {"Harbour Lights at Dawn", 1940},
     {"The Astronomer's Daughter", 1962},   {"Haunted Typewriter", 1958},
     {"Nobody Rides to Grayling", 1941},    {"A Whistle in the Wheat", 1930}}};

struct Quality {
  const char* name;
  std::int64_t size; // bytes, more or less
};
constexpr std::array<Quality, 4> kQualities{
    {{"480p", 734'003'200}, {"720p", 1'181'116'006}, {"1080p", 2'254'857'830}, {"", 703'594'496}}};
// Each torrent is on two indexers or on all.
constexpr std::array kListedOn{+kOnAllIndexers, kOnApiBay | kOnTorznab, kOnYts | kOnTorznab,
                               kOnApiBay | kOnYts};

IndexedTorrent invented(std::size_t film, std::size_t quality) {
  const int mix = int(film * kQualities.size() + quality);
  IndexedTorrent torrent;
  torrent.title = QString::fromLatin1(kFilms[film].title);
  torrent.year = kFilms[film].year;
  torrent.quality = QString::fromLatin1(kQualities[quality].name);
  torrent.size = kQualities[quality].size + mix * 1'000'003;
  torrent.seeders = mix * 37 % 211;
  torrent.leechers = mix * 11 % 53;
  torrent.on = kListedOn[std::size_t(mix / 3) % kListedOn.size()];
  torrent.infoHash = toHex(Sha1::of(asBytes(torrent.name().toUtf8())));
  return torrent;
}

} // namespace

QString IndexedTorrent::name() const {
  return QStringLiteral("%1 (%2) %3").arg(title, QString::number(year), quality).trimmed();
}

IndexedTorrents inventedTorrents() {
  IndexedTorrents torrents;
  for (std::size_t film = 0; film < kFilms.size(); ++film)
    for (std::size_t quality = film % 3; quality < kQualities.size(); quality += 1 + film % 2)
      torrents.push_back(invented(film, quality));
  return torrents;
}

IndexedTorrents torrentsFor(const IndexedTorrents& all, const QString& query, IndexerSet listedOn) {
  const QStringList words = query.simplified().split(u' ', Qt::SkipEmptyParts);
  const auto matches = [&](const IndexedTorrent& torrent) {
    if ((torrent.on & listedOn) == 0 || (listedOn == kOnYts && torrent.quality.isEmpty()))
      return false;
    const QString name = torrent.name();
    return std::ranges::all_of(
        words, [&](const QString& word) { return name.contains(word, Qt::CaseInsensitive); });
  };
  IndexedTorrents found;
  std::ranges::copy_if(all, std::back_inserter(found), matches);
  return found;
}

} // namespace vellum::world
