// What the result table costs the main thread: late results, a filter, another order.
#include "ui/torrents/TorrentTable.h"
#include <QCoreApplication>
#include <benchmark/benchmark.h>

using namespace vellum;
using namespace vellum::ui;

namespace {

TorrentResults rows(int count) {
  TorrentResults list;
  for (int i = 0; i < count; ++i) {
    TorrentResult row;
    row.title = QStringLiteral("Some.Film.Number.%1.With.A.Long.Name.%2p.WEB.x264")
                    .arg(i * 7919 % count)
                    .arg(i % 3 == 0 ? 1080 : 720);
    row.id = QString::number(i);
    row.infoHash = row.id;
    row.sources = {QStringLiteral("Provider %1").arg(i % 4)};
    row.seeders = i * 31 % 1000;
    row.size = i * 1'000'000LL;
    list.push_back(std::move(row));
  }
  return list;
}

void firstResults(benchmark::State& state) {
  const TorrentResults list = rows(int(state.range(0)));
  for (auto _ : state) {
    TorrentTable table;
    table.setResults(list);
    benchmark::DoNotOptimize(table.rowCount());
  }
}
BENCHMARK(firstResults)->Arg(10'000)->Unit(benchmark::kMillisecond);

// What is done between the arrival and the first filter, a thousand rows at a time.
void readSomeRows(benchmark::State& state) {
  TableRows table;
  const TorrentResults list = rows(int(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    table.setResults({});
    table.setResults(list);
    state.ResumeTiming();
    benchmark::DoNotOptimize(table.readSome());
  }
}
BENCHMARK(readSomeRows)->Arg(10'000)->Unit(benchmark::kMillisecond);

void lateResults(benchmark::State& state) {
  TorrentTable table;
  const TorrentResults list = rows(int(state.range(0)));
  table.setResults(list);
  for (auto _ : state) table.setResults(list);
}
BENCHMARK(lateResults)->Arg(10'000)->Unit(benchmark::kMillisecond);

void filterAndSort(benchmark::State& state) {
  TorrentTable table;
  table.setResults(rows(int(state.range(0))));
  table.setOrder({ResultColumn::Title, true}); // whose texts are read by then
  bool flip = false;
  for (auto _ : state) {
    flip = !flip;
    table.setFilter({.resolution = flip ? QStringLiteral("1080p") : QStringLiteral("Any"),
                     .hiddenSources = {}});
    table.setOrder({flip ? ResultColumn::Title : ResultColumn::Seeds, flip});
  }
  state.SetLabel("a filter and an order each");
}
BENCHMARK(filterAndSort)->Arg(10'000)->Unit(benchmark::kMillisecond);

} // namespace

// The table's timer wants an event loop.
int main(int argc, char** argv) {
  const QCoreApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
