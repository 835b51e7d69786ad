// The player over a libmpv that the test plays: what it orders, and what it makes of what it hears.
#include "FakeMpv.h"
#include "Script.h"
#include "playback/MpvPicture.h"
#include "playback/VideoPlayerManager.h"
#include "world/MainThread.h"
#include <cmath>

namespace vellum::test {

using namespace world;
namespace {

const QUrl kFilm(text("http://h/film.mkv"));

struct PlayerTest : MainThread, testing::Test, Scripted {
  PlayerTest() {
    using Player = VideoPlayerManager;
    QObject::connect(&*player, &Player::currentTimeChanged, &app,
                     [this](double seconds) { told += text(" at %1").arg(seconds); });
    QObject::connect(&*player, &Player::finished, &app, [this] { told += text(" ends"); });
    QObject::connect(&*player, &Player::isBufferingChanged, &app,
                     [this] { told += text(player->isBuffering() ? " waits" : " goes on"); });
  }
  // What has been ordered since, then what was told, then how the player shows itself.
  std::string then() override {
    QCoreApplication::processEvents();
    QString shown = text(player->isPlaying() ? " playing " : " paused ");
    shown += text("%1/%2").arg(player->currentTime()).arg(player->duration());
    if (player->volume() != 1) shown += text(" at %1 %").arg(std::round(player->volume() * 100));
    if (player->isMuted()) shown += text(" muted");
    if (player->bufferedTo() > 0) shown += text(" of %1").arg(player->bufferedTo());
    if (!player->error().isNull()) shown += text(" failed: ") + player->error();
    return mpv.taken() + ";" + (std::exchange(told, {}) + u';' + shown).toStdString();
  }
  // A number below 0 stands for none.
  void step(const QString& word, double value) override {
    const std::optional<double> number = value < 0 ? std::nullopt : std::optional(value);
    if (word == u"play") play(value);
    if (word == u"load") player->load(kFilm, value);
    if (word == u"draw") player->picture()->beginOpenGl(this, nullptr);
    if (word == u"undraw") player->picture()->endOpenGl(this);
    if (word == u"toggle") player->toggle();
    if (word == u"seek") player->seek(value);
    if (word == u"stop") player->stop();
    if (word == u"volume") player->setVolume(float(value));
    if (word == u"adjust") player->adjustVolume(float(value));
    if (word == u"mute") player->setMuted(value != 0);
    if (word == u"rate") player->setRate(float(value));
    if (word == u"shape") player->setAspect(VideoPlayerManager::AspectMode(int(value)));
    if (word == u"clear") player->clearError();
    if (word == u"opened") mpv.answerCommand(mpv.asked.at("loadfile"), value < 0 ? -1 : 0);
    if (word == u"sought") mpv.answerCommand(mpv.asked.at("seek"), value < 0 ? -1 : 0);
    if (word == u"started")
      mpv.tell(MPV_EVENT_START_FILE, mpv_event_start_file{std::int64_t(value)});
    if (word == u"loaded") mpv.tell(MPV_EVENT_FILE_LOADED);
    if (word == u"restart") mpv.tell(MPV_EVENT_PLAYBACK_RESTART);
    if (word == u"stands") mpv.answer("time-pos", value);
    if (word == u"lasts") mpv.answer("duration", value);
    if (word == u"time") mpv.tellProperty("time-pos", number);
    if (word == u"cached") mpv.tellProperty("demuxer-cache-time", number);
    if (word == u"idle") mpv.tellProperty("core-idle", value);
    if (word == u"end") mpv.tellProperty("eof-reached", 1);
    if (word == u"failed") mpv.tellEnd(MPV_END_FILE_REASON_ERROR, std::int64_t(value));
    QCoreApplication::processEvents();
  }
  // An item that plays.
  void play(double startAt, double duration = 100) {
    script("draw");
    player->load(kFilm, startAt);
    script("opened, started 7, loaded");
    mpv.answer("duration", duration);
    script("restart, idle 0");
    mpv.answer("time-pos", startAt);
    then();
  }

  FakeMpv mpv;
  FakeMpv* const set = theMpv = &mpv;
  QString told;
  std::optional<VideoPlayerManager> player{std::in_place, main, AudioOutput::Silent};
};

TEST_F(PlayerTest, OpensAnItemWhenSomebodyDrawsAndShowsItAgainToTheNext) {
  script(R"(
    load 5                     -> ; at 0 waits; playing 0/0
    toggle                     -> pause=1; goes on; paused 0/0
    draw                       -> start=5.000|loadfile http://h/film.mkv replace|pause=1;; paused 0/0
    undraw, draw               -> free;; paused 0/0
    opened, started 7, loaded  -> ;; paused 0/0
    undraw, draw               -> free|vid=1;; paused 0/0
    load 1                     -> start=none|loadfile http://h/film.mkv replace|pause=0; at 0 waits; playing 0/0
    load 1.001                 -> start=1.001|loadfile http://h/film.mkv replace|pause=0; at 0; playing 0/0
    load inf                   -> start=none|loadfile http://h/film.mkv replace|pause=0; at 0; playing 0/0)");
}

TEST_F(PlayerTest, OpensFilesAndTheWebAndRefusesAllElse) {
  script("draw");
  const std::string refused = "stop; at 0 waits goes on; playing 0/0 failed: Playback failed";
  const std::pair<const char*, const char*> rows[] = {{"http://h/a b.mkv", "http://h/a%20b.mkv"},
                                                      {"https://h/x", "https://h/x"},
                                                      {"file:///tmp/a%20b.mkv", "/tmp/a b.mkv"},
                                                      {"http:///x", nullptr},
                                                      {"av://lavfi:testsrc", nullptr},
                                                      {"--script=/tmp/x.lua", nullptr},
                                                      {"file:relative.mkv", nullptr},
                                                      {"file:///tmp/a%00b", nullptr}};
  for (const auto& [url, address] : rows) {
    player->load(QUrl(text(url)), 0);
    EXPECT_EQ(player->currentURL(), QUrl(text(url))) << "for a retry too";
    EXPECT_EQ(then(), address == nullptr ? refused
                                         : "start=none|loadfile " + std::string(address) +
                                               " replace|pause=0; at 0 waits; playing 0/0");
    script("stop -> *");
  }
  player->load(QUrl(), 0);
  script("stop -> stop|pause=1|stop; at 0 waits goes on at 0; paused 0/0"); // too late to be told
}

TEST_F(PlayerTest, TellsWhetherItPlaysAndWaitsAndHowFarItIsBuffered) {
  script(R"(
    play 20.2              -> ;; playing 20.2/100
    idle 1                 -> ; waits; playing 20.2/100
    idle 1                 -> ;; playing 20.2/100
    toggle                 -> pause=1; goes on; paused 20.2/100
    stands 20.3            -> ; at 20.3; paused 20.3/100
    toggle                 -> pause=0; waits; playing 20.3/100
    idle 0                 -> ; goes on; playing 20.3/100
    cached 0.5, time 20.4  -> ;; playing 20.3/100
    time 20.5              -> ; at 20.5; playing 20.5/100 of 0.5
    cached 30, time 20.9   -> ;; playing 20.5/100 of 0.5
    time 21                -> ; at 21; playing 21/100 of 30
    cached -1, time 20.9   -> ; at 20.9; playing 20.9/100 of 30
    cached 31, time -1     -> ;; playing 20.9/100 of 30)");
  EXPECT_FALSE(mpv.asked.contains("time-pos")) << "only a pause asks where it stands";
  player->load(kFilm, 0);
  mpv.tellProperty("time-pos", 5);
  EXPECT_TRUE(then().ends_with("; at 0 waits; playing 0/0"));
}

TEST_F(PlayerTest, PassesOverTheTimesOfBeforeASeek) {
  script(R"(
    play 20, seek nan                     -> ;; playing 20/100
    seek 50.0004                          -> seek 50.000 absolute+exact; at 50.0004; playing 50.0004/100
    toggle, stands 20.5, sought, time 21  -> pause=1;; paused 50.0004/100
    restart, stands 50.04, time 51        -> ; at 50.04 at 51; paused 51/100
    seek 170                              -> seek 100.000 absolute+exact; at 100; paused 100/100
    seek -3                               -> seek 0.000 absolute+exact; at 0; paused 0/100
    time 51                               -> ;; paused 0/100
    sought -1, time 52                    -> ; at 52; paused 52/100)");
  play(0, 0.8);
  script("seek 5 -> seek 0.800 absolute+exact; at 0.8; playing 0.8/0.8");
  // Before it is ready, with nothing known that would hold it; not for the next item.
  script(R"(
    load 0, seek 99, load 0 -> *
    opened, started 7, loaded  -> ; goes on; playing 0/0
    stop                       -> pause=1|stop; at 0; paused 0/0
    load 0, seek 99            -> *
    opened, started 7, loaded  -> seek 99.000 absolute+exact; goes on at 99; playing 99/0)");
}

TEST_F(PlayerTest, AFilmEndsUnlessItsStreamBrokeOff) {
  // How long it is, where it ends, what libmpv says. Missing: 2 in 100 and 1 second are not.
  const std::tuple<double, double, const char*, const char*> rows[] = {
      {100, 98, "http: broke", "; at 98 ends; paused 98/100"},
      {100, 97.9, "https: broke", "stop; at 97.9; paused 97.9/100 failed: https: broke"},
      {10, 9, "http: broke", "; at 9 ends; paused 9/10"},
      {10, 8.9, "http: broke", "stop; at 8.9; paused 8.9/10 failed: http: broke"},
      {10, 2, "ffmpeg: http", "; at 2 ends; paused 2/10"}};
  for (const auto& [duration, at, complaint, happens] : rows) {
    play(0, duration);
    mpv.complain(complaint);
    script("end, time 5");
    EXPECT_TRUE(then().starts_with("pause=1;; paused 0/"));
    mpv.answer("time-pos", at);
    EXPECT_EQ(then(), happens);
  }
  // There is nothing left to play; paused, it is not watched to its end; an end may come late.
  script(R"(
    toggle                          -> ;; paused 2/10
    seek 3, toggle, toggle, end     -> seek 3.000 absolute+exact|pause=0|pause=1; at 3; paused 3/10
    load 0, end                     -> *
    toggle, toggle                  -> pause=1|pause=0; goes on waits; playing 0/0)");
}

TEST_F(PlayerTest, TellsWhyAnItemFailed) {
  script("play 0, failed 6 -> ;; playing 0/100");
  mpv.tellEnd(MPV_END_FILE_REASON_STOP, FakeMpv::kEntry);
  mpv.tellEnd(MPV_END_FILE_REASON_ERROR, FakeMpv::kEntry);
  mpv.complain("the cause\n");
  mpv.complain("what it led to");
  script(R"(
    idle 1                -> ; waits goes on; playing 0/100 failed: the cause
    seek 5, clear         -> ; at 5; playing 5/100
    play 0, failed 7      -> ;; playing 0/100 failed: Playback failed
    load 0                -> *
    opened -1             -> ; goes on; playing 0/0 failed: Playback failed)");
}

TEST_F(PlayerTest, PassesOverWhatComesLateForAnItem) {
  script("draw, load 0");
  const std::uint64_t first = mpv.asked.at("loadfile");
  script("load 0");
  mpv.answerCommand(first);
  script("started 7, loaded, restart, opened, started 6, loaded -> *");
  EXPECT_FALSE(mpv.asked.contains("duration")) << "not ready";
  script(R"(
    started 7, loaded, lasts 9, time 3       -> ;; playing 0/9
    loaded, play 20, restart, stop           -> pause=1|stop; at 0; paused 0/0
    stands 20, failed 7                      -> ;; paused 0/0)");
  EXPECT_TRUE(player->currentURL().isEmpty());
}

TEST_F(PlayerTest, SoundRateAndShapeReachThePlayer) {
  script(R"(
    mute 0, adjust 0.1            -> mute=0|volume=100|mute=0;; paused 0/0
    volume 0.05, mute             -> volume=5|mute=1;; paused 0/0 at 5 % muted
    adjust -0.1                   -> volume=0;; paused 0/0 at 0 % muted
    adjust 0.25                   -> volume=25|mute=0;; paused 0/0 at 25 %
    mute, volume 7, adjust -0.5   -> mute=1|volume=100|volume=50|mute=0;; paused 0/0 at 50 %
    volume nan, rate 1.5          -> volume=0|speed=1.5;; paused 0/0 at 0 %
    volume 1, shape 1             -> volume=100|keepaspect=1|panscan=1;; paused 0/0
    shape 2                       -> keepaspect=0|panscan=0;; paused 0/0
    shape 0                       -> keepaspect=1|panscan=0;; paused 0/0)");
  EXPECT_EQ(player->rate(), 1.5F);
}

TEST_F(PlayerTest, GoesQuietlyAndPassesNoProxyToOurselves) {
  play(0);
  mpv.tell(MPV_EVENT_PLAYBACK_RESTART);
  player.reset();
  QCoreApplication::processEvents(); // what was still to be told
  EXPECT_EQ(mpv.taken(), "stop|free|terminate");
  EXPECT_EQ(mpv.wakeUp, nullptr);
  qputenv("http_proxy", "http://h");
  qputenv("no_proxy", "x");
  const MpvHandle next(AudioOutput::Silent);
  EXPECT_EQ(qgetenv("no_proxy"), "x,127.0.0.1") << "our own streams need no proxy";
}

TEST_F(PlayerTest, WhoBeganToDrawDrawsUntilItEnds) {
  const char other = 0;
  MpvPicture& picture = *player->picture();
  picture.beginOpenGl(this, nullptr);
  picture.beginOpenGl(&other, nullptr);
  picture.viewInSoftware(this, 160, 90);
  EXPECT_TRUE(picture.isReady());
  picture.drawOpenGl(&other, 9, 9, 9);
  picture.endOpenGl(&other);
  picture.drawOpenGl(this, 3, 160, 90);
  picture.endOpenGl(this);
  picture.drawOpenGl(this, 3, 160, 90);
  EXPECT_FALSE(picture.isReady());
  EXPECT_EQ(mpv.taken(), "draw 3 160x90|free");
}

} // namespace
} // namespace vellum::test
