#include "ui/player/StreamTexts.h"
#include <cmath>
#include <gtest/gtest.h>

namespace vellum::ui {
namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

StreamState at(StreamStage stage) {
  return {.title = {}, .stage = stage, .notice = {}, .failure = {}, .choices = {}};
}

TEST(StreamTexts, SayEachStageInTheOverlayAndInTheMiniPlayer) {
  struct Case {
    StreamStage stage;
    const char* overlay;
    const char* mini;
  };
  for (const auto& [stage, overlay, mini] :
       {Case{StreamStage::Connecting, "Connecting to peers…", "Connecting to peers…"},
        Case{StreamStage::Metadata, "Fetching metadata…", "Fetching metadata…"},
        Case{StreamStage::Selecting, "Selecting file…", "Selecting file…"},
        Case{StreamStage::Buffering, "Buffering 42%", "Buffering"},
        Case{StreamStage::Playing, "Playing", "1:01 / 2:00"}}) {
    StreamState stream = at(stage);
    stream.progress = 0.4299;
    EXPECT_EQ(stageText(stream), text(overlay));
    EXPECT_EQ(miniPlayerText(stream, false, 61, 120), text(mini));
    stream.failure = StreamFailure::other({}); // belongs to the player screen
    EXPECT_EQ(miniPlayerText(stream, false, 61, 120), text("1:01 / 2:00"));
  }
  EXPECT_EQ(miniPlayerText({}, true, 61, 120), text("Buffering…"));
}

TEST(StreamTexts, CountPeersAndBytes) {
  StreamState stream = at(StreamStage::Playing);
  stream.peers = 1;
  stream.down = 1'250'000.9;
  stream.up = 999.9;
  stream.uploaded = 24'600'000;
  EXPECT_EQ(numbersText(stream), text("1 peer · ↓ 1.3 MB/s · ↑ 999 bytes/s"));
  EXPECT_EQ(cornerText(stream), text("1 peers · ↓ 1.3 MB/s · ↑ 999 bytes/s · uploaded 24.6 MB"));
  stream.peers = 0;
  stream.down = NAN;
  EXPECT_EQ(numbersText(stream), text("0 peers · ↓ Zero KB/s · ↑ 999 bytes/s"));
}

TEST(StreamTexts, TheMiddleShowsTheFirstThatApplies) {
  StreamState stream = at(StreamStage::Playing);
  EXPECT_EQ(streamMiddle(stream), StreamMiddle::Nothing);
  stream.stage = StreamStage::Selecting;
  EXPECT_EQ(streamMiddle(stream), StreamMiddle::Progress);
  stream.choices = {{}};
  EXPECT_EQ(streamMiddle(stream), StreamMiddle::Choices);
  EXPECT_FALSE(canRetry(stream));
  using Kind = StreamFailure::Kind;
  for (const Kind kind : {Kind::Other, Kind::Disk, Kind::NoMetadata, Kind::NoVideo, Kind::Stalled,
                          Kind::Unsupported}) {
    stream.failure = StreamFailure{kind, {}};
    EXPECT_EQ(streamMiddle(stream), StreamMiddle::Failure);
    EXPECT_EQ(canRetry(stream), kind != Kind::Disk && kind != Kind::NoVideo);
  }
}

} // namespace
} // namespace vellum::ui
