#include "desktop/LaunchArguments.h"
#include "desktop/MediaControls.h"
#include "desktop/StayAwake.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(LaunchArguments, KeepsWhatCanBeOpenedAndMakesPathsAbsolute) {
  const std::pair<const char*, const char*> cases[] = {
      {"--play.torrent", nullptr},
      {"magnet:?xt=urn:btih:00&dn=a%20b", "magnet:?xt=urn:btih:00&dn=a%20b"},
      {"/a/Film.TORRENT", "/a/Film.TORRENT"},
      {"Film: the sequel.torrent", "/work/Film: the sequel.torrent"},
      {"../x.torrent", "/x.torrent"},
      {"file:///a/b%20c.torrent", "/a/b c.torrent"},
      {"http://host/x.torrent", "http://host/x.torrent"},
      {"https://host/x.torrent?a=%20", "https://host/x.torrent?a=%20"},
      {"ftp://host/x.torrent", "/work/ftp:/host/x.torrent"}, // a path as any other
      {"https://host/x.html", nullptr},
      {"MAGNET:?xt=urn:btih:00", nullptr},
      {"/a/Film.txt", nullptr},
      {"torrent", nullptr},
      {"", nullptr},
  };
  QStringList arguments;
  QStringList expected;
  for (const auto& [argument, link] : cases) {
    arguments += QString::fromUtf8(argument);
    if (link != nullptr) expected += QString::fromUtf8(link);
  }
  EXPECT_EQ(openableLinks(arguments, QStringLiteral("/work")).join(u'\n').toStdString(),
            expected.join(u'\n').toStdString());
}

TEST(MediaControls, TellsAJumpFromPlaying) {
  const auto at = [](double position, const char* title = "Film", bool isLoaded = true) {
    MediaStatus status;
    status.isLoaded = isLoaded;
    status.title = QLatin1String(title);
    status.position = position;
    return status;
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
