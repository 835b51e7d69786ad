// What the player screen shows and does.
#include "app/AppState.h"
#include "app/Playback.h"
#include "ui/player/PlayerModel.h"
#include "ui/player/StreamTexts.h"
#include "unit/ui/ModelTest.h"
#include <cmath>
#include <functional>

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
  model.chooseSpeed(3);
  EXPECT_EQ(said(model.speeds().join(u'|')), "0.5x|0.75x|1.0x|✓ 1.25x|1.5x|2.0x");
  playback.subtitles.reset({{text("A"), QUrl(text("file:///nowhere.a.srt"))},
                            {text("B"), QUrl(text("file:///nowhere.b.srt"))}});
  for (const auto& [index, marked] :
       {std::pair{2, "Off|A|✓ B"}, {3, "Off|A|✓ B"}, {1, "Off|✓ A|B"}, {0, "✓ Off|A|B"}}) {
    model.chooseSubtitle(index);
    EXPECT_EQ(said(model.subtitles().join(u'|')), marked) << index;
    EXPECT_EQ(model.subtitleIndex(), std::min(index, 2)); // there is no third
  }
}

TEST_F(PlayerModelTest, EndsInTheWayThatItsPlaceAsksFor) {
  // What is saved is too near to the last position to be saved by itself.
  using Way = std::function<void()>;
  for (const auto& [leave, saved, playsOn, isShown] :
       {std::tuple{Way([&] { model.goBack(); }), 0, true, false},
        {[&] { model.stream()->cancel(); }, 0, false, false},
        {[&] { model.stream()->close(); }, 3, false, false},
        {[&] { model.closeMini(); }, 3, false, true}}) {
    library.clear();
    play("http://127.0.0.1:1/film.mkv");
    playback.subtitles.add({text("A"), QUrl()});
    model.skip(13);
    model.skip(-10);
    library.updateProgress(text("id|name"), 0, 0);
    leave();
    EXPECT_EQ(library.entry(text("id|name"))->position, saved);
    EXPECT_EQ(playback.coordinator.nowPlaying().has_value(), playsOn);
    EXPECT_EQ(playback.subtitles.tracks().empty(), !playsOn);
    EXPECT_EQ(navigation.showPlayer(), isShown);
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
  stream.stage = StreamStage::Buffering;
  EXPECT_EQ(said(stageText(stream)), "Buffering 42%");
  EXPECT_EQ(said(miniPlayerText(stream, false, 61, 120)), "Buffering");
  stream.peers = 1;
  stream.down = 1'250'000.9;
  stream.up = NAN;
  EXPECT_EQ(said(numbersText(stream)), "1 peer · ↓ 1.3 MB/s · ↑ Zero KB/s");
  stream.choices = {{}};
  EXPECT_EQ(streamMiddle(stream), StreamMiddle::Choices);
  stream.failure = StreamFailure::other({});
  EXPECT_EQ(streamMiddle(stream), StreamMiddle::Failure);
  EXPECT_EQ(said(miniPlayerText(stream, false, 61, 120)), "1:01 / 2:00") << "not its place";
}

} // namespace
} // namespace vellum::ui
