#include "app/MediaSession.h"
#include "app/StopSignals.h"
#include "base/ReplaceFile.h"
#include "playback/MpvPicture.h"
#include "world/LoopbackSeeder.h"
#include "world/LoopbackTracker.h"
#include "world/MainThread.h"
#include "world/ScriptedServer.h"
#include "world/SeededTorrent.h"
#include <QFile>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>

namespace vellum::test {

using namespace Qt::StringLiterals;
using namespace world;
namespace {

// What the desktop shows and hears.
struct Desktop final : MediaControls {
  struct Sleep final : platform::DisplaySleep {
    explicit Sleep(bool& flag) : isHeld(flag) {}
    void hold(const QString&) override { isHeld = true; }
    void release() override { isHeld = false; }
    bool& isHeld;
  };
  void show(const MediaStatus& status) override { shown = status; }
  MediaStatus shown;
  bool isAwake = false;
};

// The road with nothing left out but the window: swarm, engine, stream server, libmpv.
struct PressedPlayTest : testing::Test, MainThread {
  PressedPlayTest() {
    write("film.srt", "1\n00:00:00,000 --> 00:00:09,000\nHello\n");
    QFile::copy(QStringLiteral(TEST_FILM), content + u"/film.mkv"_s);
    qputenv("PATH", "/none"); // no other player takes over
    player.picture()->viewInSoftware(this, 160, 90);
  }
  void write(const char* name, const QByteArray& bytes) {
    EXPECT_TRUE(replaceFile(content + u'/' + QLatin1String(name), bytes, Privacy::Everybody));
  }
  SeededTorrent torrent() const { return SeededTorrent::fromDisk(content.toStdString(), 65536); }

  QTemporaryDir folder;
  const QString content = folder.filePath(u"content"_s);
  Runtime runtime{folder.filePath(u"preferences.json"_s)};
  AppState state{runtime, {}};
  WindowState window{runtime, state, AudioOutput::Silent};
  VideoPlayerManager& player = window.playback.player;
  PlaybackCoordinator& coordinator = window.playback.coordinator;
};

// A film plays in its own time.
TEST_F(PressedPlayTest, BecomesAPictureThatTheDesktopSteersAndLeavesNothingBehind) {
  Desktop desktop;
  StayAwake stayAwake(std::make_unique<Desktop::Sleep>(desktop.isAwake));
  MediaSession session(window, desktop, stayAwake);
  int raised = 0;
  QObject::connect(&session, &MediaSession::windowWanted, &app, [&] { ++raised; });

  const SeededTorrent film = torrent();
  const LoopbackSeeder seeder(film);
  TorrentResult row;
  row.id = toHex(film.infoHash);
  row.infoHash = row.id;
  row.title = u"Film"_s;
  row.magnet = film.magnet({}, {u"127.0.0.1:%1"_s.arg(seeder.port())});
  coordinator.playFromSearchResult(row);

  // Meanwhile: what shall be saved is shown among the downloads, or why not.
  Q_EMIT state.catalog.searchScreenWanted();
  EXPECT_EQ(window.navigation.section(), SidebarSection::Search);
  const MediaItem item;
  window.navigation.setSelectedItem(item);
  ArchiveFile file{u"f.mp4"_s, {}, INT64_MAX, QUrl(u"http://127.0.0.1:1/f.mp4"_s)};
  window.entries.download(file, item, state.downloads);
  EXPECT_TRUE(window.navigation.notice() && window.navigation.selectedItem());
  file.size.reset();
  window.entries.download(file, item, state.downloads);
  EXPECT_EQ(window.navigation.section(), SidebarSection::Downloads);
  EXPECT_FALSE(window.navigation.selectedItem());

  ASSERT_TRUE(turnUntil([&] { return player.currentTime() > 0.1; }))
      << player.error().toStdString();
  EXPECT_EQ(coordinator.stream()->stage, StreamStage::Playing);
  EXPECT_EQ(coordinator.rowStates().value(row.id).kind, RowState::Kind::Playing);
  EXPECT_TRUE(player.currentURL().toString().startsWith(u"http://127.0.0.1:"_s));
  const auto line = [&] { return window.playback.subtitles.currentText(); };
  EXPECT_TRUE(turnUntil([&] { return line() == u"Hello"_s; }));
  EXPECT_EQ(state.library.history().front().key, row.id + u"|content/film.mkv"_s);
  const QDir streams(state.cache.torrentDir() + u"/streams"_s);
  EXPECT_TRUE(streams.exists(row.id));
  EXPECT_TRUE(window.navigation.showPlayer());
  EXPECT_TRUE(turnUntil([&] { return desktop.shown.duration > 2; }));
  EXPECT_TRUE(desktop.shown.isLoaded && desktop.shown.isPlaying && desktop.isAwake);
  EXPECT_EQ(desktop.shown.title, u"Film"_s);

  for (int i = 0; i < 2; ++i) Q_EMIT desktop.pause(); // twice is once
  EXPECT_FALSE(player.isPlaying() || desktop.shown.isPlaying || desktop.isAwake);
  Q_EMIT desktop.seek(1);
  EXPECT_EQ(desktop.shown.position, 1);
  Q_EMIT desktop.seekBy(0.5);
  EXPECT_EQ(desktop.shown.position, 1.5);
  player.setMuted(true);
  Q_EMIT desktop.setVolume(0); // which is no reason to be heard again
  EXPECT_TRUE(player.isMuted() && desktop.shown.volume == 0);
  Q_EMIT desktop.setVolume(0.5);
  EXPECT_TRUE(!player.isMuted() && desktop.shown.volume == 0.5);
  Q_EMIT desktop.raise();
  EXPECT_EQ(raised, 1);

  // At its end it begins anew the next time.
  coordinator.saveNow();
  EXPECT_EQ(state.library.history().front().position, 1.5);
  Q_EMIT desktop.seek(2.8);
  for (int i = 0; i < 2; ++i) Q_EMIT desktop.play();
  EXPECT_TRUE(player.isPlaying());
  Q_EMIT desktop.toggle();
  EXPECT_FALSE(player.isPlaying());
  Q_EMIT desktop.toggle();
  EXPECT_TRUE(turnUntil([&] { return state.library.history().front().position == 0; }));
  player.stop(); // as when another program takes over
  EXPECT_FALSE(desktop.shown.isLoaded || desktop.isAwake);
  Q_EMIT desktop.stop();
  EXPECT_FALSE(coordinator.stream() || coordinator.nowPlaying() || window.navigation.showPlayer());
  EXPECT_TRUE(turnUntil([&] { return !streams.exists(row.id); }));
  EXPECT_TRUE(state.engine.entries().empty());
}

// By way of a .torrent file of the web and the tracker in it.
TEST_F(PressedPlayTest, ThatCannotBeDecodedFailsInWords) {
  write("film.mkv", QByteArray(2'000'000, 'x'));
  const SeededTorrent noise = torrent();
  const LoopbackSeeder seeder(noise);
  LoopbackTracker tracker;
  tracker.setPeers({seeder.port()});
  const ScriptedServer web([&](const QByteArray&) {
    return ScriptedServer::reply(200, noise.torrentFile({tracker.udpUrl()}));
  });
  TorrentResult row;
  row.torrentURL = web.url();
  coordinator.playFromSearchResult(row);
  const auto kind = [&] { return coordinator.rowStates().value(row.id).kind; };
  ASSERT_TRUE(turnUntil([&] { return kind() == RowState::Kind::Failed; }));
  EXPECT_EQ(coordinator.stream()->failure, (StreamFailure{StreamFailure::Kind::Unsupported, {}}));
}

TEST(StopSignals, TheFirstIsHeardAndTheSecondEndsTheProcess) {
  const MainThread thread;
  Runtime runtime{QString()};
  int heard = 0;
  const StopSignals signals(runtime, [&] { ++heard; });
  raise(SIGTERM);
  EXPECT_TRUE(MainThread::turnUntil([&] { return heard > 0; }));
  struct sigaction second {};
  ASSERT_EQ(sigaction(SIGTERM, nullptr, &second), 0);
  EXPECT_EQ(second.sa_handler, SIG_DFL);
}

} // namespace
} // namespace vellum::test
