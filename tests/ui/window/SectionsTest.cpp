// Catalog, downloads, library and settings in the real window.
#include "ui/window/WindowTest.h"
#include <QAccessible>
#include <set>

namespace vellum::test {
namespace {

// Downloads come slowly enough to be stopped on the way.
struct SectionsTest : WindowTest {
  SectionsTest() : WindowTest({text("--rate"), text("2500000")}) {}

  void open(const char* section, const char* page) {
    see.click(text("section-") + text(section));
    ASSERT_TRUE(see.comes(text(page)));
    see.settle();
  }
  void openDemoFilm() {
    open("search", "searchPage");
    see.focus(text("searchField"));
    see.press(Qt::Key_A, Qt::ControlModifier);
    see.type("vellum");
    see.press(Qt::Key_Return);
    ASSERT_TRUE(see.comes(text("card0")));
    see.settle();
    see.click(text("card0"));
    ASSERT_TRUE(see.comes(text("saveButton0")));
    ASSERT_TRUE(opens("itemSheet"));
    see.settle();
  }
  using Kind = DownloadTask::State::Kind;
  Kind state() { return app.downloads.tasks().front().state.kind; }
  QStringList downloads() const {
    return QDir(app.settings.downloadsPath()).entryList(QDir::Files | QDir::Hidden);
  }
  // Rows stand under the heading of their own group, also when headings are used again.
  bool isHeading(const char* words) {
    bool found = false;
    everyItem(world.window().contentItem(), [&](QQuickItem* item) {
      found = found || (item->objectName() == text("groupHeading") &&
                        item->property("text").toString().startsWith(text(words)));
    });
    return found;
  }
  int row() { return see.property(text("libraryRows"), "index").toInt(); }
};

// Takes seconds: a film is played, saved no faster than a line brings it, and played again.
TEST_F(SectionsTest, AFilmOfTheCatalogIsPlayedSavedAndPlayedAgain) {
  openDemoFilm();
  see.click(text("playButton0"));
  ASSERT_TRUE(see.comes(text("playerScreen")));
  ASSERT_TRUE(until([&] { return player.currentTime() > 0.5; })) << player.error().toStdString();
  EXPECT_EQ(player.currentURL().scheme(), text("http"));
  world.state().stop();

  openDemoFilm();
  see.click(text("saveButton0"));
  ASSERT_TRUE(see.comes(text("downloadsPage")));
  ASSERT_TRUE(until([&] { return app.downloads.tasks().front().received > 300'000; }));
  see.settle();
  see.focus(text("pauseButton"));
  see.press(Qt::Key_Return);
  ASSERT_TRUE(until([&] { return state() == Kind::Paused; }));
  const qint64 received = app.downloads.tasks().front().received;
  EXPECT_EQ(downloads().filter(text(".mp4")).size(), 0) << "no part of a film has its name";
  see.settle();
  EXPECT_EQ(see.focused(), text("resumeButton")) << "one button does both";
  see.press(Qt::Key_Return);
  ASSERT_TRUE(until([&] { return state() == Kind::Finished; }));
  EXPECT_GT(app.downloads.tasks().front().received, received);
  EXPECT_EQ(downloads(), QStringList(text("Vellum.Test.Film.480p.mp4")));
  EXPECT_TRUE(see.text(text("state")).starts_with("Saved to ")) << see.text(text("state"));

  ASSERT_TRUE(see.comes(text("playButton")));
  see.settle();
  EXPECT_EQ(see.focused(), text("playButton")) << "in the place of the one that went";
  see.press(Qt::Key_Return);
  ASSERT_TRUE(see.comes(text("playerScreen")));
  EXPECT_TRUE(until([&] { return player.currentTime() > 0.2; }));
  EXPECT_TRUE(player.currentURL().isLocalFile());
  world.state().stop();
}

TEST_F(SectionsTest, ARefusedDownloadIsSaidAndLeavesSectionAndPageAsTheyWere) {
  app.settings.setDownloadsPath(world.torrentFile() + text("/below a file"));
  openDemoFilm();
  see.click(text("saveButton0"));
  ASSERT_TRUE(until([&] { return see.property(text("noticeAlert"), "opened").toBool(); }));
  EXPECT_TRUE(see.text(text("noticeAlert"), "message").starts_with("Cannot create downloads"));
  see.press(Qt::Key_Return);
  ASSERT_TRUE(until([&] { return !see.property(text("noticeAlert"), "visible").toBool(); }));
  EXPECT_TRUE(see.shows(text("searchPage")));
  EXPECT_TRUE(see.property(text("itemSheet"), "opened").toBool());
  EXPECT_TRUE(app.downloads.tasks().empty());
}

TEST_F(SectionsTest, AProviderIsAddedTestedSearchedAndRemoved) {
  open("settings", "settingsPage");
  const auto before = app.settings.providers().size();
  see.focus(text("addProviderButton"));
  see.press(Qt::Key_Return);
  ASSERT_TRUE(opens("addProviderSheet"));
  see.type("Mine");
  for (int i = 0; i < 2; ++i) see.press(Qt::Key_Tab); // past the kind
  EXPECT_FALSE(see.property(text("addButton"), "enabled").toBool());
  see.type(world.indexer("torznab").toUtf8().constData());
  see.press(Qt::Key_Tab);
  see.type("demo-key");
  see.press(Qt::Key_Return);
  ASSERT_TRUE(until([&] { return app.settings.providers().size() == before + 1; }));
  ASSERT_TRUE(until([&] { return !see.property(text("addProviderSheet"), "visible").toBool(); }));
  EXPECT_TRUE(until([&] { return see.focused() == text("addProviderButton"); })) << "as before";

  // The newest is the last row; of parts that every row has, its are the last ones.
  const auto press = [&](const char* part) {
    QQuickItem* last = nullptr;
    everyItem(world.window().contentItem(), [&](QQuickItem* item) {
      if (item->objectName() == text(part) && item->isVisible()) last = item;
    });
    ASSERT_NE(last, nullptr) << part;
    last->forceActiveFocus(Qt::TabFocusReason);
    see.press(Qt::Key_Return);
  };
  press("editButton");
  ASSERT_TRUE(see.comes(text("testButton")));
  press("testButton");
  ASSERT_TRUE(see.comes(text("result")));
  press("editButton");

  searchFor("demo");
  EXPECT_TRUE(app.aggregator.statuses().back().name == text("Mine"));
  EXPECT_EQ(app.aggregator.statuses().back().state, ProviderStatus::State::Ok);
  open("settings", "settingsPage");
  press("trashButton");
  ASSERT_TRUE(opens("removeProviderAlert"));
  for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Return}) see.press(key);
  EXPECT_TRUE(until([&] { return app.settings.providers().size() == before; }));
}

TEST_F(SectionsTest, TheLibraryIsWalkedByTheKeyboardAndKeepsItsPlace) {
  for (int i = 0; i < 100; ++i) {
    HistoryEntry entry;
    entry.key = entry.title = QString::number(i);
    app.library.record(entry);
    QFile film(app.settings.downloadsPath() + u'/' + entry.key + text(".mp4"));
    ASSERT_TRUE(QDir().mkpath(app.settings.downloadsPath()) && film.open(QIODevice::WriteOnly));
  }
  open("library", "libraryPage");
  ASSERT_TRUE(until([&] { return see.property(text("libraryList"), "count") == 200; }));
  ASSERT_TRUE(see.tabTo(text("libraryRows")));
  EXPECT_EQ(row(), 0);
  EXPECT_TRUE(isHeading("Saved"));
  for (int i = 0; i < 102; ++i) see.press(Qt::Key_Down);
  EXPECT_TRUE(isHeading("History"));
  see.press(Qt::Key_End);
  see.settle();
  QQuickItem& list = *see.item(text("libraryList"));
  EXPECT_TRUE(list.contains(list.mapFromScene(see.place(text("libraryRows"))))) << "in sight";
  for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Right, Qt::Key_Return, Qt::Key_Return})
    see.press(key); // removes that row, and the one that takes its place
  EXPECT_EQ(app.library.history().size(), 98U);
  EXPECT_FALSE(app.library.entry(text("0")) || app.library.entry(text("1")));
  EXPECT_TRUE(until([&] { return row() == 197; })) << row();
  see.press(Qt::Key_Backtab);
  EXPECT_EQ(see.focused(), text("pageAction"));
}

// Every section can be reached, and everything in it that can be pressed has a name and can be
// reached by Tab.
TEST_F(SectionsTest, EverythingHasANameAndIsReachedByTheKeyboard) {
  for (const char* page :
       {"home", "discover", "search", "torrents", "library", "downloads", "settings"}) {
    see.click(text("section-") + text(page));
    ASSERT_TRUE(
        until([&] { return !app.catalog.homeLoading() && !app.catalog.discoverLoading(); }));
    QTest::qWait(100);
    see.settle();
    std::set<QQuickItem*> reached;
    for (int i = 0; i < 120; ++i) {
      see.press(Qt::Key_Tab);
      if (!reached.insert(world.window().activeFocusItem()).second) break;
    }
    everyItem(world.window().contentItem(), [&](QQuickItem* item) {
      if (!item->isVisible() || !item->isEnabled() || !item->inherits("QQuickAbstractButton"))
        return;
      const std::string what = page + (' ' + item->objectName().toStdString());
      auto* accessible = QAccessible::queryAccessibleInterface(item);
      EXPECT_TRUE(accessible && !accessible->text(QAccessible::Name).isEmpty()) << what;
      if (item->activeFocusOnTab() && item->metaObject()->indexOfProperty("focusPolicy") >= 0 &&
          item->property("focusPolicy").toInt() & Qt::TabFocus)
        EXPECT_TRUE(reached.contains(item)) << what;
    });
  }
}

} // namespace
} // namespace vellum::test
