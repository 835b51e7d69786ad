// A tracker and some seeders of one film or folder on 127.0.0.1, until a signal ends them. Tells on
// standard output, a line each, what there is to stream: HASH, TRACKER, SEEDER, TORRENT, MAGNET;
// with --indexers also where to search for it: INDEXER, CATALOG, and REQUEST as they come.
#include "world/DemoIndexers.h"
#include "world/LoopbackSeeder.h"
#include "world/LoopbackTracker.h"
#include "world/SeededTorrent.h"
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <asio/signal_set.hpp>
#include <csignal>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

using namespace vellum;
using namespace vellum::world;

namespace {

constexpr std::int64_t kSmallestPiece = 256 * kKiB;
constexpr std::int64_t kMaxPieces = 2000;

struct Wish {
  std::filesystem::path source;
  std::int64_t pieceLength = 0;
  int seeders = 1;
  SeederOptions all;   // every seeder
  SeederOptions first; // the first one
  std::chrono::milliseconds trackerDelay{};
  bool indexers = false;
  QString preferences; // a file to write; may be empty
};

std::optional<Wish> readWish(QCommandLineParser& parser) {
  const auto option = [&](const char* name, const char* what, const char* fallback = "") {
    const auto text = QString::fromLatin1(name);
    parser.addOption(
        {text, QString::fromLatin1(what), QStringLiteral("N"), QString::fromLatin1(fallback)});
    return text;
  };
  parser.setApplicationDescription(QStringLiteral("Seeds a file or folder on 127.0.0.1."));
  parser.addHelpOption();
  parser.addPositionalArgument(QStringLiteral("PATH"), QStringLiteral("what to seed"));
  const auto seeders = option("seeders", "how many", "3");
  const auto rate = option("rate", "bytes per second of each seeder, 0 = no limit", "0");
  const auto delay = option("delay", "round trip of seeders and UDP tracker, milliseconds", "0");
  const auto piece = option("piece", "piece length in bytes; by default at most 2000 pieces", "0");
  const auto close = option("close-first-after", "bytes after which the first seeder dies");
  const auto stall = option("stall-first-after", "bytes after which the first seeder falls silent");
  const auto preferences = option("preferences", "file to write in which the indexers are set up");
  const auto indexers = QStringLiteral("indexers");
  parser.addOption({indexers, QStringLiteral("play indexers and a catalog that know the film")});
  parser.process(*QCoreApplication::instance());
  if (parser.positionalArguments().size() != 1) return std::nullopt;

  Wish wish{.source = parser.positionalArguments().front().toStdString()};
  wish.seeders = std::max(1, parser.value(seeders).toInt());
  wish.pieceLength = parser.value(piece).toLongLong();
  wish.trackerDelay = std::chrono::milliseconds(parser.value(delay).toInt());
  wish.all = {.uploadRate = parser.value(rate).toDouble(), .delay = wish.trackerDelay};
  wish.indexers = parser.isSet(indexers);
  wish.preferences = parser.value(preferences);
  wish.first = wish.all;
  if (parser.isSet(close)) wish.first.closeAfter = parser.value(close).toLongLong();
  if (parser.isSet(stall)) wish.first.stallAfter = parser.value(stall).toLongLong();
  return wish;
}

std::int64_t sizeOf(const std::filesystem::path& path) {
  if (!std::filesystem::is_directory(path)) return std::int64_t(std::filesystem::file_size(path));
  std::int64_t total = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(path))
    total += entry.is_regular_file() ? std::int64_t(entry.file_size()) : 0;
  return total;
}

std::int64_t pieceLengthFor(std::int64_t size) {
  auto length = kSmallestPiece;
  while (size / length > kMaxPieces) length *= 2;
  return length;
}

void run(const Wish& wish) {
  // First of all, so that a signal ends this in order however early it comes.
  asio::io_context io;
  asio::signal_set signals(io, SIGINT, SIGTERM);
  const auto torrent = SeededTorrent::fromDisk(
      wish.source, wish.pieceLength > 0 ? wish.pieceLength : pieceLengthFor(sizeOf(wish.source)));
  std::vector<std::unique_ptr<LoopbackSeeder>> seeders;
  std::vector<std::uint16_t> ports;
  for (int i = 0; i < wish.seeders; ++i) {
    seeders.push_back(std::make_unique<LoopbackSeeder>(torrent, i == 0 ? wish.first : wish.all));
    ports.push_back(seeders.back()->port());
  }
  LoopbackTracker tracker(wish.trackerDelay);
  const QTemporaryDir folder;
  std::optional<DemoIndexers> indexers;
  auto peers = ports;
  if (wish.indexers) {
    indexers.emplace(DemoFilm{wish.source, torrent, wish.seeders, wish.all}, tracker.udpUrl(),
                     folder.path().toStdString());
    for (const auto port : indexers->seederPorts()) peers.push_back(port);
    if (!wish.preferences.isEmpty()) indexers->writePreferences(wish.preferences);
  }
  tracker.setPeers(peers);

  QFile file(folder.filePath(torrent.name + QStringLiteral(".torrent")));
  const auto bytes = torrent.torrentFile({tracker.udpUrl()});
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
    throw std::runtime_error("cannot write the .torrent file");

  QTextStream out(stdout);
  if (indexers) indexers->tell(out);
  out << "HASH " << toHex(torrent.infoHash) << '\n';
  out << "TRACKER " << tracker.udpUrl() << '\n' << "TRACKER " << tracker.httpUrl() << '\n';
  for (const auto port : ports) out << "SEEDER 127.0.0.1:" << port << '\n';
  out << "TORRENT " << file.fileName() << '\n';
  out << "MAGNET " << torrent.magnet({tracker.udpUrl()}) << '\n';
  out.flush();

  signals.async_wait([](asio::error_code, int) {});
  io.run();
}

} // namespace

int main(int argc, char** argv) {
  const QCoreApplication app(argc, argv);
  QCommandLineParser parser;
  const auto wish = readWish(parser);
  if (!wish) parser.showHelp(2);
  try {
    run(*wish);
  } catch (const std::exception& error) {
    QTextStream(stderr) << error.what() << '\n';
    return 1;
  }
  return 0;
}
