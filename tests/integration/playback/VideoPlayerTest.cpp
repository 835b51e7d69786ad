// What only libmpv itself shows of the player; without sound device and window.
#include "playback/MpvPicture.h"
#include "playback/MpvSoftwarePainter.h"
#include "playback/VideoPlayerManager.h"
#include "world/MainThread.h"
#include <QFile>
#include <QTcpServer>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;
namespace {

QString text(const char* latin1) { return QString::fromLatin1(latin1); }

struct VideoPlayerTest : MainThread, testing::Test {
  static constexpr double kFrame = 0.04; // seconds

  VideoPlayerTest() {
    player.emplace(main, AudioOutput::Silent);
    QObject::connect(&*player, &VideoPlayerManager::currentTimeChanged, &app,
                     [this](double seconds) { times.push_back(seconds); });
    QObject::connect(&*player, &VideoPlayerManager::finished, &app, [this] { ++ends; });
    player->picture()->viewInSoftware(this, 160, 90);
    player->setRate(3);
  }
  void play(double startAt) {
    player->load(film, startAt);
    ASSERT_TRUE(turnUntil([this] { return player->selectedAudio() && times.size() > 1; }));
  }
  bool hasEnded() {
    return turnUntil([this] { return ends > 0; });
  }

  const QUrl film = QUrl::fromLocalFile(QStringLiteral(TEST_FILM));
  std::optional<VideoPlayerManager> player;
  std::vector<double> times; // as they were told
  int ends = 0;
};

TEST_F(VideoPlayerTest, BeginsWhereItIsToldAndStaysAtItsEndWhereItCanBeSought) {
  play(1.5);
  EXPECT_GE(times[1], 1.5 - kFrame);
  EXPECT_LT(times[1], 2);
  ASSERT_TRUE(hasEnded());
  EXPECT_NEAR(times.back(), player->duration(), 2 * kFrame);
  EXPECT_NEAR(player->duration(), 3, 0.1); // the sound is a little longer
  EXPECT_NEAR(player->bufferedTo(), 3, 0.1);
  for (const double to : {1.48, 2.04}) {
    player->seek(to);
    times.clear();
    EXPECT_TRUE(turnUntil([this] { return !times.empty(); }));
    EXPECT_NEAR(player->currentTime(), to, kFrame);
  }
  ends = 0;
  player->toggle();
  EXPECT_TRUE(hasEnded()) << "again";
}

TEST_F(VideoPlayerTest, ChoosesAmongTheSoundTracksOfAnItem) {
  play(0);
  const auto options = player->audioOptions();
  ASSERT_EQ(options.size(), 2);
  EXPECT_EQ(options[0], (AudioOption{1, text("English")}));
  EXPECT_EQ(options[1], (AudioOption{2, text("French (Commentary)")}));
  player->selectAudio({7, text("English")});
  EXPECT_EQ(player->selectedAudio(), options[0]) << "no track of it";
  int told = 0;
  QObject::connect(&*player, &VideoPlayerManager::audioChanged, &app, [&] { ++told; });
  player->selectAudio(options[1]);
  EXPECT_EQ(player->selectedAudio(), options[1]);
  EXPECT_TRUE(turnUntil([&] { return told == 2; })) << "the player confirms it";
  EXPECT_EQ(player->selectedAudio(), options[1]);
  player->load(film, 0);
  EXPECT_TRUE(player->audioOptions().isEmpty());
}

TEST_F(VideoPlayerTest, AFileOpensNothingThatItNames) {
  const QTemporaryDir folder;
  QTcpServer stranger;
  ASSERT_TRUE(stranger.listen(QHostAddress::LocalHost));
  const QByteArray elsewhere = "http://127.0.0.1:" + QByteArray::number(stranger.serverPort());
  for (const QByteArray& content :
       {"#EXTM3U\n" + elsewhere, "# mpv EDL v0\n" + elsewhere,
        "#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:9,\n" + elsewhere + "/1.ts\n",
        "ffconcat version 1.0\nfile " + elsewhere + "\n"}) {
    QFile file(folder.filePath(text("film.mkv")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) > 0 && file.flush());
    player->load(QUrl::fromLocalFile(file.fileName()), 0);
    ASSERT_TRUE(turnUntil([this] { return !player->error().isNull(); })) << content.constData();
  }
  EXPECT_FALSE(stranger.hasPendingConnections());
}

TEST_F(VideoPlayerTest, AFilmIsDrawnInTheSizeOfItsLatestViewerAlsoWhilePaused) {
  player->load(film, 0);
  player->toggle();
  const auto isDrawn = [this](int width, int height) {
    return turnUntil([&] {
      const auto frame = player->picture()->softwareFrame();
      return frame && frame->width == width && frame->height == height;
    });
  };
  EXPECT_TRUE(isDrawn(160, 90));
  const std::tuple<int, int, int, int> sizes[] = {{320, 99, 320, 99}, {0, 99999, 1, 16384}};
  for (const auto& [width, height, drawnWidth, drawnHeight] : sizes) {
    player->picture()->viewInSoftware(&isDrawn, width, height);
    EXPECT_TRUE(isDrawn(drawnWidth, drawnHeight)) << width << "x" << height;
  }
  player->picture()->leaveSoftware(&isDrawn);
  EXPECT_TRUE(isDrawn(160, 90));
  const auto frame = player->picture()->softwareFrame();
  EXPECT_EQ(frame->stride, 640U);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(frame->pixels) % 64, 0U);
  int frames = 0;
  QObject::connect(&*player->picture(), &MpvPicture::frameReady, &app, [&] { ++frames; });
  player->toggle();
  EXPECT_TRUE(turnUntil([&] { return frames > 5; })) << "it moves again";
}

} // namespace
} // namespace vellum::test
