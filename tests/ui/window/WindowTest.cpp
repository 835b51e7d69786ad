// The real window, driven by mouse and keyboard through the demo world.
#include "ui/window/WindowTest.h"
#include "ui/controls/Look.h"
#include <QGuiApplication>
#include <QMimeData>

namespace vellum::test {
namespace {

// Takes seconds: a film plays, and its picture is watched for motion.
TEST_F(WindowTest, AFilmIsFoundPlayedLeftAndResumedWithTheMouse) {
  searchFor("demo");
  EXPECT_TRUE(see.shows(text("banner0"))) << "of the provider that is gone";
  playRow("480p");
  ASSERT_TRUE(see.comes(text("playerScreen")));
  ASSERT_TRUE(until([&] { return player.currentTime() > 0.5; })) << player.error().toStdString();
  EXPECT_TRUE(see.goes(text("streamProgress")));
  EXPECT_TRUE(moves("playerPicture"));
  EXPECT_TRUE(until([&] { return see.text(text("subtitleText")) == "A line to read"; }));

  see.click(text("playPauseButton"));
  ASSERT_TRUE(until([&] { return !player.isPlaying(); }));
  see.click(text("timeSlider"), 0.5);
  ASSERT_TRUE(until([&] { return std::abs(player.currentTime() - 20) < 2; }));
  see.click(text("playPauseButton"));
  see.click(text("backButton"));
  ASSERT_TRUE(see.comes(text("miniPlayer")));
  EXPECT_EQ(player.currentURL().scheme(), text("http")) << "it plays on";
  EXPECT_TRUE(moves("miniPicture"));
  see.click(text("closePlayerButton"));
  ASSERT_TRUE(see.goes(text("miniPlayer")));
  EXPECT_TRUE(nothingIsLeft());
}

// Takes seconds: a film plays.
TEST_F(WindowTest, TheKeyboardAloneLeadsToAPictureAndBack) {
  ASSERT_TRUE(see.tabTo(text("section-home")));
  for (int i = 0; i < 3; ++i) see.press(Qt::Key_Down);
  see.press(Qt::Key_Return);
  ASSERT_TRUE(see.comes(text("searchField")));
  ASSERT_TRUE(see.tabTo(text("searchField")));
  see.type("demo 480p");
  see.press(Qt::Key_Return);
  ASSERT_TRUE(until([&] { return !app.aggregator.isSearching() && rows() > 0; }));
  ASSERT_TRUE(see.tabTo(text("resultList")));
  see.press(Qt::Key_Home);
  see.press(Qt::Key_Return);
  ASSERT_TRUE(see.comes(text("playerScreen")));
  ASSERT_TRUE(until([&] { return player.currentTime() > 0.2; }));

  see.press(Qt::Key_Space);
  EXPECT_TRUE(until([&] { return !player.isPlaying(); }));
  see.press(Qt::Key_Right);
  EXPECT_TRUE(until([&] { return player.currentTime() > 10; }));
  see.press(Qt::Key_Left);
  EXPECT_TRUE(until([&] { return player.currentTime() < 5; }));
  see.press(Qt::Key_Down);
  see.press(Qt::Key_M);
  EXPECT_TRUE(player.isMuted());
  EXPECT_LT(player.volume(), 0.95F);
  see.press(Qt::Key_Up); // louder is no longer mute
  EXPECT_FALSE(player.isMuted());
  see.press(Qt::Key_F);
  EXPECT_TRUE(until([&] { return world.window().visibility() == QWindow::FullScreen; }));
  see.press(Qt::Key_F);
  see.press(Qt::Key_Escape);
  EXPECT_TRUE(see.comes(text("miniPlayer")));
  see.press(Qt::Key_P, Qt::ControlModifier);
  EXPECT_TRUE(until([&] { return player.isPlaying(); }));
  ASSERT_TRUE(see.tabTo(text("expandButton")));
  see.press(Qt::Key_Return);
  ASSERT_TRUE(see.comes(text("playerScreen")));
  see.press(Qt::Key_Period, Qt::ControlModifier);
  EXPECT_TRUE(see.goes(text("playerScreen")));
  EXPECT_FALSE(see.shows(text("miniPlayer")));
  EXPECT_TRUE(nothingIsLeft());
}

TEST_F(WindowTest, ATorrentThatNobodySeedsIsTriedOnlyWhenWanted) {
  searchFor("trailer");
  for (const bool tries : {false, true}) {
    playRow("Trailer");
    ASSERT_TRUE(opens("zeroSeedAlert"));
    see.press(tries ? Qt::Key_Return : Qt::Key_Escape);
    EXPECT_EQ(see.comes(text("playerScreen"), tries ? 5000 : 300), tries);
  }
  EXPECT_EQ(see.text(text("stageText")), "Connecting to peers…");
  see.click(text("cancelButton"));
  EXPECT_TRUE(see.goes(text("playerScreen")));
  EXPECT_FALSE(coordinator.stream() || coordinator.nowPlaying());
  EXPECT_TRUE(nothingIsLeft());
}

TEST_F(WindowTest, WhatIsDroppedComesIntoTheInspectorAndWhatIsNoneIsSaid) {
  QMimeData data;
  const auto drop = [&] {
    const QPoint at(300, 200);
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, {});
    QDropEvent dropped(at, Qt::CopyAction, &data, Qt::LeftButton, {});
    for (QEvent* event : {static_cast<QEvent*>(&enter), static_cast<QEvent*>(&dropped)})
      QCoreApplication::sendEvent(&world.window(), event);
  };
  data.setText(world.magnet());
  drop();
  ASSERT_TRUE(opens("inspector"));
  EXPECT_FALSE(see.shows(text("revealButton")));
  const QString file = world.home() + text("/a #1 100%.torrent");
  ASSERT_TRUE(QFile::copy(world.torrentFile(), file));
  data.setUrls({QUrl::fromLocalFile(file)});
  drop(); // takes the place of what was shown
  EXPECT_TRUE(see.comes(text("revealButton")));
  EXPECT_TRUE(see.text(text("countsLine")).find("2 file(s)") != std::string::npos);

  const QString broken = world.home() + text("/broken.torrent");
  ASSERT_TRUE(QFile(broken).open(QIODevice::WriteOnly));
  world.state().links.open(broken); // over the sheet, which stays
  ASSERT_TRUE(opens("noticeAlert"));
  EXPECT_EQ(see.text(text("noticeAlert"), "message"),
            "Couldn't read torrent: Not a valid .torrent file");
  see.press(Qt::Key_Escape);
  EXPECT_TRUE(until([&] { return !world.state().navigation.notice(); }));
  EXPECT_TRUE(isOpen("inspector"));
  see.press(Qt::Key_Escape);
  EXPECT_TRUE(until([&] { return !world.state().navigation.inspector(); }));
}

// Takes seconds: a film plays in two programs, one after the other.
TEST_F(WindowTest, WhatWasWatchedWhenTheProgramEndsIsResumedInTheNext) {
  searchFor("demo");
  playRow("480p");
  ASSERT_TRUE(until([&] { return player.duration() > 0; }));
  see.press(Qt::Key_Space);
  player.seek(20);
  ASSERT_TRUE(until([&] { return player.currentTime() > 19; }));
  world.restart();
  world.drive().click(text("section-library"));
  ASSERT_TRUE(world.drive().comes(text("resumeButton")));
  world.drive().settle();
  world.drive().click(text("resumeButton"));
  EXPECT_TRUE(until([&] { return world.state().playback.player.currentTime() > 19; }));
  EXPECT_TRUE(world.drive().shows(text("playerScreen")));
}

} // namespace
} // namespace vellum::test

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  QGuiApplication app(argc, argv);
  vellum::prepareLook(app);
  return RUN_ALL_TESTS();
}
