#include "ui/player/PlayerModel.h"
#include "app/AppState.h"
#include "world/MainThread.h"
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vellum::ui {

using namespace world;
namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

struct NoDesktop final : ExternalPlayers::Desktop {
  bool isExecutable(const QString&) const override { return false; }
  bool launch(const QString&, const QStringList&) override { return false; }
  void terminate() override {}
  QString findProgram(const QString&) const override { return {}; }
  bool openInVlc(const QUrl&) override { return false; }
};

// Nobody draws, so that whatever is loaded waits to be opened.
struct PlayerModelTest : testing::Test, world::MainThread {
  PlayerModelTest() {
    qputenv("VELLUM_HOME", folder.filePath(text("home")).toUtf8());
    runtime.emplace();
    state.emplace(*runtime, AppState::Options{});
    playback.emplace(*runtime, state->settings, state->engine, library, desktop,
                     AudioOutput::Silent);
    model.emplace(*playback, navigation);
  }
  ~PlayerModelTest() override {
    model.reset();
    qputenv("VELLUM_HOME", homeBefore);
  }

  void play(const char* address) {
    playback->coordinator.playUrl(QUrl(text(address)), text("id"), text("Film"), text("name"), {},
                                  {});
    navigation.setShowPlayer(true);
  }
  double saved() const { return library.entry(text("id|name"))->position; }

  const QByteArray homeBefore = qgetenv("VELLUM_HOME");
  QTemporaryDir folder;
  NoDesktop desktop;
  LibraryStore library{folder.filePath(text("history.json"))};
  Navigation navigation;
  std::optional<Runtime> runtime;
  std::optional<AppState> state;
  std::optional<Playback> playback;
  std::optional<PlayerModel> model;
};

TEST_F(PlayerModelTest, MarksWhatIsInUse) {
  const auto speeds = [this] { return model->speeds().join(u'|'); };
  EXPECT_EQ(speeds(), text("0.5x|0.75x|✓ 1.0x|1.25x|1.5x|2.0x"));
  for (const int index : {3, -1, 6}) model->chooseSpeed(index); // the last two are none
  EXPECT_EQ(speeds(), text("0.5x|0.75x|1.0x|✓ 1.25x|1.5x|2.0x"));
  playback->player.setRate(3);
  EXPECT_EQ(model->speedIndex(), -1);

  EXPECT_EQ(model->aspects().join(u'|'), text("Fit|Fill|Stretch"));
  model->chooseAspect(2);
  model->chooseAspect(3);
  EXPECT_EQ(playback->player.aspect(), VideoPlayerManager::AspectMode::Stretch);

  struct Choice {
    int index;
    const char* entries;
    int current;
  };
  playback->subtitles.reset({{text("English"), QUrl(text("file:///nowhere.en.srt"))},
                             {text("Deutsch"), QUrl(text("file:///nowhere.de.srt"))}});
  for (const auto& [index, entries, current] :
       {Choice{-1, "✓ Off|English|Deutsch", 0}, Choice{2, "Off|English|✓ Deutsch", 2},
        Choice{3, "Off|English|✓ Deutsch", 2}, Choice{1, "Off|✓ English|Deutsch", 1},
        Choice{0, "✓ Off|English|Deutsch", 0}}) {
    model->chooseSubtitle(index);
    EXPECT_EQ(model->subtitles().join(u'|'), text(entries)) << index;
    EXPECT_EQ(model->subtitleIndex(), current) << index;
  }
}

TEST_F(PlayerModelTest, IsHeardWhenItsVolumeIsRaised) {
  struct Step {
    double volume;
    bool isMuted;
    bool isSilent;
  };
  model->toggleMuted();
  for (const Step& step : {Step{0, true, true}, {0.5, false, false}, {0, false, true}}) {
    model->setVolume(step.volume);
    EXPECT_EQ(playback->player.isMuted(), step.isMuted) << step.volume;
    EXPECT_EQ(model->isSilent(), step.isSilent) << step.volume;
  }
}

TEST_F(PlayerModelTest, EndsInTheWayThatItsPlaceAsksFor) {
  struct Way {
    const char* name;
    std::function<void()> end;
    double saved; // of a position that is too near to the last one saved to be saved by itself
    bool playsOn;
    bool isShown;
  };
  for (const Way& way : {Way{"back", [this] { model->goBack(); }, 0, true, false},
                         Way{"cancel", [this] { model->stream()->cancel(); }, 0, false, false},
                         Way{"close", [this] { model->stream()->close(); }, 3, false, false},
                         Way{"mini player", [this] { model->closeMini(); }, 3, false, true}}) {
    library.clear();
    play("http://127.0.0.1:1/film.mkv");
    playback->subtitles.add({text("English"), QUrl()});
    model->skip(13);
    model->skip(-10);
    ASSERT_EQ(playback->player.currentTime(), 3);
    library.updateProgress(text("id|name"), 0, 0);
    way.end();
    EXPECT_EQ(saved(), way.saved) << way.name;
    EXPECT_EQ(playback->coordinator.nowPlaying().has_value(), way.playsOn) << way.name;
    EXPECT_EQ(playback->player.currentURL().isEmpty(), !way.playsOn) << way.name;
    EXPECT_EQ(playback->subtitles.tracks().empty(), !way.playsOn) << way.name;
    EXPECT_EQ(navigation.showPlayer(), way.isShown) << way.name;
  }
}

TEST_F(PlayerModelTest, TellsAnErrorUnlessAStreamDoes) {
  play("nothing:to-play");
  ASSERT_TRUE(turnUntil([&] { return !model->error().isEmpty(); }));
  model->retry();
  EXPECT_EQ(model->error(), QString());
  EXPECT_EQ(playback->player.currentURL(), QUrl(text("nothing:to-play")));
  ASSERT_TRUE(turnUntil([&] { return !model->error().isEmpty(); }));

  TorrentResult row;
  row.id = text("a row without a link");
  row.seeders = 1;
  playback->coordinator.playFromSearchResult(row);
  ASSERT_TRUE(turnUntil([&] { return model->stream()->middle() == text("failure"); }));
  EXPECT_EQ(model->error(), QString());
  playback->coordinator.endStream();
  EXPECT_NE(model->error(), QString());
  playback->player.stop();
  model->retry(); // what, nobody knows any more
  EXPECT_NE(model->error(), QString());
}

} // namespace
} // namespace vellum::ui
