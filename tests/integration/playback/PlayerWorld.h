// A player that plays for real, without sound device and window, and a film for it.
#pragma once
#include "base/Clock.h"
#include "playback/MpvPicture.h"
#include "playback/VideoPlayerManager.h"
#include "world/MainThread.h"
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;

struct PlayerWorld : MainThread, testing::Test {
  static constexpr double kFrame = 0.04; // seconds of the test film
  static constexpr double kLength = 3.0; // seconds, to which the sound adds less than 0.1

  PlayerWorld() {
    // A proxy is not for our own addresses: nobody listens there.
    qputenv("http_proxy", "http://127.0.0.1:1");
    qunsetenv("no_proxy");
    makePlayer();
    view();
  }

  void makePlayer() {
    player = std::make_unique<VideoPlayerManager>(main, AudioOutput::Silent);
    QObject::connect(player.get(), &VideoPlayerManager::currentTimeChanged, &app,
                     [this](double seconds) { times.push_back(seconds); });
    QObject::connect(player.get(), &VideoPlayerManager::finished, &app, [this] { ++ends; });
  }
  void view() { player->picture()->viewInSoftware(this, 160, 90); }

  static QUrl film() { return QUrl::fromLocalFile(QStringLiteral(TEST_FILM)); }
  static QByteArray filmBytes() {
    QFile file(film().toLocalFile());
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
  }
  QUrl fileWith(const QByteArray& content) {
    QFile file(folder.filePath(QStringLiteral("%1.mkv").arg(++files)));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    return QUrl::fromLocalFile(file.fileName());
  }

  bool isMoving() const {
    return player->isPlaying() && !player->isBuffering() && player->duration() > 0 &&
           !player->audioOptions().isEmpty();
  }
  void play(const QUrl& url, double startAt = 0) {
    player->load(url, startAt);
    ASSERT_TRUE(turnUntil([this] { return isMoving() && times.size() > 1; }))
        << player->error().toStdString();
  }
  // The position where the film stands after an order that makes it tell one.
  template <class Order>
  double standsAfter(Order order) {
    order();
    times.clear();
    EXPECT_TRUE(turnUntil([this] { return !times.empty(); }));
    return player->currentTime();
  }
  bool fails() {
    return turnUntil([this] { return !player->error().isNull(); });
  }
  static double secondsOf(const std::function<void()>& work) {
    const SystemClock clock;
    const TimePoint begin = clock.now();
    work();
    return secondsBetween(begin, clock.now());
  }

  QTemporaryDir folder;
  int files = 0;
  std::unique_ptr<VideoPlayerManager> player;
  std::vector<double> times; // as they were told
  int ends = 0;
};

} // namespace vellum::test
