#include "models/MediaItem.h"
#include "models/QualityPicker.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

// Of a text such as "F 720p:3": the title, and the seeders if they are known.
TorrentResult titled(const char* text) {
  const auto parts = QString::fromUtf8(text).split(u':');
  TorrentResult result;
  result.title = parts[0];
  if (parts.size() > 1) result.seeders = parts[1].toLongLong();
  return result;
}

TEST(TorrentResult, ReadsQualityAndFormatFromTheTitle) {
  using Case = std::array<const char*, 3>;
  for (const auto& [title, quality, format] :
       {Case{"A 720p 1080p MP4 mkv", "1080p", "mkv"}, Case{"B 4K WebM", "2160p", "webm"},
        Case{"C x2160P", "2160p", "—"}, Case{"D.DVDRip.avi", "SD", "avi"},
        Case{"E BRRip 480p", "480p", "—"}, Case{"F brrip", "HD", "—"}, Case{"", "—", "—"},
        Case{"Removed", "—", "mov"}}) {
    EXPECT_EQ(titled(title).quality(), QString::fromUtf8(quality)) << title;
    EXPECT_EQ(titled(title).format(), QString::fromUtf8(format)) << title;
  }
  TorrentResult item = titled("Catalog item");
  item.archiveID = QStringLiteral("x");
  EXPECT_EQ(item.format(), QStringLiteral("mp4"));
  item.sources = {QStringLiteral("b"), QStringLiteral("a")};
  EXPECT_EQ(item.sourceSort(), QStringLiteral("a, b"));
}

TEST(QualityPicker, TakesTheNearestRungThenTheLowerThenTheMostSeeded) {
  using Label = std::pair<const char*, int>;
  for (const auto& [label, height] :
       {Label{"480P", 480}, Label{"sd", 480}, Label{"720p", 720}, Label{"HD", 720},
        Label{"1080p", 1080}, Label{"2160p", 2160}, Label{"4K", 2160}, Label{"p", 0}})
    EXPECT_EQ(QualityPicker::rank(QLatin1String(label)).value_or(0), height) << label;
  using Case = std::tuple<const char*, std::vector<const char*>, int>; // the index, -1 for nothing
  for (const auto& [preferred, offered, expected] :
       {Case{"1080p", {"720p", "1080p", "2160p"}, 1}, Case{"1080p", {"2160p", "720p"}, 1},
        Case{"2160p", {"480p", "720p"}, 1}, Case{"480p", {"720p", "2160p", "480p"}, 2},
        Case{"1080p", {}, -1}, Case{"HD", {"x:9", "1080p", "720p"}, 2},
        Case{"best", {"720p:1", "1080p:3", "480p:3"}, 1}, Case{"1080p", {"x:1", "y:2", "z:2"}, 1},
        Case{"720p", {"720p:1", "a 720p:5", "b 720p:5", "1080p:9"}, 1},
        Case{"720p", {"720p:-9223372036854775808", "720p:-1"}, 1},
        Case{"720p", {"720p", "720p:1"}, 1}, Case{"sd", {"dvdrip:1", "720p:9"}, 0}}) {
    TorrentResults list;
    for (const char* one : offered) list.push_back(titled(one));
    const auto picked = QualityPicker::pick(QLatin1String(preferred), list);
    ASSERT_EQ(picked.has_value(), expected >= 0) << preferred;
    if (picked) EXPECT_EQ(*picked, list[std::size_t(expected)]) << preferred;
  }
}

TEST(QualityPicker, FindsTheVariantsOfAFilm) {
  TorrentResults list;
  for (const char* title : {"F 1080p", "F x", "F 480p", "G 720p", "f 720p", "F y"}) {
    list.push_back(titled(title));
    list.back().baseTitle = QString(QLatin1Char(title[0]));
  }
  QStringList found;
  for (const auto& variant : QualityPicker::variants(list[0], list)) found += variant.title;
  EXPECT_EQ(found.join(u','), QStringLiteral("F x,F y,F 480p,F 1080p"));
  const TorrentResult alone = titled("F 720p");
  EXPECT_EQ(QualityPicker::variants(alone, list), TorrentResults{alone});
  EXPECT_EQ(QualityPicker::variants(list[3], {alone}), TorrentResults{list[3]});
}

TEST(ArchiveDetails, SortsFilesByWhatPlaysThem) {
  ArchiveDetails details;
  for (const char* name : {"a/film.MP4", "b.mkv", "c.d/none", "e.srt", "f.vtt", "g.torrent",
                           "h.torrent", "mp4", "i.mov", "j.mpeg", "k.mp4.txt"})
    details.files.push_back({QLatin1String(name), {}, {}, {}});
  const auto names = [](const ArchiveFiles& files) {
    QStringList list;
    for (const ArchiveFile& file : files) list += file.name;
    return list.join(u' ');
  };
  EXPECT_EQ(names(details.playable()), QStringLiteral("a/film.MP4 i.mov"));
  EXPECT_EQ(names(details.otherVideos()), QStringLiteral("b.mkv j.mpeg"));
  EXPECT_EQ(names(details.subtitles()), QStringLiteral("e.srt f.vtt"));
  EXPECT_EQ(details.torrent()->name, QStringLiteral("g.torrent"));
}

} // namespace
} // namespace vellum
