// What subtitles cost: a worker (reading a file of cues), and the main thread (each look-up).
#include "playback/SubtitleTimeline.h"
#include <benchmark/benchmark.h>

using namespace vellum;

namespace {

QString subRip(int cues) {
  QString text;
  for (int i = 0; i < cues; ++i)
    text += QStringLiteral("%1\r\n00:%2:%3,000 --> 00:%2:%3,900\r\n<i>Line</i> number %1\r\n\r\n")
                .arg(i)
                .arg(i / 60)
                .arg(i % 60);
  return text;
}

QString subStation(int cues) {
  QString text = QStringLiteral("[Events]\nFormat: Layer, Start, End, Style, Text\n");
  for (int i = 0; i < cues; ++i)
    text += QStringLiteral("Dialogue: 0,0:%1:%2.00,0:%1:%2.90,Default,{\\an8}Line\\Nnumber, %3\n")
                .arg(i / 60)
                .arg(i % 60)
                .arg(i);
  return text;
}

void readSubRip(benchmark::State& state) {
  const QByteArray bytes = subRip(int(state.range(0))).toUtf8();
  for (auto _ : state)
    benchmark::DoNotOptimize(
        SubtitleTimeline(SubtitleParser::parse(SubtitleParser::decode(bytes))));
  state.SetBytesProcessed(state.iterations() * bytes.size());
}
BENCHMARK(readSubRip)->Arg(20'000)->Arg(200'000)->Unit(benchmark::kMillisecond);

void readSubStation(benchmark::State& state) {
  const QByteArray bytes = subStation(int(state.range(0))).toUtf8();
  for (auto _ : state)
    benchmark::DoNotOptimize(
        SubtitleTimeline(SubtitleParser::parseASS(SubtitleParser::decode(bytes))));
  state.SetBytesProcessed(state.iterations() * bytes.size());
}
BENCHMARK(readSubStation)->Arg(20'000)->Arg(200'000)->Unit(benchmark::kMillisecond);

// One cue after the other, or (1) each ends with the last of all and stands behind it in the list,
// which costs a scan the whole list at each look.
void lookUp(benchmark::State& state) {
  const int count = 20'000;
  SubtitleCues cues;
  for (int i = 0; i < count; ++i) {
    const double start = state.range(0) == 0 ? i : count - i;
    cues.push_back({start, state.range(0) == 0 ? start + 0.9 : count, QString::number(i)});
  }
  const SubtitleTimeline timeline(std::move(cues));
  double time = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(timeline.at(time));
    time = time < count ? time + 7.3 : 0;
  }
}
BENCHMARK(lookUp)->Arg(0)->Arg(1);

} // namespace
