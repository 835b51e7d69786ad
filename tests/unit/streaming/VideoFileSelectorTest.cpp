#include "streaming/VideoFileSelector.h"
#include <QStringList>
#include <gtest/gtest.h>

namespace vellum {
namespace {

// "PATH SIZE, PATH SIZE".
std::vector<TorrentFileEntry> files(const char* listed) {
  std::vector<TorrentFileEntry> files;
  for (const QString& file :
       QString::fromUtf8(listed).split(QStringLiteral(", "), Qt::SkipEmptyParts))
    files.push_back({file.section(u' ', 0, 0), file.section(u' ', 1).toLongLong()});
  return files;
}

std::string printed(const std::vector<int>& indexes) {
  std::string text;
  for (const int index : indexes) text += " " + std::to_string(index);
  return text;
}

TEST(VideoFileSelector, FindsTheFilmOrAsksAndTheSubtitlesAnywhere) {
  const char* const cases[] = {
      "none: ", "none: a.iso 5242880000, b.txt 5, mkv 9", "film 1: x.txt 90, FILM.MKV 10",
      "film 0: movie.mkv 4194304000, Sample/sample.mkv 41943040, m.nfo 1000",
      "film 1: resampled.mkv 90, b.mkv 80", "film 1: M/Extras/a.mkv 90, M/b.mkv 10, Trailer.avi 50",
      "film 0: Sample.mp4 9, x/sample2.mp4 2", "film 0: a.mkv 0",
      // A tenth of the largest stays; where the second has half of it, the user is asked.
      "choose 0 1 2: a.mkv 100, b.mkv 60, c.mkv 10", "choose 0 1: a.mkv 101, b.mkv 60, c.mkv 10",
      "choose 0 1: a.mkv 109, b.mkv 60, c.mkv 10", "choose 1 0: b.mkv 50, a.mkv 100",
      "film 1: b.mkv 50, a.mkv 101",
      "choose 0 1: a.mkv 9000000000000000000, b.mkv 8999999999999999999",
      // By name, digits by their value.
      "choose 3 1 2 0 4: E10.mkv 9, e2.mkv 9, E002b.mkv 9, E1.mkv 9, E99999999999999999999.mkv 9",
      "choose 6 5 4 0 1 2 3: E0.mkv 9, E09.mkv 9, E9.mkv 9, E10.mkv 9, E.mkv 9, a9.mkv 9, a.mkv 9",
      "choose 1 2 0: b:1.mkv 9, b/1.mkv 9, b1.mkv 9"};
  for (const std::string written : cases) {
    const auto colon = written.find(':');
    const auto outcome = VideoFileSelector::select(files(written.c_str() + colon + 2));
    const char* const kinds[] = {"film", "choose", "none"};
    EXPECT_EQ(kinds[int(outcome.kind)] + printed(outcome.files), written.substr(0, colon));
  }
  EXPECT_EQ(printed(VideoFileSelector::subtitles(
                files("a.ass, b.SSA 9, Sample/c.sub, d.vtt, e.txt, f.srt, srt, .srt, g.srt/h"))),
            " 0 1 2 3 5");
}

} // namespace
} // namespace vellum
