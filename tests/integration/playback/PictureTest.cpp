#include "base/MainLoop.h"
#include "ui/video/VideoPicture.h"
#include "world/MainThread.h"
#include <QGuiApplication>
#include <QImage>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <QQuickView>
#include <gtest/gtest.h>

Q_IMPORT_QML_PLUGIN(Vellum_VideoPlugin)

namespace vellum::test {

using namespace world;

// A large picture and a small one in its corner, of which one is seen.
constexpr char kPage[] = R"(
  import QtQuick
  import Vellum.Video
  Rectangle {
    id: page
    width: 640; height: 360
    required property VideoPlayer player
    property bool isLarge: true
    color: "black"
    VideoPicture { player: page.player; anchors.fill: parent; visible: page.isLarge }
    VideoPicture { player: page.player; width: 160; height: 90; visible: !page.isLarge }
  })";

TEST(PictureTest, IsDrawnAndMovesBetweenItemsWithoutARestart) {
  // Without a display drawn by the processor; with OpenGL where the environment asks for that.
  if (qEnvironmentVariableIsSet("VELLUM_TEST_OPENGL")) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
  } else {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
  }
  int argc = 1;
  char name[] = "test";
  char* argv[] = {name, nullptr};
  const QGuiApplication app(argc, argv);
  MainLoop main;
  VideoPlayerManager player(main, AudioOutput::Silent);
  QQuickView window;
  window.engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
  QQmlComponent component(window.engine());
  component.setData(kPage, QUrl(QStringLiteral("memory.qml")));
  QObject* page = component.createWithInitialProperties(
      {{QStringLiteral("player"), QVariant::fromValue(&player)}});
  ASSERT_NE(page, nullptr) << component.errorString().toStdString();
  window.setContent(QUrl(), &component, page);
  window.show();
  // Of the next frame; the film is brighter than 30 of 255, what is around it black.
  const auto isBright = [&](const QRect& part) {
    const QImage shot = window.grabWindow().copy(part);
    const QImage average = shot.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return qGray(average.pixel(0, 0)) > 30;
  };
  const QRect corner(0, 0, 160, 90), middle(320, 180, 160, 90);

  player.load(QUrl::fromLocalFile(QStringLiteral(TEST_FILM)), 0);
  ASSERT_TRUE(MainThread::turnUntil([&] { return isBright(middle); }));
  ASSERT_TRUE(MainThread::turnUntil([&] { return !player.isBuffering(); }));
  int waits = 0;
  QObject::connect(&player, &VideoPlayerManager::isBufferingChanged, &app, [&] { ++waits; });
  for (const bool isPaused : {false, true}) {
    if (isPaused) player.toggle();
    for (const bool isLarge : {false, true}) {
      page->setProperty("isLarge", isLarge);
      EXPECT_TRUE(isBright(corner)) << "already in the first frame after the change";
      EXPECT_EQ(isBright(middle), isLarge);
    }
  }
  EXPECT_EQ(waits, 0);
}

} // namespace vellum::test
