#include "app/AppState.h"
#include "app/Playback.h"
#include "playback/MpvPicture.h"
#include "world/LoopbackSeeder.h"
#include "world/LoopbackTracker.h"
#include "world/MainThread.h"
#include "world/ScriptedServer.h"
#include "world/SeededTorrent.h"
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;
namespace {

struct NoDesktop final : ExternalPlayers::Desktop {
  bool isExecutable(const QString&) const override { return false; }
  bool launch(const QString&, const QStringList&) override { return false; }
  void terminate() override {}
  QString findProgram(const QString&) const override { return {}; }
  bool openInVlc(const QUrl&) override { return false; }
};

// The road with nothing left out but the window: swarm, engine, stream server, libmpv.
struct PressedPlayTest : testing::Test, MainThread {
  PressedPlayTest() {
    qputenv("VELLUM_HOME", folder.filePath(QStringLiteral("home")).toUtf8());
    QDir().mkpath(content);
    QFile::copy(QStringLiteral(TEST_FILM), content + QStringLiteral("/film.mkv"));
    write("film.srt", "1\n00:00:00,000 --> 00:00:09,000\nHello\n");
    runtime.emplace();
    state.emplace(*runtime, AppState::Options{});
    playback.emplace(*runtime, state->settings, state->engine, library, desktop,
                     AudioOutput::Silent);
    playback->player.picture()->viewInSoftware(this, 160, 90);
  }
  ~PressedPlayTest() override { qputenv("VELLUM_HOME", homeBefore); }

  void write(const char* name, const QByteArray& bytes) {
    QFile file(content + u'/' + QLatin1String(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
  }
  TorrentResult result(const SeededTorrent& torrent, std::uint16_t seeder) const {
    TorrentResult made;
    made.infoHash = toHex(torrent.infoHash);
    made.id = *made.infoHash;
    made.title = QStringLiteral("Film");
    made.magnet = torrent.magnet({}, {QStringLiteral("127.0.0.1:%1").arg(seeder)});
    return made;
  }
  SeededTorrent torrent() const { return SeededTorrent::fromDisk(content.toStdString(), 65536); }
  QString streams() const { return state->cache.torrentDir() + QStringLiteral("/streams"); }

  const QByteArray homeBefore = qgetenv("VELLUM_HOME");
  QTemporaryDir folder;
  const QString content = folder.filePath(QStringLiteral("content"));
  NoDesktop desktop;
  LibraryStore library{folder.filePath(QStringLiteral("history.json"))};
  std::optional<Runtime> runtime;
  std::optional<AppState> state;
  std::optional<Playback> playback;
};

TEST_F(PressedPlayTest, BecomesAPictureWithItsSubtitleAndLeavesNothingBehind) {
  const SeededTorrent film = torrent();
  const LoopbackSeeder seeder(film);
  PlaybackCoordinator& coordinator = playback->coordinator;
  const TorrentResult row = result(film, seeder.port());
  coordinator.playFromSearchResult(row);
  ASSERT_TRUE(turnUntil([&] { return playback->player.currentTime() > 0.4; }))
      << playback->player.error().toStdString();
  EXPECT_EQ(coordinator.stream()->stage, StreamStage::Playing);
  EXPECT_EQ(coordinator.rowStates().value(row.id).kind, RowState::Kind::Playing);
  EXPECT_TRUE(
      playback->player.currentURL().toString().startsWith(QStringLiteral("http://127.0.0.1:")));
  ASSERT_TRUE(
      turnUntil([&] { return playback->subtitles.currentText() == QStringLiteral("Hello"); }));
  EXPECT_TRUE(turnUntil([&] { return playback->player.duration() > 2; }));
  EXPECT_EQ(library.history().front().key, row.id + QStringLiteral("|content/film.mkv"));
  EXPECT_TRUE(QDir(streams()).exists(row.id));

  coordinator.close();
  EXPECT_FALSE(coordinator.stream() || coordinator.nowPlaying());
  EXPECT_TRUE(turnUntil([&] { return !QDir(streams()).exists(row.id); }));
  EXPECT_TRUE(state->engine.entries().empty());
}

// By way of a .torrent file of the web and the tracker in it.
TEST_F(PressedPlayTest, ThatCannotBeDecodedFailsInWords) {
  QFile::remove(content + QStringLiteral("/film.mkv"));
  write("film.mkv", QByteArray(2'000'000, 'x'));
  const SeededTorrent noise = torrent();
  const LoopbackSeeder seeder(noise);
  LoopbackTracker tracker;
  tracker.setPeers({seeder.port()});
  const ScriptedServer web([&](const QByteArray&) {
    return ScriptedServer::reply(200, noise.torrentFile({tracker.udpUrl()}));
  });
  TorrentResult row = result(noise, seeder.port());
  row.magnet.reset();
  row.infoHash.reset();
  row.torrentURL = web.url();
  playback->coordinator.playFromSearchResult(row);
  ASSERT_TRUE(turnUntil([&] {
    return playback->coordinator.rowStates().value(row.id).kind == RowState::Kind::Failed;
  }));
  EXPECT_EQ(playback->coordinator.stream()->failure,
            (StreamFailure{StreamFailure::Kind::Unsupported, {}}));
  // And the program may end in the midst of it.
}

} // namespace
} // namespace vellum::test
