#include "streaming/VideoFileSelector.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

using Kind = VideoFileSelector::Outcome::Kind;

struct Case {
  const char* what;
  std::vector<std::pair<const char*, std::int64_t>> files;
  Kind kind;
  std::vector<int> expected;
};

std::vector<TorrentFileEntry> entries(const Case& from) {
  std::vector<TorrentFileEntry> files;
  for (const auto& [path, size] : from.files) files.push_back({QString::fromUtf8(path), size});
  return files;
}

TEST(VideoFileSelector, FindsTheFilmOrAsks) {
  const Case cases[] = {
      {"nothing", {}, Kind::None, {}},
      {"a film, its sample and its notes",
       {{"Movie/movie.mkv", 4194304000}, {"Movie/Sample/sample.mkv", 41943040}, {"m.nfo", 1000}},
       Kind::Single,
       {0}},
      {"nothing playable", {{"a.iso", 5242880000}, {"b.txt", 5}, {"mkv", 9}}, Kind::None, {}},
      {"an upper-case extension", {{"FILM.MKV", 10}}, Kind::Single, {0}},
      {"a word inside another", {{"resampled.mkv", 90}, {"b.mkv", 80}}, Kind::Single, {1}},
      {"a folder of extras", {{"M/Extras/a.mkv", 90}, {"M/b.mkv", 10}}, Kind::Single, {1}},
      {"nothing but samples", {{"Sample.mp4", 9}, {"x/sample2.mp4", 2}}, Kind::Single, {0}},
      {"exactly a tenth stays",
       {{"a.mkv", 100}, {"b.mkv", 60}, {"c.mkv", 10}},
       Kind::Choose,
       {0, 1, 2}},
      {"less than a tenth goes",
       {{"a.mkv", 101}, {"b.mkv", 60}, {"c.mkv", 10}},
       Kind::Choose,
       {0, 1}},
      {"exactly half asks", {{"a.mkv", 100}, {"b.mkv", 50}}, Kind::Choose, {0, 1}},
      {"a byte less does not", {{"a.mkv", 101}, {"b.mkv", 50}}, Kind::Single, {0}},
      {"sizes that would overflow",
       {{"a.mkv", 9'000'000'000'000'000'000}, {"b.mkv", 8'999'999'999'999'999'999}},
       Kind::Choose,
       {0, 1}},
      {"natural order",
       {{"s/E10.mkv", 9},
        {"s/e2.mkv", 9},
        {"S/E002b.mkv", 9},
        {"s/E1.mkv", 9},
        {"s/E99999999999999999999999.mkv", 9}},
       Kind::Choose,
       {3, 1, 2, 0, 4}},
  };
  for (const Case& each : cases)
    EXPECT_EQ(VideoFileSelector::select(entries(each)),
              (VideoFileSelector::Outcome{each.kind, each.expected}))
        << each.what;
}

TEST(VideoFileSelector, FindsSubtitlesWhateverTheirSizeAndPlace) {
  std::vector<TorrentFileEntry> files;
  for (const char* path :
       {"a.ass", "b.SSA", "Sample/c.sub", "d.vtt", "e.txt", "f.srt", "srt", ".srt", "g.srt/h"})
    files.push_back({QString::fromUtf8(path), 0});
  EXPECT_EQ(VideoFileSelector::subtitles(files), (std::vector<int>{0, 1, 2, 3, 5}));
}

} // namespace
} // namespace vellum
