#include "formats/Bencode.h"
#include "formats/TorrentMetadata.h"
#include <benchmark/benchmark.h>
#include <string>

namespace vellum {
namespace {

std::string text(const std::string& value) { return std::to_string(value.size()) + ":" + value; }

// A .torrent file of `files` files of 100 MiB in pieces of 4 MiB.
std::string largeTorrent(std::int64_t files) {
  std::string list;
  for (std::int64_t i = 0; i < files; ++i)
    list += "d6:lengthi104857600e4:pathl9:Season 01" +
            text("Episode " + std::to_string(i) + ".mkv") + "ee";
  return "d8:announce32:udp://tracker.invalid:6969/annou4:infod5:filesl" + list +
         "e4:name6:Series12:piece lengthi4194304e6:pieces" +
         text(std::string(static_cast<std::size_t>(files) * 25 * 20, 'h')) + "ee";
}

template <class F>
void overLargeTorrent(benchmark::State& state, F f) {
  const std::string torrent = largeTorrent(state.range(0));
  for ([[maybe_unused]] const auto _ : state) {
    auto result = f(asBytes(torrent));
    benchmark::DoNotOptimize(result);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(torrent.size()));
}

void bencodeParse(benchmark::State& state) {
  overLargeTorrent(state, [](ByteSpan data) { return BencodeParser(data).parse(); });
}
BENCHMARK(bencodeParse)->Arg(100)->Arg(10'000);

void torrentForTheInspector(benchmark::State& state) {
  overLargeTorrent(state, TorrentMetadata::parseTorrent);
}
BENCHMARK(torrentForTheInspector)->Arg(100)->Arg(10'000);

void torrentForTheEngine(benchmark::State& state) {
  overLargeTorrent(state, TorrentMeta::parseTorrentFile);
}
BENCHMARK(torrentForTheEngine)->Arg(100)->Arg(10'000);

void magnetThereAndBack(benchmark::State& state) {
  const QString hash(40, u'a');
  const QString name = QStringLiteral("A film & its makers (1942) 1080p");
  for ([[maybe_unused]] const auto _ : state)
    benchmark::DoNotOptimize(TorrentMetadata::parseMagnet(makeMagnet(hash, name)));
}
BENCHMARK(magnetThereAndBack);

} // namespace
} // namespace vellum
