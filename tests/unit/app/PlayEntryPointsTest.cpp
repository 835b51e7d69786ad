#include "app/PlayEntryPoints.h"
#include "unit/playback/PlaybackWorld.h"
#include <QFile>

namespace vellum::test {
namespace {

struct PlayEntryPointsTest : PlaybackWorld {
  QString make(const char* name) {
    QFile file(folder.filePath(QLatin1String(name)));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    return file.fileName();
  }
  QString tracks() const {
    QStringList names;
    for (const SubtitleTrack& track : subtitles.tracks()) names += track.name;
    names.sort();
    return names.join(u' ');
  }
  Navigation navigation;
  PlayEntryPoints entries{*coordinator, navigation};
};

TEST_F(PlayEntryPointsTest, ACatalogFilePlaysFromWhereItWasLeft) {
  MediaItem item;
  item.id = QStringLiteral("id");
  item.title = QStringLiteral("T");
  const ArchiveFile film{
      QStringLiteral("a/b.mp4"), {}, {}, QUrl(QStringLiteral("https://h/b.mp4"))};
  const ArchiveFiles texts{
      {QStringLiteral("en.srt"), {}, {}, QUrl(QStringLiteral("https://h/en.srt"))}};
  HistoryEntry old;
  old.key = QStringLiteral("id|a/b.mp4");
  old.position = 94.9;
  old.duration = 100;
  library.record(old);
  navigation.setSelectedItem(item);
  for (int round = 0; round < 2; ++round) entries.play(film, item, texts);
  EXPECT_EQ(takeEvents().first(), QStringLiteral("load b.mp4 94.9"));
  ASSERT_EQ(library.history().size(), 1U);
  EXPECT_EQ(library.history()[0].thumbnail, item.thumbnailURL().toString(QUrl::FullyEncoded));
  EXPECT_EQ(library.history()[0].source, QStringLiteral("https://h/b.mp4"));
  EXPECT_EQ(tracks(), QStringLiteral("en.srt"));
  EXPECT_TRUE(navigation.showPlayer() && !navigation.selectedItem());
}

TEST_F(PlayEntryPointsTest, ASavedFilePlaysWithTheSubtitlesBesideIt) {
  for (const char* name : {"Film.srt", "Film.en.VTT", "Other.srt", "Film.txt", "film.srt"})
    make(name);
  const QString film = make("Film.mkv");
  entries.playLocal(QUrl::fromLocalFile(film));
  EXPECT_EQ(tracks(), QStringLiteral("Film.en.VTT Film.srt"));
  const HistoryEntry row = library.history().front();
  EXPECT_EQ(row.key, QStringLiteral("local|Film.mkv"));
  EXPECT_EQ(row.title, QStringLiteral("Film"));
  EXPECT_TRUE(row.isLocal && row.source == film);
  subtitles.reset({});
  entries.resume(row);
  EXPECT_EQ(tracks(), QStringLiteral("Film.en.VTT Film.srt"));
  EXPECT_EQ(library.history().size(), 1U);
  EXPECT_TRUE(
      PlayEntryPoints::siblingSubtitles(QUrl::fromLocalFile(QStringLiteral("/no/such/film.mkv")))
          .empty());
}

} // namespace
} // namespace vellum::test
