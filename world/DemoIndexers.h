// The providers of the demo world: what they list, and how a user would have set them up.
#pragma once
#include "world/LoopbackIndexers.h"
#include "world/LoopbackSeeder.h"
#include "world/SeededTorrent.h"
#include <QTextStream>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <optional>

namespace vellum::world {

struct DemoFilm {
  std::filesystem::path source; // file or folder; the catalog's item too if it is a folder
  SeededTorrent torrent;        // of it, seeded by somebody else
  int seeders = 0;
  SeederOptions line; // of the seeders of its other qualities
};

// Main thread. Seeds the film under the names of two more qualities and plays three indexers and a
// catalog that know all of them, a film that nobody has, and a mirror and an address gone bad.
class DemoIndexers {
public:
  // Links to the film lie in `scratch`, which outlives this. Throws std::system_error.
  DemoIndexers(const DemoFilm& film, const QString& tracker, const std::filesystem::path& scratch);

  std::vector<std::uint16_t> seederPorts() const;
  // INDEXER and CATALOG lines. From then on a line REQUEST for each request.
  void tell(QTextStream& out) const;
  // Preferences in which all of them are switched on, the bad ones too.
  void writePreferences(const QString& path) const;

private:
  struct Version {
    SeededTorrent torrent;
    std::unique_ptr<LoopbackSeeder> seeder;
  };
  void addVersion(const DemoFilm& film, const char* quality, const std::filesystem::path& scratch);
  void list(const SeededTorrent& torrent, const char* quality, int seeders);
  void listBadOnes();
  QString deadAddress() const;

  QString m_tracker;
  std::vector<Version> m_versions;
  LoopbackIndexersOptions m_options;
  std::optional<LoopbackIndexers> m_indexers;
  asio::io_context m_io;
  asio::ip::tcp::socket m_notListening{m_io}; // holds a port that refuses connections
};

} // namespace vellum::world
