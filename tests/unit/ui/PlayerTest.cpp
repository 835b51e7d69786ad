// What the player screen shows and does.
#include "app/AppState.h"
#include "app/Playback.h"
#include "ui/player/PlayerModel.h"
#include "ui/player/StreamTexts.h"
#include "unit/ui/ModelTest.h"
#include <cmath>

namespace vellum::ui {
namespace {

using namespace test;

// Nobody draws, so that whatever is loaded waits to be opened.
struct PlayerModelTest : ModelTest {
  void play(const char* address) {
    playback.coordinator.playUrl(QUrl(text(address)), text("id"), {}, text("name"), {}, {});
    navigation.setShowPlayer(true);
  }

  Runtime runtime;
  AppState state{runtime, AppState::Options{}};
  Playback playback{runtime, state.settings, state.engine, library, *this, AudioOutput::Silent};
  PlayerModel model{playback, navigation};
};

TEST_F(PlayerModelTest, MarksWhatIsInUse) {
  for (const int index : {3, -1, 6}) model.chooseSpeed(index); // the last two are none
  EXPECT_EQ(said(model.speeds().join(u'|')), "0.5x|0.75x|1.0x|✓ 1.25x|1.5x|2.0x");
  playback.player.setRate(3);
  EXPECT_EQ(model.speedIndex(), -1);
  for (const int index : {2, -1, 3}) model.chooseAspect(index);
  EXPECT_EQ(playback.player.aspect(), VideoPlayerManager::AspectMode::Stretch);

  playback.subtitles.reset({{text("A"), QUrl(text("file:///nowhere.a.srt"))},
                            {text("B"), QUrl(text("file:///nowhere.b.srt"))}});
  for (const auto& [index, marked, current] : {std::tuple{-1, "✓ Off|A|B", 0},
                                               {2, "Off|A|✓ B", 2},
                                               {3, "Off|A|✓ B", 2},
                                               {1, "Off|✓ A|B", 1},
                                               {0, "✓ Off|A|B", 0}}) {
    model.chooseSubtitle(index);
    EXPECT_EQ(said(model.subtitles().join(u'|')), marked) << index;
    EXPECT_EQ(model.subtitleIndex(), current) << index;
  }

  model.toggleMuted();
  for (const auto& [volume, isMuted, isSilent] :
       {std::tuple{0.0, true, true}, {0.5, false, false}, {0.0, false, true}}) {
    model.setVolume(volume); // what is raised is heard
    EXPECT_EQ(playback.player.isMuted(), isMuted) << volume;
    EXPECT_EQ(model.isSilent(), isSilent) << volume;
  }
}

TEST_F(PlayerModelTest, EndsInTheWayThatItsPlaceAsksFor) {
  struct Way {
    const char* name;
    std::function<void()> end;
    double saved; // of a position that is too near to the last one saved to be saved by itself
    bool playsOn, isShown;
  };
  for (const Way& way : {Way{"back", [this] { model.goBack(); }, 0, true, false},
                         Way{"cancel", [this] { model.stream()->cancel(); }, 0, false, false},
                         Way{"close", [this] { model.stream()->close(); }, 3, false, false},
                         Way{"mini player", [this] { model.closeMini(); }, 3, false, true}}) {
    SCOPED_TRACE(way.name);
    library.clear();
    play("http://127.0.0.1:1/film.mkv");
    playback.subtitles.add({text("A"), QUrl()});
    model.skip(13);
    model.skip(-10);
    library.updateProgress(text("id|name"), 0, 0);
    way.end();
    EXPECT_EQ(library.entry(text("id|name"))->position, way.saved);
    EXPECT_EQ(playback.coordinator.nowPlaying().has_value(), way.playsOn);
    EXPECT_EQ(playback.player.currentURL().isEmpty(), !way.playsOn);
    EXPECT_EQ(playback.subtitles.tracks().empty(), !way.playsOn);
    EXPECT_EQ(navigation.showPlayer(), way.isShown);
  }
}

TEST_F(PlayerModelTest, TellsAnErrorUnlessAStreamDoes) {
  const auto fails = [this] { return turnUntil([this] { return !model.error().isEmpty(); }); };
  play("nothing:to-play");
  ASSERT_TRUE(fails());
  model.retry();
  EXPECT_EQ(said(model.error()), "");
  EXPECT_EQ(playback.player.currentURL(), QUrl(text("nothing:to-play")));
  ASSERT_TRUE(fails());
  playback.coordinator.playFromSearchResult(TorrentResult(), {}, true, true); // has no link
  ASSERT_TRUE(turnUntil([&] { return model.stream()->middle() == text("failure"); }));
  EXPECT_EQ(said(model.error()), "");
  playback.coordinator.endStream();
  EXPECT_NE(said(model.error()), "");
}

TEST(StreamTexts, SayHowFarAStreamIs) {
  StreamState stream;
  stream.progress = 0.4299;
  for (const auto& [stage, overlay, mini] :
       {std::tuple{StreamStage::Connecting, "Connecting to peers…", "Connecting to peers…"},
        {StreamStage::Metadata, "Fetching metadata…", "Fetching metadata…"},
        {StreamStage::Selecting, "Selecting file…", "Selecting file…"},
        {StreamStage::Buffering, "Buffering 42%", "Buffering"},
        {StreamStage::Playing, "Playing", "1:01 / 2:00"}}) {
    stream.stage = stage;
    EXPECT_EQ(said(stageText(stream)), overlay);
    EXPECT_EQ(said(miniPlayerText(stream, false, 61, 120)), mini);
  }
  EXPECT_EQ(said(miniPlayerText({}, true, 61, 120)), "Buffering…");
  stream.peers = 1;
  stream.down = 1'250'000.9;
  stream.up = 999.9;
  stream.uploaded = 24'600'000;
  EXPECT_EQ(said(numbersText(stream)), "1 peer · ↓ 1.3 MB/s · ↑ 999 bytes/s");
  EXPECT_EQ(said(cornerText(stream)), "1 peers · ↓ 1.3 MB/s · ↑ 999 bytes/s · uploaded 24.6 MB");
  stream.peers = 0;
  stream.down = NAN;
  EXPECT_EQ(said(numbersText(stream)), "0 peers · ↓ Zero KB/s · ↑ 999 bytes/s");

  EXPECT_EQ(streamMiddle(stream), StreamMiddle::Nothing);
  stream.stage = StreamStage::Selecting;
  EXPECT_EQ(streamMiddle(stream), StreamMiddle::Progress);
  stream.choices = {{}};
  EXPECT_EQ(streamMiddle(stream), StreamMiddle::Choices);
  stream.failure = StreamFailure::other({});
  EXPECT_EQ(streamMiddle(stream), StreamMiddle::Failure);
  EXPECT_EQ(said(miniPlayerText(stream, false, 61, 120)), "1:01 / 2:00") << "not its place";
}

} // namespace
} // namespace vellum::ui
