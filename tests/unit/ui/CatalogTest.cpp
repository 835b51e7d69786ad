// The catalog screens: shelves, a collection, a search, the page of an item.
#include "ui/catalog/CatalogSearchModel.h"
#include "ui/catalog/DiscoverModel.h"
#include "ui/catalog/HomeModel.h"
#include "ui/catalog/ItemModel.h"
#include "unit/ui/ModelTest.h"

namespace vellum::ui {
namespace {

using namespace test;

struct CatalogTest : ModelTest {
  static MediaItem item(const QString& id) {
    MediaItem made;
    made.id = made.title = id;
    return made;
  }
  // What the catalog answers to a query of that order: ids, or "!" and a status.
  std::map<QString, const char*> answers;
  static Flow<MediaItems> search(QString answer) {
    if (answer.startsWith(u'!')) throw NetError::http(answer.sliced(1).toInt());
    MediaItems items;
    for (const QString& id : answer.split(u' ', Qt::SkipEmptyParts)) items.push_back(item(id));
    co_return items;
  }
  ArchiveDetails record;
  static Flow<ArchiveDetails> details(CatalogTest& self, QString id) {
    if (id == u"slow") co_await sleepFor(std::chrono::hours(1));
    if (id == u"bad") throw NetError::http(503);
    co_return self.record;
  }
  void open(const MediaItem& opened) {
    navigation.setSelectedItem(opened);
    EXPECT_TRUE(turnUntil([&] { return !page.isLoading(); }));
  }
  void openFiles(const char* names, bool restricted = false) {
    record.files.clear();
    record.restricted = restricted;
    for (const QString& name : text(names).split(u' '))
      record.files.push_back({name, text("F"), 1500000, QUrl(text("http://h/") + name)});
    open(item(text("id")));
  }

  CatalogState catalog{
      main, pool, [this](const CatalogQuery& query) { return search(text(answers[query.sort])); }};
  HomeModel home{{catalog, library, entries, navigation, [] { return LocalVideos(); }}};
  ItemModel page{{main, pool, navigation, entries, links,
                  [this](const QString& id) { return details(*this, id); },
                  [this](const ArchiveFile& file, const MediaItem& of) {
                    note("save")(file.name + text(" of ") + of.id);
                  },
                  note("page")}};
};

TEST_F(CatalogTest, HomeShowsWhatThereIs) {
  for (const auto& [featured, popular, shown] :
       {std::tuple{"!503", "!404", "0 0 Couldn't reach Vidarium: HTTP 404"},
        {"", "", "0 0 empty"},
        {"!503", "p", "0 1 "},   // nobody need know
        {"f g", "!503", "2 1 "}, // loaded once is enough
        {"f", "!503", "2 1 "}}) {
    answers = {{text("downloads desc"), featured}, {text("week desc"), popular}};
    home.load();
    EXPECT_EQ(home.isLoading(), home.featured()->count() == 0);
    EXPECT_EQ(said(home.errorText()), "");
    ASSERT_TRUE(turnUntil([&] { return !catalog.homeLoading(); }));
    const auto counts = text("%1 %2 ").arg(home.featured()->count()).arg(home.popular()->count());
    EXPECT_EQ(said(counts + text(home.isEmpty() ? "empty" : "") + home.errorText()), shown);
  }
  home.featured()->open(1);
  EXPECT_EQ(said(navigation.selectedItem()->id), "g");
}

TEST_F(CatalogTest, HomeGoesOnWithWhatWasBegun) {
  for (const auto& [key, duration, poster] : {std::tuple{"item|endless", 0.0, "file:///etc/passwd"},
                                              {"item|half", 100.0, "https://127.0.0.1/poster"}})
    library.record({text(key), text("item"), text("A\n title"), text("http://127.0.0.1:1/half"),
                    false, text(poster), 50, duration, 0});
  const MediaList& begun = *home.continueWatching();
  EXPECT_EQ(column(begun, "title"), "A title|A title");
  EXPECT_EQ(column(begun, "subtitle"), "0:50 / 1:40|0:50");
  EXPECT_EQ(column(begun, "progress"), "0.5|-1");
  EXPECT_EQ(column(begun, "poster"), "https://127.0.0.1/poster|");
  begun.open(0);
  turn();
  EXPECT_EQ(told(), "load half 50");
}

TEST_F(CatalogTest, DiscoverKeepsItsCollectionAndSearchSaysWhyThereIsNothing) {
  DiscoverModel discover(catalog, settings, navigation);
  CatalogSearchModel found(catalog, settings, navigation);
  answers[text("downloads desc")] = "a b";
  discover.appear();
  EXPECT_EQ(said(discover.current()), "feature_films");
  for (const char* choice : {"noir", "unknown"}) discover.choose(text(choice));
  discover.appear(); // keeps what was chosen
  EXPECT_EQ(said(discover.current()), "noir");
  ASSERT_TRUE(turnUntil([&] { return !discover.isLoading(); }));
  discover.results()->open(1);
  EXPECT_EQ(said(navigation.selectedItem()->id), "b");
  EXPECT_EQ(said(found.emptyText()), "Enter a search to browse the catalog.");
  found.setQuery(text("x"));
  for (const auto& [answer, words] :
       {std::pair{"a b", ""}, {"!503", "Search failed: HTTP 503"}, {"", "No results."}}) {
    answers[text("downloads desc")] = answer;
    found.search();
    EXPECT_EQ(said(found.emptyText() + found.errorText()), "") << "while it searches";
    ASSERT_TRUE(turnUntil([&] { return !found.isSearching(); }));
    EXPECT_EQ(said(found.emptyText() + found.errorText()), words);
  }
}

TEST_F(CatalogTest, AnItemSaysWhatItsFilesAreGoodFor) {
  const char* other = "Other video files (download only)";
  for (const auto& [names, restricted, warning, files, group, playable] :
       {std::tuple{"b.mkv c.MOV", false, "", "c.MOV|b.mkv", "Play", "true|false"},
        {"a.mp4 b.mkv", true, "This item", "a.mp4|b.mkv", "Play", "false|false"},
        {"b.mkv", false, "No Mac-co", "b.mkv", other, "false"},
        {"a.txt b.srt", false, "No video ", "", "", ""}}) {
    openFiles(names, restricted);
    EXPECT_EQ(said(page.warning().left(9)), warning);
    EXPECT_EQ(column(*page.files(), "name"), files);
    EXPECT_TRUE(column(*page.files(), "group").starts_with(group)) << names;
    EXPECT_EQ(column(*page.files(), "canPlay"), playable);
  }

  openFiles("b.mkv a.mp4 a.srt a.vtt");
  EXPECT_EQ(said(page.subtitlesText()), "2 subtitle file(s) will be available in the player.");
  for (const int row : {-1, 1, 2}) page.save(row);
  page.play(1); // may not
  EXPECT_EQ(told(), "save b.mkv of id");
  page.play(0);
  EXPECT_TRUE(takeEvents().contains(text("load a.mp4 0")));
  EXPECT_FALSE(page.isShown());
  EXPECT_EQ(said(page.title()), "id") << "still there to fade out";
}

TEST_F(CatalogTest, AnItemShowsWhatIsKnownAndNothingOfAnother) {
  navigation.setSelectedItem(item(text("slow")));
  EXPECT_TRUE(page.isLoading());
  open(item(text("bad"))); // the end of the first one comes late
  EXPECT_EQ(said(page.errorText()), "Couldn't load item files: HTTP 503");

  record.item = item(text("Other"));
  record.item.year = text("1927");
  record.item.summary = text("One\r\n\ttwo\u202e");
  record.item.creator = text("Lang");
  MediaItem known = item(text("id"));
  known.year = text("1926");
  open(known); // what is not known yet comes with the record
  EXPECT_EQ(said(page.errorText() + page.title() + u' ' + page.byline()), "id 1926 · Lang");
  EXPECT_EQ(said(page.summary()), "One\ntwo\uFFFD");

  const QString longOne = text("https://l/") + QString(400, u'a'); // shown short, opened whole
  for (const auto& [licence, opened] : {std::pair{longOne, text("page ") + longOne},
                                        {text("public domain"), QString()},
                                        {text("file:///etc/passwd"), QString()}}) {
    record.item.licenseURL = licence;
    open(known);
    EXPECT_EQ(page.licenceIsLink(), !opened.isEmpty());
    EXPECT_LE(page.licence().size(), 300);
    page.openLicence();
    EXPECT_EQ(told(), said(opened));
  }
  page.close();
  navigation.setSelectedItem(item(text("slow"))); // and nobody waits for it at the end
}

} // namespace
} // namespace vellum::ui
