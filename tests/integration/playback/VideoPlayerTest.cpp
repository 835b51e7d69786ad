// The player over libmpv itself, without sound device and window.
#include "base/IoPool.h"
#include "playback/MpvPicture.h"
#include "playback/MpvSoftwarePainter.h"
#include "playback/VideoPlayerManager.h"
#include "streaming/LocalStreamServer.h"
#include "world/MainThread.h"
#include "world/MemorySource.h"
#include <QFile>
#include <QTcpServer>
#include <QTemporaryDir>
#include <asio/use_future.hpp>
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;
namespace {

QString text(const char* latin1) { return QString::fromLatin1(latin1); }

struct VideoPlayerTest : MainThread, testing::Test {
  static constexpr double kFrame = 0.04; // seconds of the test film
  static constexpr double kLength = 3.0; // seconds, to which the sound adds less than 0.1

  VideoPlayerTest() {
    // A proxy is not for our own addresses: nobody listens there.
    qputenv("http_proxy", "http://127.0.0.1:1");
    qunsetenv("no_proxy");
    player.emplace(main, AudioOutput::Silent);
    QObject::connect(&*player, &VideoPlayerManager::currentTimeChanged, &app,
                     [this](double seconds) { times.push_back(seconds); });
    QObject::connect(&*player, &VideoPlayerManager::finished, &app, [this] { ++ends; });
    player->picture()->viewInSoftware(this, 160, 90);
    player->setRate(3);
  }
  void play(const QUrl& url, double startAt = 0) {
    player->load(url, startAt);
    const auto isMoving = [this] {
      return !player->isBuffering() && !player->audioOptions().isEmpty() && times.size() > 1;
    };
    ASSERT_TRUE(turnUntil(isMoving)) << player->error().toStdString();
  }
  bool hasEnded() {
    return turnUntil([this] { return ends > 0; });
  }
  bool hasFailed() {
    return turnUntil([this] { return !player->error().isNull(); });
  }
  bool isWaiting() {
    return turnUntil([this] { return player->isPlaying() && player->isBuffering(); });
  }
  double standsAfterSeek(double to) {
    player->seek(to);
    times.clear();
    EXPECT_TRUE(turnUntil([this] { return !times.empty(); }));
    return player->currentTime();
  }

  const QUrl film = QUrl::fromLocalFile(QStringLiteral(TEST_FILM));
  std::optional<VideoPlayerManager> player;
  std::vector<double> times; // as they were told
  int ends = 0;
};

TEST_F(VideoPlayerTest, TellsHalfSecondsToTheEndWhereTheFilmStaysAndSeeksExactly) {
  const std::pair<double, double> starts[] = {{1.5, 1.5}, {NAN, 0}, {0, 0}};
  for (const auto& [startAt, first] : starts) {
    times.clear();
    play(film, startAt);
    EXPECT_GE(times[1], first - kFrame) << startAt;
    EXPECT_LT(times[1], first + 0.5) << startAt;
  }
  ASSERT_TRUE(hasEnded());
  ASSERT_GE(times.size(), 5U); // a busy machine shows fewer frames
  for (std::size_t i = 2; i + 1 < times.size(); ++i)
    EXPECT_GT(std::floor(times[i] * 2), std::floor(times[i - 1] * 2)) << i;
  EXPECT_NEAR(times.back(), player->duration(), 2 * kFrame);
  EXPECT_NEAR(player->duration(), kLength, 0.1);
  EXPECT_NEAR(player->bufferedTo(), kLength, 0.1);
  for (const double to : {1.48, 0.3, 2.04}) EXPECT_NEAR(standsAfterSeek(to), to, kFrame);
  ends = 0;
  player->toggle();
  EXPECT_TRUE(hasEnded()) << "again";
}

TEST_F(VideoPlayerTest, ChoosesAmongTheSoundTracksOfAnItem) {
  for (int round = 0; round < 2; ++round) { // the choice is one for this item
    play(film);
    const auto options = player->audioOptions();
    ASSERT_EQ(options.size(), 2);
    EXPECT_EQ(options[1], (AudioOption{2, text("French (Commentary)")}));
    EXPECT_EQ(player->selectedAudio(), options[0]);
    player->selectAudio({7, text("English")});
    EXPECT_EQ(player->selectedAudio(), options[0]) << "no track of it";
    int told = 0;
    const QObject here;
    QObject::connect(&*player, &VideoPlayerManager::audioChanged, &here, [&] { ++told; });
    player->selectAudio(options[1]);
    EXPECT_EQ(player->selectedAudio(), options[1]);
    EXPECT_TRUE(turnUntil([&] { return told == 2; })) << "the player confirms it";
    EXPECT_EQ(player->selectedAudio(), options[1]);
    player->load(film, 0);
    EXPECT_TRUE(player->audioOptions().isEmpty());
  }
}

TEST_F(VideoPlayerTest, TellsWhyAnItemFailsAndOpensNothingElse) {
  const QTemporaryDir folder;
  QTcpServer stranger;
  ASSERT_TRUE(stranger.listen(QHostAddress::LocalHost));
  const QByteArray elsewhere = "http://127.0.0.1:" + QByteArray::number(stranger.serverPort());
  const auto file = [&](const char* name) {
    return QUrl::fromLocalFile(folder.filePath(text(name)));
  };
  const auto fileWith = [&](const char* name, const QByteArray& content) {
    QFile written(file(name).toLocalFile());
    EXPECT_TRUE(written.open(QIODevice::WriteOnly) && written.write(content) >= 0);
    return file(name);
  };
  const QString unknown = text("Failed to recognize file format.");
  const std::pair<QUrl, QString> rows[] = {
      {file("missing"), text("No such file or directory")},
      {fileWith("1", "no film"), unknown},
      {fileWith("2", {}), unknown},
      {file("."), unknown},
      {QUrl(text("http://127.0.0.1:1/film.mkv")), text("Connection refused")},
      {fileWith("3", "#EXTM3U\n" + elsewhere + "/film.mkv\n"), unknown},
      {fileWith("4", "#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:9,\n" + elsewhere + "/1.ts\n"),
       text("Not opening")},
      {fileWith("5", "# mpv EDL v0\n" + elsewhere + "/film.mkv\n"), unknown},
      {fileWith("6", "ffconcat version 1.0\nfile " + elsewhere + "/film.mkv\n"), QString()}};
  for (const auto& [address, sentence] : rows) {
    player->load(address, 0);
    ASSERT_TRUE(hasFailed()) << address.toString().toStdString();
    EXPECT_TRUE(player->error().contains(sentence)) << player->error().toStdString();
  }
  EXPECT_FALSE(stranger.hasPendingConnections());
  player->load(rows[1].first, 0);
  play(film);
  EXPECT_TRUE(player->error().isNull()) << "that of the item before";
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
  const std::tuple<int, int, int, int> sizes[] = {
      {320, 90, 320, 90}, {320, 99, 320, 99}, {0, 99999, 1, 16384}};
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

// The film as a torrent of which nothing is there yet, behind the server.
struct StreamedFilmTest : VideoPlayerTest {
  StreamedFilmTest() {
    QFile file(film.toLocalFile());
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray read = file.readAll();
    const auto bytes = std::as_bytes(std::span(read.begin(), read.end()));
    half = read.size() / 2;
    source = std::make_shared<MemorySource>(
        pool.makeStrand(), ByteVector(bytes.begin(), bytes.end()),
        std::vector<TorrentFileEntry>{{text("film.mkv"), read.size()}});
    auto address = asio::co_spawn(pool.io(), server.url(source, 0, text("a")), asio::use_future);
    url = address.get().value_or(QUrl());
  }
  ~StreamedFilmTest() override { player.reset(); }

  IoPool pool;
  LocalStreamServer server{pool};
  std::shared_ptr<MemorySource> source;
  std::int64_t half = 0; // bytes of the film
  QUrl url;
};

// Takes 12 s: so long does libmpv try to connect anew.
TEST_F(StreamedFilmTest, WaitsForItsPiecesAndFailsWhenItBreaksOff) {
  player->load(url, 0);
  ASSERT_TRUE(source->waitForQuestions(3));
  EXPECT_TRUE(isWaiting());
  EXPECT_EQ(player->duration(), 0);
  source->arrive(0, half);
  ASSERT_TRUE(turnUntil([this] { return !player->isBuffering(); }));
  ASSERT_TRUE(isWaiting()) << "at the end of what is there";
  source->stop();
  ASSERT_TRUE(hasFailed());
  EXPECT_TRUE(player->error().contains(text("ends prematurely"))) << player->error().toStdString();
  EXPECT_GT(player->currentTime(), 0.5) << "where a retry goes on";
}

} // namespace
} // namespace vellum::test
