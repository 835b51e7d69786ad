#include "base/MainLoop.h"
#include "playback/MpvPicture.h"
#include "ui/video/VideoPicture.h"
#include "world/MainThread.h"
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QImage>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <QQuickView>
#include <gtest/gtest.h>

Q_IMPORT_QML_PLUGIN(Vellum_VideoPlugin)

namespace vellum::test {

using namespace world;

using namespace std::chrono_literals;

constexpr char kPage[] = R"(
  import QtQuick
  import Vellum.Video
  Rectangle {
    id: page
    required property VideoPlayer player
    property bool isLarge: true
    property bool isThere: true
    color: "black"
    Loader { anchors.fill: parent; active: page.isThere; sourceComponent: picture; visible: page.isLarge }
    Loader { width: 160; height: 90; active: page.isThere; sourceComponent: picture; visible: !page.isLarge }
    Component { id: picture; VideoPicture { player: page.player } }
  })";

// Without a display drawn by the processor; with OpenGL where the environment asks for that.
struct Surroundings {
  Surroundings() {
    if (qEnvironmentVariableIsSet("VELLUM_TEST_OPENGL")) {
      QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
      return;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
  }
};

// A window with a large picture and a small one in its corner, of which one is seen.
struct PictureWorld : testing::Test {
  static constexpr QRect kCorner{0, 0, 160, 90};
  static constexpr QRect kMiddle{320, 180, 160, 90};
  static constexpr double kBright = 30; // of 255; the film is brighter, what is around it black

  PictureWorld() { openWindow(); }

  void openWindow() {
    window = std::make_unique<QQuickView>();
    window->engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
    window->setResizeMode(QQuickView::SizeRootObjectToView);
    window->resize(640, 360);
    QQmlComponent component(window->engine());
    component.setData(kPage, QUrl(QStringLiteral("memory.qml")));
    page = component.createWithInitialProperties(
        {{QStringLiteral("player"), QVariant::fromValue(player.get())}});
    ASSERT_NE(page, nullptr) << component.errorString().toStdString();
    window->setContent(QUrl(), &component, page);
    window->show();
  }

  void play() {
    player->load(QUrl::fromLocalFile(QStringLiteral(TEST_FILM)), 0);
    ASSERT_TRUE(MainThread::turnUntil([this] { return brightness(kMiddle) > kBright; }));
    ASSERT_TRUE(MainThread::turnUntil([this] { return !player->isBuffering(); }));
  }
  static void rest() {
    const QDeadlineTimer end(300ms);
    MainThread::turnUntil([&] { return end.hasExpired(); });
  }
  // The average of a part of the next frame, 0 to 255.
  double brightness(const QRect& part) const {
    const QImage shot = window->grabWindow().copy(part);
    return qGray(shot.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixel(0, 0));
  }

  Surroundings surroundings;
  int argc = 1;
  char name[5] = "test";
  char* argv[2] = {name, nullptr};
  QGuiApplication app{argc, argv};
  MainLoop main;
  std::unique_ptr<VideoPlayerManager> player =
      std::make_unique<VideoPlayerManager>(main, AudioOutput::Silent);
  std::unique_ptr<QQuickView> window;
  QObject* page = nullptr; // the window's
};

TEST_F(PictureWorld, MovesBetweenItemsWithoutARestartAndDrawsOnlyWhatIsNew) {
  play();
  int waits = 0;
  QObject::connect(player.get(), &VideoPlayerManager::isBufferingChanged, &app, [&] { ++waits; });
  for (const bool isPaused : {false, true}) {
    if (isPaused) player->toggle();
    for (const bool isLarge : {false, true}) {
      page->setProperty("isLarge", isLarge);
      // Already in the first frame after the change.
      EXPECT_GT(brightness(kCorner), kBright);
      EXPECT_EQ(brightness(kMiddle) > kBright, isLarge);
    }
  }
  EXPECT_EQ(waits, 0);
  std::atomic<int> frames = 0;
  QObject::connect(
      window.get(), &QQuickWindow::afterRendering, &app, [&] { ++frames; }, Qt::DirectConnection);
  player->toggle();
  EXPECT_TRUE(MainThread::turnUntil([&] { return frames > 5; }));
  player->toggle();
  rest();
  frames = 0;
  rest();
  EXPECT_EQ(frames, 0);
}

TEST_F(PictureWorld, OutlivesItemsAndWindows) {
  play();
  for (int i = 0; i < 4; ++i) {
    page->setProperty("isThere", i % 2 == 1);
    brightness(kMiddle);
  }
  EXPECT_GT(brightness(kMiddle), kBright);
  player->toggle();
  // Another window, after a while without any.
  window.reset();
  rest();
  openWindow();
  player->seek(1);
  EXPECT_TRUE(MainThread::turnUntil([this] { return brightness(kMiddle) > kBright; }, 5s));
  // And the player may go before its window.
  player.reset();
  brightness(kMiddle);
}

} // namespace vellum::test
