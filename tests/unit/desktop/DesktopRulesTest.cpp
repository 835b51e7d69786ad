#include "desktop/LaunchArguments.h"
#include "desktop/MediaControls.h"
#include "desktop/StayAwake.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

using namespace Qt::StringLiterals;

TEST(LaunchArguments, KeepsWhatCanBeOpenedAndMakesPathsAbsolute) {
  const QString arguments =
      u"--play.torrent|magnet:?xt=urn:btih:00&dn=a%20b|/a/Film.TORRENT|Film: the sequel.torrent|"
      "../x.torrent|file:///a/b%20c.torrent|http://host/x.torrent|https://host/x.torrent?a=%20|"
      "ftp://host/x.torrent|https://host/x.html|MAGNET:?xt=urn:btih:00|/a/Film.txt|torrent|"_s;
  EXPECT_EQ(openableLinks(arguments.split(u'|'), u"/work"_s).join(u'|').toStdString(),
            "magnet:?xt=urn:btih:00&dn=a%20b|/a/Film.TORRENT|/work/Film: the sequel.torrent|"
            "/x.torrent|/a/b c.torrent|http://host/x.torrent|https://host/x.torrent?a=%20|"
            "/work/ftp:/host/x.torrent"); // the last is a path as any other
}

TEST(MediaControls, TellsAJumpFromPlaying) {
  const auto at = [](double position, const char* title = "Film", bool isLoaded = true) {
    return MediaStatus{isLoaded, true, QLatin1String(title), {}, position};
  };
  EXPECT_FALSE(isJump(at(10), at(10)));
  EXPECT_FALSE(isJump(at(10), at(12))); // half a second at four times the speed
  EXPECT_TRUE(isJump(at(10), at(12.1)));
  EXPECT_TRUE(isJump(at(10), at(9.9)));
  EXPECT_FALSE(isJump(at(10), at(0, "Another")));      // its beginning is no jump
  EXPECT_FALSE(isJump(at(0, "Film", false), at(600))); // nor is a resumed one
  EXPECT_FALSE(isJump(at(600), at(0, "Film", false))); // nor an end
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
