#include "app/PlayEntryPoints.h"
#include "unit/playback/PlaybackWorld.h"
#include <QFile>

namespace vellum::test {

using namespace Qt::StringLiterals;
namespace {

struct PlayEntryPointsTest : PlaybackWorld {
  QString make(const char* name) {
    QFile file(folder.filePath(QLatin1String(name)));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    return file.fileName();
  }
  // What the player loads, and with which subtitles, when that is pressed while a torrent streams.
  std::string pressed(const std::function<void()>& play) {
    coordinator->playFromSearchResult(result("a", "Torrent"));
    EXPECT_TRUE(coordinator->stream());
    navigation.setShowPlayer(false);
    takeEvents();
    play();
    EXPECT_FALSE(coordinator->stream());
    EXPECT_TRUE(navigation.showPlayer());
    QStringList names = takeEvents().filter(u"load "_s);
    for (const SubtitleTrack& track : subtitles.tracks()) names += track.name;
    return names.join(u' ').toStdString();
  }
  Navigation navigation;
  PlayEntryPoints entries{*coordinator, navigation};
};

TEST_F(PlayEntryPointsTest, ACatalogFilePlaysFromWhereItWasLeft) {
  MediaItem item;
  item.id = u"id"_s;
  item.title = u"T"_s;
  const ArchiveFile film{u"a/b.mp4"_s, {}, {}, QUrl(u"https://h/b.mp4"_s)};
  const ArchiveFiles texts{{u"en.srt"_s, {}, {}, QUrl(u"https://h/en.srt"_s)}};
  HistoryEntry old;
  old.key = u"id|a/b.mp4"_s;
  old.position = 94.9;
  old.duration = 100;
  library.record(old);
  navigation.setSelectedItem(item);
  EXPECT_EQ(pressed([&] { entries.play(film, item, texts); }), "load b.mp4 94.9 en.srt");
  EXPECT_FALSE(navigation.selectedItem());
  ASSERT_EQ(library.history().size(), 1U);
  const HistoryEntry row = library.history().front();
  EXPECT_EQ(row.thumbnail, item.thumbnailURL().toString(QUrl::FullyEncoded));
  EXPECT_EQ(row.source, u"https://h/b.mp4"_s);
  time = 42.5; // saved before it is loaded anew
  length = 100;
  EXPECT_EQ(pressed([&] { entries.resume(row); }), "load b.mp4 42.5");
}

TEST_F(PlayEntryPointsTest, ASavedFilePlaysWithTheSubtitlesBesideIt) {
  for (const char* name : {"Film.srt", "Film.en.VTT", "Other.srt", "Film.txt", "film.srt"})
    make(name);
  const QString film = make("Film.mkv");
  const std::string loaded = "load Film.mkv 0 Film.en.VTT Film.srt";
  EXPECT_EQ(pressed([&] { entries.playLocal(QUrl::fromLocalFile(film)); }), loaded);
  const HistoryEntry row = library.history().front();
  EXPECT_EQ(row.key, u"local|Film.mkv"_s);
  EXPECT_EQ(row.title, u"Film"_s);
  EXPECT_TRUE(row.isLocal && row.source == film);
  EXPECT_EQ(pressed([&] { entries.resume(row); }), loaded);
  EXPECT_EQ(library.history().size(), 1U);
  const QUrl missing = QUrl::fromLocalFile(u"/no/such/film.mkv"_s);
  EXPECT_TRUE(PlayEntryPoints::siblingSubtitles(missing).empty());
}

} // namespace
} // namespace vellum::test
