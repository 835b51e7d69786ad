#include "PlayerWorld.h"
#include "playback/MpvSoftwarePainter.h"
#include <QTcpServer>

namespace vellum::test {

using namespace std::chrono_literals;

TEST_F(PlayerWorld, TellsHalfSecondsToTheEndWhereTheFilmStays) {
  play(film());
  EXPECT_NEAR(player->duration(), kLength, 0.1);
  ASSERT_TRUE(turnUntil([this] { return ends > 0; }));
  ASSERT_GE(times.size(), 8U);
  EXPECT_EQ(times.front(), 0);
  for (std::size_t i = 2; i + 2 < times.size(); ++i)
    EXPECT_NEAR(times[i] - times[i - 1], 0.5, 2 * kFrame) << i;
  EXPECT_NEAR(times.back(), player->duration(), 2 * kFrame);
  EXPECT_NEAR(player->bufferedTo(), kLength, 0.1);
  EXPECT_FALSE(player->isPlaying());
  EXPECT_EQ(player->currentURL(), film());

  player->toggle();
  EXPECT_FALSE(player->isPlaying());
  EXPECT_NEAR(standsAfter([this] { player->seek(1); }), 1, kFrame);
  player->toggle();
  EXPECT_TRUE(turnUntil([this] { return ends == 2; }));
}

TEST_F(PlayerWorld, StartsAndSeeksExactly) {
  struct Row {
    double startAt, first;
  };
  for (const Row& row : {Row{0, 0}, {1.0, 0}, {1.5, 1.5}, {NAN, 0}, {-5, 0}}) {
    times.clear();
    play(film(), row.startAt);
    EXPECT_NEAR(times[1], row.first, 2 * kFrame) << row.startAt;
  }
  // Before it is ready, and with nothing known that would cap it.
  player->load(film(), 1.5);
  player->seek(99);
  EXPECT_EQ(player->currentTime(), 99);
  player->seek(2.2);
  ASSERT_TRUE(turnUntil([this] { return isMoving(); }));
  standsAfter([this] { player->toggle(); });
  for (const Row& row : {Row{1.48, 1.48}, {0.3, 0.3}, {-3, 0}, {2.04, 2.04}})
    EXPECT_NEAR(standsAfter([&] { player->seek(row.startAt); }), row.first, kFrame);
  player->seek(500);
  EXPECT_EQ(player->currentTime(), player->duration());
  EXPECT_FALSE(turnUntil([this] { return ends > 0; }, 1s))
      << "paused, it is not watched to its end";
}

TEST_F(PlayerWorld, TogglesAndKeepsItsRate) {
  play(film());
  player->toggle();
  EXPECT_FALSE(player->isPlaying());
  player->setRate(2);
  standsAfter([this] { player->seek(0); });
  // Nothing is drawn while it is paused.
  turnUntil([] { return false; }, 1s);
  int frames = 0;
  QObject::connect(player->picture().get(), &MpvPicture::frameReady, &app, [&] { ++frames; });
  turnUntil([] { return false; }, 1s);
  EXPECT_EQ(frames, 0);
  EXPECT_LT(player->currentTime(), kFrame);

  const auto playThrough = [this] { turnUntil([this] { return ends > 0; }); };
  player->toggle();
  EXPECT_TRUE(player->isPlaying());
  EXPECT_LT(secondsOf(playThrough), 2.5);
  EXPECT_GT(frames, 20);
  ends = 0;
  player->load(film(), 0);
  EXPECT_EQ(player->rate(), 2);
  EXPECT_LT(secondsOf(playThrough), 2.5);
  EXPECT_EQ(ends, 1);
}

TEST_F(PlayerWorld, HoldsTheVolumeAndUnmutesWhenItRises) {
  struct Row {
    float volume;
    bool isMuted;
    float delta, volumeThen;
    bool isMutedThen;
  };
  for (const Row& row : {Row{1.0F, false, 0.1F, 1.0F, false},
                         {0.05F, false, -0.1F, 0.0F, false},
                         {0.05F, true, -0.1F, 0.0F, true},
                         {0.5F, true, 0.25F, 0.75F, false},
                         {0.5F, true, -0.25F, 0.25F, false},
                         {7.0F, false, 0.0F, 1.0F, false},
                         {-1.0F, true, 0.0F, 0.0F, true}}) {
    player->setVolume(row.volume);
    player->setMuted(row.isMuted);
    player->adjustVolume(row.delta);
    EXPECT_FLOAT_EQ(player->volume(), row.volumeThen) << row.volume;
    EXPECT_EQ(player->isMuted(), row.isMutedThen) << row.volume;
  }
}

TEST_F(PlayerWorld, ChoosesAmongTheSoundTracks) {
  play(film());
  const auto options = player->audioOptions();
  ASSERT_EQ(options.size(), 2);
  EXPECT_EQ(options[0], (AudioOption{1, QStringLiteral("English")}));
  EXPECT_EQ(options[1], (AudioOption{2, QStringLiteral("French (Commentary)")}));
  EXPECT_EQ(player->selectedAudio(), options[0]);

  int told = 0;
  QObject::connect(player.get(), &VideoPlayerManager::audioChanged, &app, [&] { ++told; });
  player->selectAudio({7, QStringLiteral("English")});
  EXPECT_EQ(told, 0);
  player->selectAudio(options[1]);
  // At once, and again when the player has confirmed it.
  EXPECT_EQ(player->selectedAudio(), options[1]);
  EXPECT_TRUE(turnUntil([&] { return told == 2; }));
  EXPECT_EQ(player->selectedAudio(), options[1]);
  // The choice was one for this item.
  play(film());
  EXPECT_EQ(player->selectedAudio(), options[0]);
}

TEST_F(PlayerWorld, TellsWhyAnItemFailsAndOpensNothingElse) {
  QTcpServer stranger;
  ASSERT_TRUE(stranger.listen(QHostAddress::LocalHost));
  const QByteArray elsewhere = "http://127.0.0.1:" + QByteArray::number(stranger.serverPort());
  const auto url = [](const char* text) { return QUrl(QString::fromLatin1(text)); };
  const QString none = QStringLiteral("Playback failed");
  const QString unknown = QStringLiteral("Failed to recognize file format.");
  const std::pair<QUrl, QString> rows[] = {
      {QUrl::fromLocalFile(folder.filePath(QStringLiteral("missing"))),
       QStringLiteral("No such file or directory")},
      {fileWith("no film"), unknown},
      {fileWith({}), unknown},
      {QUrl::fromLocalFile(folder.path()), unknown},
      {url("http://127.0.0.1:1/film.mkv"), QStringLiteral("Connection refused")},
      {fileWith("#EXTM3U\n" + elsewhere + "/film.mkv\n"), unknown},
      {fileWith("#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:9,\n" + elsewhere + "/1.ts\n"),
       QStringLiteral("Not opening")},
      {fileWith("# mpv EDL v0\n" + elsewhere + "/film.mkv\n"), unknown},
      {fileWith("ffconcat version 1.0\nfile " + elsewhere + "/film.mkv\n"), QString()},
      {QUrl(QString::fromLatin1("ftp" + elsewhere.mid(4))), none},
      {QUrl(QString::fromLatin1("rtmp" + elsewhere.mid(4))), none},
      {url("av://lavfi:testsrc"), none},
      {url("memory://x"), none},
      {url("--script=/tmp/x.lua"), none},
      {url("file:relative.mkv"), none},
      {url("file:///tmp/a%00b"), none},
      {QUrl(), none}};
  for (const auto& [address, text] : rows) {
    player->load(address, 0);
    EXPECT_TRUE(player->error().isNull());
    ASSERT_TRUE(fails()) << address.toString().toStdString();
    EXPECT_TRUE(player->error().contains(text)) << player->error().toStdString();
    EXPECT_FALSE(player->isBuffering());
    EXPECT_EQ(player->currentURL(), address); // for a retry
  }
  EXPECT_FALSE(stranger.hasPendingConnections());
  play(film());
  EXPECT_TRUE(player->error().isNull());
}

TEST_F(PlayerWorld, PassesOverWhatComesLate) {
  const QUrl broken = fileWith("no film");
  player->load(film(), 0);
  player->load(broken, 0);
  ASSERT_TRUE(fails());
  EXPECT_EQ(player->duration(), 0);
  EXPECT_TRUE(player->audioOptions().isEmpty());

  player->load(broken, 0);
  play(film());
  EXPECT_TRUE(player->error().isNull());
  player->stop();
  EXPECT_EQ(player->currentTime(), 0);
  EXPECT_EQ(player->duration(), 0);
  EXPECT_FALSE(player->isPlaying() || player->isBuffering());
  EXPECT_TRUE(player->currentURL().isEmpty());
  EXPECT_EQ(player->audioOptions().size(), 2);
  times.clear();
  player->load(QUrl(), 0);
  player->stop();
  turnUntil([] { return false; }, 1s);
  EXPECT_TRUE(player->error().isNull());
  EXPECT_EQ(times, (std::vector<double>{0, 0}));
}

TEST_F(PlayerWorld, OpensAnItemWhenSomebodyDraws) {
  makePlayer();
  player->load(film(), 0);
  EXPECT_FALSE(turnUntil([this] { return player->duration() > 0; }, 1s));
  EXPECT_TRUE(player->isPlaying() && player->isBuffering());
  player->toggle();
  view();
  ASSERT_TRUE(turnUntil([this] { return player->duration() > 0; }));
  EXPECT_FALSE(player->isPlaying());
  // Another viewer takes over in its own size, also while the film is paused.
  const auto width = [this] {
    const auto frame = player->picture()->softwareFrame();
    return frame ? frame->width : 0;
  };
  EXPECT_TRUE(turnUntil([&] { return width() == 160; }));
  player->picture()->viewInSoftware(&width, 320, 180);
  EXPECT_TRUE(turnUntil([&] { return width() == 320; }));
  player->picture()->leaveSoftware(&width);
  EXPECT_TRUE(turnUntil([&] { return width() == 160; }));
}

} // namespace vellum::test
