// What a search costs the main thread (merging) and a worker (parsing).
#include "providers/ApiBayProvider.h"
#include "providers/SearchMerge.h"
#include "providers/TorznabProvider.h"
#include <benchmark/benchmark.h>

using namespace vellum;

namespace {

QByteArray hash(int number) { return QByteArray::number(number, 16).rightJustified(40, 'a'); }

// Four providers, of which each two share half of their rows.
TorrentResults rows(int count) {
  TorrentResults list;
  for (int i = 0; i < count; ++i) {
    TorrentResult row;
    row.title = QStringLiteral("Film number %1 1080p").arg(i);
    row.id = QString::fromLatin1(hash(i % 4 == 3 ? i - 1 : i));
    row.infoHash = row.id;
    row.sources = {QStringLiteral("Provider %1").arg(i % 4)};
    row.seeders = i;
    row.magnet = QStringLiteral("magnet:?xt=urn:btih:") + row.id;
    list.push_back(std::move(row));
  }
  return list;
}

void mergeRows(benchmark::State& state) {
  const TorrentResults list = rows(int(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(mergeResults(list));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(mergeRows)->Arg(1000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

void parseApiBay(benchmark::State& state) {
  QByteArray body = "[";
  for (int i = 0; i < state.range(0); ++i)
    body += R"({"name":"Film 1080p","info_hash":")" + hash(i) +
            R"(","size":"1000","seeders":"5","leechers":"6","username":"u","category":"207"},)";
  body.back() = ']';
  for (auto _ : state) benchmark::DoNotOptimize(ApiBayProvider::parse(body, QStringLiteral("S")));
  state.SetBytesProcessed(state.iterations() * body.size());
}
BENCHMARK(parseApiBay)->Arg(10'000)->Unit(benchmark::kMillisecond);

void parseTorznab(benchmark::State& state) {
  QByteArray body = "<rss><channel>";
  for (int i = 0; i < state.range(0); ++i)
    body += "<item><title>Film 1080p</title><guid>https://h.example/" + QByteArray::number(i) +
            "</guid><size>1000</size><enclosure url='https://h.example/dl' length='1000'/>"
            "<torznab:attr name='seeders' value='5'/><torznab:attr name='peers' value='9'/>"
            "<torznab:attr name='infohash' value='" +
            hash(i) + "'/></item>";
  body += "</channel></rss>";
  for (auto _ : state) benchmark::DoNotOptimize(TorznabProvider::parse(body, QStringLiteral("S")));
  state.SetBytesProcessed(state.iterations() * body.size());
}
BENCHMARK(parseTorznab)->Arg(10'000)->Unit(benchmark::kMillisecond);

} // namespace
