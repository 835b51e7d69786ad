// The stream server over a torrent in memory, as a player asks it: one long body, and seeks.
#include "base/IoPool.h"
#include "streaming/HttpAnswer.h"
#include "streaming/LocalStreamServer.h"
#include "world/HttpReader.h"
#include "world/MemorySource.h"
#include "world/Payload.h"
#include <asio/use_future.hpp>
#include <benchmark/benchmark.h>
#include <random>

namespace vellum {

using namespace world;
namespace {

constexpr std::int64_t kFilm = 256 * kMiB;
constexpr std::int64_t kRead = 256 * kKiB;

struct World {
  World() { source->arriveAll(); }

  IoPool pool;
  std::shared_ptr<MemorySource> source = std::make_shared<MemorySource>(
      pool.makeStrand(), pseudoRandomBytes(kFilm, 1),
      std::vector<TorrentFileEntry>{{QStringLiteral("film.mkv"), kFilm}});
  LocalStreamServer server{pool};
  std::optional<QUrl> url =
      asio::co_spawn(pool.io(), server.url(source, 0, QStringLiteral("film.mkv")), asio::use_future)
          .get();
};

// Asks and reads; refuses to measure an answer that is not whole.
void serve(benchmark::State& state, World& world, std::int64_t start, std::int64_t length) {
  HttpReader reader(*world.url);
  reader.get(*world.url, "Range: bytes=" + std::to_string(start) + "-" +
                             std::to_string(start + length - 1) + "\r\n");
  const auto head =
      answers::head({start, start + length - 1}, kFilm, "video/x-matroska", true).size();
  if (reader.skipAll() != static_cast<std::int64_t>(head) + length)
    state.SkipWithError("the answer was cut short");
}

void oneReaderOfACompleteFile(benchmark::State& state) {
  World world;
  for ([[maybe_unused]] const auto _ : state) serve(state, world, 0, kFilm);
  state.SetBytesProcessed(state.iterations() * kFilm);
}
BENCHMARK(oneReaderOfACompleteFile)->UseRealTime()->Unit(benchmark::kMillisecond);

void randomRangeOnANewConnection(benchmark::State& state) {
  World world;
  std::mt19937_64 random(1);
  std::uniform_int_distribution<std::int64_t> start(0, kFilm - kRead);
  for ([[maybe_unused]] const auto _ : state) serve(state, world, start(random), kRead);
  state.SetBytesProcessed(state.iterations() * kRead);
}
BENCHMARK(randomRangeOnANewConnection)->UseRealTime()->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace vellum
