#include "world/DemoIndexers.h"
#include "base/Sha1.h"
#include "models/ProviderConfig.h"
#include "storage/PreferenceStore.h"
#include <cstdio>
#include <cstring>

namespace vellum::world {

using namespace vellum::world;
namespace fs = std::filesystem;
using asio::ip::tcp;

namespace {

const QString kApiKey = QStringLiteral("demo-key");
constexpr const char* kOwnQuality = "480p";
constexpr int kYear = 2026;

std::string renamed(std::string name, const std::string& quality) {
  const auto at = name.find(kOwnQuality);
  return at == std::string::npos ? name : name.replace(at, std::strlen(kOwnQuality), quality);
}

// The files of the film under the name of another quality, as links in `scratch`.
fs::path linked(const fs::path& source, const std::string& quality, const fs::path& scratch) {
  const fs::path film = fs::absolute(source);
  fs::path target = scratch / ("Vellum Demo Film " + quality);
  if (!fs::is_directory(film)) {
    target += film.extension();
    fs::create_symlink(film, target);
    return target;
  }
  fs::create_directory(target);
  for (const auto& entry : fs::directory_iterator(film))
    if (entry.is_regular_file())
      fs::create_symlink(entry.path(), target / renamed(entry.path().filename(), quality));
  return target;
}

ProviderConfig provider(const char* name, ProviderKind kind, const QString& address) {
  ProviderConfig config;
  config.name = QLatin1String(name);
  config.kind = kind;
  config.baseURL = address;
  return config;
}

void tellRequest(const QByteArray& target) {
  std::printf("REQUEST %s\n", target.constData());
  std::fflush(stdout);
}

} // namespace

DemoIndexers::DemoIndexers(const DemoFilm& film, const QString& tracker, const fs::path& scratch)
    : m_tracker(tracker) {
  list(film.torrent, kOwnQuality, film.seeders);
  for (const char* quality : {"720p", "1080p"}) addVersion(film, quality, scratch);
  listBadOnes();
  m_options.apiKey = kApiKey;
  m_options.trackers = {tracker};
  if (fs::is_directory(film.source)) m_options.film = film.source;
  m_options.downloadRate = film.line.uploadRate;
  m_options.onRequest = tellRequest;
  m_indexers.emplace(std::move(m_options));
  m_notListening.open(tcp::v4());
  m_notListening.bind({asio::ip::address_v4::loopback(), 0});
}

void DemoIndexers::addVersion(const DemoFilm& film, const char* quality, const fs::path& scratch) {
  auto torrent =
      SeededTorrent::fromDisk(linked(film.source, quality, scratch), film.torrent.pieceLength);
  list(torrent, quality, 1);
  auto seeder = std::make_unique<LoopbackSeeder>(torrent, film.line);
  m_versions.push_back({std::move(torrent), std::move(seeder)});
}

void DemoIndexers::list(const SeededTorrent& torrent, const char* quality, int seeders) {
  const QString hash = toHex(torrent.infoHash);
  const QString path = QStringLiteral("/torrent/%1.torrent").arg(hash);
  m_options.torrentFiles[path] = torrent.torrentFile({m_tracker});
  m_options.torrents.push_back({.title = QStringLiteral("Vellum Demo Film"),
                                .year = kYear,
                                .quality = QString::fromLatin1(quality),
                                .infoHash = hash,
                                .torrentUrl = path,
                                .size = std::int64_t(torrent.payload->bytes().size()),
                                .seeders = seeders,
                                .leechers = 0});
}

void DemoIndexers::listBadOnes() {
  IndexedTorrent unseeded{.title = QStringLiteral("Vellum Demo Trailer"),
                          .year = kYear - 1,
                          .quality = {},
                          .infoHash = {},
                          .torrentUrl = {},
                          .size = 24'000'000,
                          .on = kOnApiBay | kOnTorznab};
  IndexedTorrent dead{.title = QStringLiteral("Vellum Demo Film, the Lost Cut"),
                      .year = kYear,
                      .quality = QStringLiteral("720p"),
                      .infoHash = {},
                      .torrentUrl = {},
                      .size = 1'200'000'000,
                      .seeders = 48,
                      .leechers = 9};
  for (IndexedTorrent* torrent : {&unseeded, &dead}) {
    torrent->infoHash = toHex(Sha1::of(asBytes(torrent->name().toUtf8())));
    m_options.torrents.push_back(*torrent);
  }
}

std::vector<std::uint16_t> DemoIndexers::seederPorts() const {
  std::vector<std::uint16_t> ports;
  for (const Version& version : m_versions) ports.push_back(version.seeder->port());
  return ports;
}

QString DemoIndexers::deadAddress() const {
  return QStringLiteral("http://127.0.0.1:%1").arg(m_notListening.local_endpoint().port());
}

void DemoIndexers::tell(QTextStream& out) const {
  out << "INDEXER apibay " << m_indexers->apiBay() << '\n';
  out << "INDEXER yts " << m_indexers->yts() << '\n';
  out << "INDEXER torznab " << m_indexers->torznab() << '\n';
  out << "INDEXER webpage " << m_indexers->webPage() << '\n';
  out << "INDEXER dead " << deadAddress() << '\n';
  out << "CATALOG " << m_indexers->catalog() << '\n';
}

void DemoIndexers::writePreferences(const QString& path) const {
  std::vector<ProviderConfig> providers{
      provider("Vidarium", ProviderKind::ArchiveOrg, m_indexers->catalog()),
      provider("YTS", ProviderKind::Yts, m_indexers->yts()), // first of those: it knows qualities
      provider("ApiBay", ProviderKind::Apibay, m_indexers->webPage()),
      provider("Indexers", ProviderKind::Torznab, m_indexers->torznab()),
      provider("Gone", ProviderKind::Apibay, deadAddress())};
  providers[2].mirrors = {m_indexers->apiBay()};
  providers[3].apiKey = kApiKey;
  PreferenceStore(path).set(QStringLiteral("providers"), toJson(providers));
}

} // namespace vellum::world
