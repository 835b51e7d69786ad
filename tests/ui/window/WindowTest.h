// The fixture of the tests that drive the real window.
#pragma once
#include "tools/WindowWorld.h"
#include <QDir>
#include <gtest/gtest.h>

namespace vellum::test {

using namespace tools;

inline QString text(const char* utf8) { return QString::fromUtf8(utf8); }

// `options` are those of the demo world.
struct WindowTest : testing::Test {
  explicit WindowTest(const QStringList& options = {}) : world(options) {}
  void TearDown() override {
    EXPECT_TRUE(world.warnings().isEmpty()) << world.warnings().join(u'\n').toStdString();
  }

  template <class Condition>
  static bool until(Condition holds, int limit = 20'000) {
    return QTest::qWaitFor(holds, limit);
  }
  void searchFor(const char* words) {
    see.click(text("section-torrents"));
    ASSERT_TRUE(see.comes(text("searchField")));
    see.focus(text("searchField"));
    see.press(Qt::Key_A, Qt::ControlModifier);
    see.type(words);
    see.press(Qt::Key_Return);
    ASSERT_TRUE(until([&] { return !app.aggregator.isSearching() && rows() > 0; }));
    see.settle();
  }
  bool isOpen(const char* popup) { return see.property(text(popup), "opened").toBool(); }
  bool opens(const char* popup) {
    return until([&] { return isOpen(popup); });
  }
  int rows() { return see.property(text("resultList"), "count").toInt(); }
  // Plays the row with that title.
  void playRow(const char* title) {
    QQuickItem* target = nullptr;
    everyItem(world.window().contentItem(), [&](QQuickItem* item) {
      if (item->objectName() != text("playButton") || !item->isVisible()) return;
      for (auto* above = item->parentItem(); above; above = above->parentItem())
        if (above->property("title").toString().contains(text(title))) target = item;
    });
    ASSERT_NE(target, nullptr) << title;
    const QPointF middle(target->width() / 2, target->height() / 2);
    QTest::mouseClick(&world.window(), Qt::LeftButton, {}, target->mapToScene(middle).toPoint());
  }
  // Whether what that item shows changes by itself.
  bool moves(const char* name) {
    QQuickItem* picture = see.item(text(name));
    const QRect place = picture->mapRectToScene(picture->boundingRect()).toRect();
    const QImage before = see.settle().copy(place);
    return until([&] { return see.settle().copy(place) != before; }, 3000);
  }
  bool nothingIsLeft() {
    const QDir streams(app.cache.torrentDir() + text("/streams"));
    return until([&] { return app.engine.entries().empty() && streams.isEmpty(); });
  }

  WindowWorld world;
  Driver& see = world.drive();
  AppState& app = world.state().app;
  VideoPlayerManager& player = world.state().playback.player;
  PlaybackCoordinator& coordinator = world.state().playback.coordinator;
};

} // namespace vellum::test
