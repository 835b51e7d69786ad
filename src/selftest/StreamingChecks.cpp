#include "models/QualityPicker.h"
#include "selftest/Sections.h"
#include "streaming/StreamBuffer.h"
#include "streaming/VideoFileSelector.h"

namespace vellum::selftest {

namespace {

using Kind = VideoFileSelector::Outcome::Kind;

QString printed(const VideoFileSelector::Outcome& outcome) {
  QStringList files;
  for (const int file : outcome.files) files += QString::number(file);
  const char* kind = outcome.kind == Kind::Single   ? "single %1"
                     : outcome.kind == Kind::Choose ? "choose [%1]"
                                                    : "none%1";
  return text(kind).arg(files.join(text(", ")));
}

std::vector<TorrentFileEntry> list(std::initializer_list<std::pair<const char*, std::int64_t>> of) {
  std::vector<TorrentFileEntry> files;
  for (const auto& [path, size] : of) files.push_back({text(path), size});
  return files;
}

} // namespace

void fileSelector(CheckList& checks) {
  const auto expect = [&](const char* name, const std::vector<TorrentFileEntry>& files, Kind kind,
                          const std::vector<int>& indexes) {
    const auto outcome = VideoFileSelector::select(files);
    checks.check(outcome == VideoFileSelector::Outcome{kind, indexes}, text(name),
                 printed(outcome));
  };
  const auto movie = list({{"Movie/movie.mkv", 4194304000},
                           {"Movie/Sample/sample.mkv", 41943040},
                           {"Movie/movie.nfo", 1000},
                           {"Movie/movie.srt", 90000}});
  expect("Selector: skips sample, picks largest video", movie, Kind::Single, {0});
  expect("Selector: excludes extras/trailer by name/path",
         list({{"M/movie.mp4", 1048576000},
               {"M/Extras/making-of.mp4", 629145600},
               {"M/trailer.mp4", 734003200}}),
         Kind::Single, {0});
  const auto unequal = list({{"a.mkv", 1048576000}, {"b.mkv", 103809024}});
  // The one that is dropped would not have been chosen anyway.
  checks.check(VideoFileSelector::candidates(unequal) == std::vector{0} &&
                   VideoFileSelector::select(unequal) ==
                       VideoFileSelector::Outcome{Kind::Single, {0}},
               text("Selector: drops files under 10% of largest"));
  expect("Selector: multi-episode picker, natural order",
         list({{"S01E10.mkv", 524288000},
               {"S01E2.mkv", 524288000},
               {"S01E1.mkv", 503316480},
               {"sample.mkv", 20971520}}),
         Kind::Choose, {2, 1, 0});
  expect("Selector: no playable video", list({{"a.iso", 5242880000}, {"b.txt", 5}}), Kind::None,
         {});
  expect("Selector: lone file named Sample still plays", list({{"Sample.mp4", 943718400}}),
         Kind::Single, {0});
  checks.check(VideoFileSelector::subtitles(movie) == std::vector{3},
               text("Selector: subtitle files detected"));
  const auto kinds = list({{"a.ass", 1}, {"b.SSA", 1}, {"c.sub", 1}, {"d.vtt", 1}, {"e.txt", 1}});
  checks.check(VideoFileSelector::subtitles(kinds) == std::vector{0, 1, 2, 3},
               text("Selector: all subtitle extensions"));
}

void qualityFallback(CheckList& checks) {
  struct Case {
    const char* name;
    QStringList there;
    const char* preferred;
    std::optional<QString> picked;
  };
  const QString sd = text("480p"), hd = text("720p"), fullHd = text("1080p"),
                ultraHd = text("2160p");
  for (const Case& c : {Case{"Quality: exact match", {hd, fullHd, ultraHd}, "1080p", fullHd},
                        Case{"Quality: tie falls back lower", {hd, ultraHd}, "1080p", hd},
                        Case{"Quality: nearest available", {sd, hd}, "2160p", hd},
                        Case{"Quality: nearest above", {fullHd, ultraHd}, "480p", fullHd},
                        Case{"Quality: empty", {}, "1080p", {}}}) {
    TorrentResults results;
    for (const QString& label : c.there) {
      TorrentResult result;
      result.id = label;
      result.infoHash = label;
      result.title = text("T ") + label;
      result.seeders = 1;
      results.push_back(result);
    }
    const auto picked = QualityPicker::pick(text(c.preferred), results);
    checks.check((picked ? std::optional(picked->id) : std::nullopt) == c.picked, text(c.name));
  }
}

void streamBuffer(CheckList& checks) {
  StreamBuffer buffer;
  buffer.fileOffset = 5500000;
  buffer.fileLength = 0x6400000;
  buffer.pieceLength = 0x100000;
  buffer.pieceCount = 120;
  const PieceOrder expected{{5, 13}, {102, 105}, {14, 101}};
  checks.check(buffer.priorityOrder() == expected,
               text("StreamBuffer: window first, then tail pieces"));
  const auto nothing = [](std::int64_t) { return false; };
  checks.check(buffer.progress(nothing) < 1.0, text("StreamBuffer: not ready when empty"));
  const auto opening = [](std::int64_t piece) {
    return (piece >= 5 && piece <= 13) || (piece >= 102 && piece <= 105);
  };
  checks.check(buffer.progress(opening) == 1.0,
               text("StreamBuffer: ready once opening window + tail present"));
  buffer.playhead = 0x3c00000;
  const PieceOrder sought = buffer.priorityOrder();
  checks.check(!sought.empty() && sought.front().first == 65,
               text("StreamBuffer: seek reprioritises around new position"));
  checks.check(buffer.progress(opening) < 1.0, text("StreamBuffer: seek target not yet buffered"));
  checks.check(buffer.isTailProbe(buffer.fileLength - 1) &&
                   !buffer.isTailProbe(buffer.fileLength - StreamBuffer::kTail - 1),
               text("StreamBuffer: tail index probe doesn't move playhead"));
}

} // namespace vellum::selftest
