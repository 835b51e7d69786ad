#include "desktop/LaunchArguments.h"
#include "desktop/MediaControls.h"
#include "desktop/StayAwake.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(LaunchArguments, KeepsWhatCanBeOpenedAndMakesPathsAbsolute) {
  const std::pair<const char*, const char*> cases[] = {
      {"magnet:?xt=urn:btih:00&dn=a%20b", "magnet:?xt=urn:btih:00&dn=a%20b"},
      {"/a/Film.TORRENT", "/a/Film.TORRENT"},
      {"Film: the sequel.torrent", "/work/Film: the sequel.torrent"},
      {"../x.torrent", "/x.torrent"},
      {"file:///a/b%20c.torrent", "/a/b c.torrent"},
      {"https://host/x.torrent?a=%20", "https://host/x.torrent?a=%20"},
      {"https://host/x.html", nullptr},
      {"MAGNET:?xt=urn:btih:00", nullptr},
      {"/a/Film.txt", nullptr},
      {"--play.torrent", nullptr},
      {"torrent", nullptr},
      {"", nullptr},
  };
  for (const auto& [argument, expected] : cases) {
    const QStringList links = openableLinks({QString::fromUtf8(argument)}, QStringLiteral("/work"));
    const QStringList wanted = expected ? QStringList{QString::fromUtf8(expected)} : QStringList();
    EXPECT_EQ(links, wanted) << argument;
  }
}

TEST(MediaControls, TellsAJumpFromPlaying) {
  const auto at = [](double position, const char* title = "Film") {
    MediaStatus status;
    status.isLoaded = true;
    status.title = QLatin1String(title);
    status.position = position;
    return status;
  };
  EXPECT_FALSE(isJump(at(10), at(10)));
  EXPECT_FALSE(isJump(at(10), at(12))); // half a second at four times the speed
  EXPECT_TRUE(isJump(at(10), at(12.1)));
  EXPECT_TRUE(isJump(at(10), at(9.9)));
  EXPECT_FALSE(isJump(at(10), at(0, "Another"))); // its beginning is no jump
  EXPECT_FALSE(isJump(MediaStatus(), at(600)));   // nor is a resumed one
}

TEST(StayAwake, HoldsWhilePlayingAndNotTwice) {
  struct Recorder final : platform::DisplaySleep {
    explicit Recorder(std::string& calls) : log(calls) {}
    void hold(const QString& reason) override { log += reason.isEmpty() ? "?" : "h"; }
    void release() override { log += "r"; }
    std::string& log;
  };
  std::string calls;
  StayAwake awake(std::make_unique<Recorder>(calls));
  for (const bool isPlaying : {false, true, true, false, false, true}) awake.setPlaying(isPlaying);
  EXPECT_EQ(calls, "hrh");
}

} // namespace
} // namespace vellum
