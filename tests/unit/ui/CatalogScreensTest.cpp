#include "ui/catalog/CatalogSearchModel.h"
#include "ui/catalog/DiscoverModel.h"
#include "ui/catalog/HomeModel.h"
#include "ui/catalog/ItemModel.h"
#include "unit/playback/PlaybackWorld.h"
#include <set>

namespace vellum::ui {
namespace {

using test::PlaybackWorld;

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

MediaItem item(const char* id) {
  MediaItem made;
  made.id = made.title = text(id);
  return made;
}

// "abc": rows with those keys.
MediaRows rows(const char* keys, const char* title) {
  MediaRows made;
  for (; *keys != 0; ++keys)
    made.push_back(
        {.key = QString(QLatin1Char(*keys)), .title = text(title), .subtitle = {}, .poster = {}});
  return made;
}

TEST(MediaListTest, TellsAViewExactlyWhatChanges) {
  for (const auto& [before, after] :
       std::initializer_list<std::pair<const char*, const char*>>{{"", "ab"},
                                                                  {"abc", ""},
                                                                  {"abc", "cab"},
                                                                  {"abcd", "dcba"},
                                                                  {"abc", "xaby"},
                                                                  {"abc", "xyz"},
                                                                  {"abcdef", "bxd"},
                                                                  {"aab", "baa"},
                                                                  {"aa", "a"},
                                                                  {"ab", "ab"}}) {
    SCOPED_TRACE(testing::Message() << before << " to " << after);
    MediaList list([](const QString&) {});
    list.setRows(rows(before, "old"));
    // What a view holds after it has followed the signals.
    QStringList seen;
    const auto copy = [&](int from, int to) {
      for (int i = from; i <= to; ++i)
        seen.insert(i, list.index(i).data(MediaList::KeyRole).toString());
    };
    copy(0, list.count() - 1);
    std::set<int> told;
    QObject::connect(&list, &MediaList::modelReset, [&] {
      seen.clear();
      copy(0, list.count() - 1);
      for (int i = 0; i < list.count(); ++i) told.insert(i);
    });
    QObject::connect(&list, &MediaList::rowsInserted, [&](auto&&, int from, int to) {
      copy(from, to);
      told.insert(from);
    });
    QObject::connect(&list, &MediaList::rowsRemoved,
                     [&](auto&&, int from, int to) { seen.remove(from, to - from + 1); });
    QObject::connect(&list, &MediaList::rowsMoved,
                     [&](auto&&, int from, int, auto&&, int to) { seen.move(from, to); });
    QObject::connect(&list, &MediaList::dataChanged,
                     [&](const QModelIndex& row) { told.insert(row.row()); });
    int counts = 0;
    QObject::connect(&list, &MediaList::countChanged, [&] { ++counts; });
    list.setRows(rows(after, "new"));
    EXPECT_EQ(seen.join(QString()), text(after));
    EXPECT_EQ(told.size(), strlen(after)); // all have another title
    EXPECT_EQ(counts, strlen(before) == strlen(after) ? 0 : 1);
  }
}

struct CatalogScreensTest : PlaybackWorld, LinkOpener::Surroundings {
  QString torrentDir() override { return folder.path(); }
  void torrentStored() override {}
  bool openWithDesktop(const QString&) override { return true; }

  // What the catalog answers to a query of that order: ids, or "!" and a failure.
  std::map<QString, QString> answers;
  static Flow<MediaItems> search(std::map<QString, QString>& answers, CatalogQuery query) {
    const QString answer = answers[query.sort];
    if (answer.startsWith(u'!')) throw NetError::http(answer.sliced(1).toInt());
    MediaItems items;
    for (const QString& id : answer.split(u' ', Qt::SkipEmptyParts))
      items.push_back(item(id.toUtf8().constData()));
    co_return items;
  }
  ArchiveDetails record;
  static Flow<ArchiveDetails> details(CatalogScreensTest& self, QString id) {
    if (id == u"slow") co_await sleepFor(std::chrono::hours(1));
    if (id == u"bad") throw NetError::http(503);
    co_return self.record;
  }
  void files(std::initializer_list<const char*> names) {
    record = {};
    for (const char* name : names)
      record.files.push_back(
          {text(name), text("F"), 1500000, QUrl(text("http://127.0.0.1:1/") + text(name))});
  }
  void open(const MediaItem& opened) {
    navigation.setSelectedItem(opened);
    EXPECT_TRUE(turnUntil([&] { return !page.isLoading(); }));
  }

  PreferenceStore memory;
  SettingsStore settings{memory};
  Navigation navigation;
  LinkOpener links{main, pool,
                   [this](QUrl url, std::chrono::milliseconds) {
                     main.post([this, url] { events += text("inspect ") + url.fileName(); });
                     return [](QByteArray none) -> Flow<QByteArray> { co_return none; }({});
                   },
                   navigation, *this};
  PlayEntryPoints entries{*coordinator, navigation};
  CatalogState catalog{main, pool,
                       [this](const CatalogQuery& query) { return search(answers, query); }};
  LocalVideos saved;
  HomeModel home{{catalog, library, entries, navigation, [this] { return saved; }}};
  ItemModel page{{main, pool, navigation, entries, links,
                  [this](const QString& id) { return details(*this, id); },
                  [this](const ArchiveFile& file, const MediaItem& of) {
                    events += text("save ") + file.name + text(" of ") + of.id;
                  },
                  [this](const QUrl& url) { events += text("page ") + url.toString(); }}};
};

TEST_F(CatalogScreensTest, HomeShowsWhatThereIs) {
  struct Case {
    const char* featured;
    const char* popular;
    const char* shown; // afterwards: shelves with their counts, then "empty" or the error
  };
  for (const Case& c : {
           Case{"!503", "!404", "0 0 Couldn't reach Vidarium: HTTP 404"},
           Case{"!503", "", "0 0 Couldn't reach Vidarium: HTTP 503"}, Case{"", "", "0 0 empty"},
           Case{"!503", "p", "0 1"},                             // nobody need know
           Case{"f g", "!503", "2 1"}, Case{"f", "!503", "2 1"}, // loaded once is enough
       }) {
    answers = {{text("downloads desc"), text(c.featured)}, {text("week desc"), text(c.popular)}};
    const bool asks = catalog.featured().empty() || catalog.popular().empty();
    const bool waits = catalog.featured().empty();
    home.load();
    EXPECT_EQ(home.isLoading(), asks && waits);
    EXPECT_EQ(home.errorText(), QString());
    ASSERT_TRUE(turnUntil([&] { return !catalog.homeLoading(); }));
    QStringList shown{QString::number(home.featured()->count()),
                      QString::number(home.popular()->count())};
    if (home.isEmpty()) shown += text("empty");
    if (!home.errorText().isEmpty()) shown += home.errorText();
    EXPECT_EQ(shown.join(u' '), text(c.shown)) << c.featured << " / " << c.popular;
  }
  home.popular()->open(1);
  home.popular()->open(-1);
  EXPECT_FALSE(navigation.selectedItem());
  home.featured()->open(1);
  EXPECT_EQ(navigation.selectedItem()->id, text("g"));
}

TEST_F(CatalogScreensTest, HomeGoesOnWithWhatWasBegun) {
  const auto put = [&](const char* key, double position, double duration, const char* thumbnail) {
    library.record({text(key) + u'|' + text(key), text(key), text("A\n title"),
                    text("http://127.0.0.1:1/") + text(key), false, text(thumbnail), position,
                    duration, 0});
  };
  put("new", 5, 100, "");
  put("seen", 96, 100, "file:///etc/passwd");
  put("endless", 90, 0, "javascript:1");
  put("half", 50, 100, "https://127.0.0.1/poster");
  QStringList shown;
  for (const MediaRow& row : home.continueWatching()->rows())
    shown += text("%1 %2 %3 %4 %5")
                 .arg(row.key, row.title, row.subtitle, QString::number(row.progress),
                      row.poster.toString());
  EXPECT_EQ(shown.join(u'|'), text("half|half A title 0:50 / 1:40 0.5 https://127.0.0.1/poster|"
                                   "endless|endless A title 1:30 -1 "));
  EXPECT_EQ(home.recentlyViewed()->count(), 4);
  EXPECT_EQ(home.recentlyViewed()->rows()[0].progress, -1);
  home.continueWatching()->open(0);
  turn();
  EXPECT_EQ(takeEvents().join(u'|'), text("load half 50"));

  EXPECT_EQ(home.local()->count(), 0);
  saved = {{text("Film.mp4"), folder.filePath(text("Film.mp4")), 1500000}};
  home.savedChanged();
  EXPECT_EQ(home.local()->rows()[0].subtitle, text("1.5 MB"));
  home.local()->open(0);
  EXPECT_TRUE(takeEvents().contains(text("load Film.mp4 0")));
}

TEST_F(CatalogScreensTest, DiscoverAndSearchShareOneViewMode) {
  DiscoverModel discover(catalog, settings, navigation);
  CatalogSearchModel found(catalog, settings, navigation);
  int modes = 0;
  QObject::connect(&found, &CatalogSearchModel::gridViewChanged, [&] { ++modes; });
  discover.setGridView(!settings.gridView());
  EXPECT_EQ(found.gridView(), settings.gridView());
  EXPECT_EQ(modes, 1);

  answers[text("downloads desc")] = text("a b");
  discover.appear();
  EXPECT_EQ(discover.current(), text("feature_films"));
  EXPECT_TRUE(discover.isLoading());
  ASSERT_TRUE(turnUntil([&] { return !discover.isLoading(); }));
  discover.choose(text("noir"));
  discover.choose(text("unknown"));
  discover.appear(); // keeps what was chosen
  EXPECT_EQ(discover.current(), text("noir"));
  ASSERT_TRUE(turnUntil([&] { return !discover.isLoading(); }));
  discover.results()->open(1);
  EXPECT_EQ(navigation.selectedItem()->id, text("b"));

  EXPECT_EQ(found.emptyText(), text("Enter a search to browse the catalog."));
  found.setQuery(text("x"));
  for (const auto& [answer, count, empty, error] :
       std::initializer_list<std::tuple<const char*, int, const char*, const char*>>{
           {"a b c", 3, "", ""},
           {"!503", 0, "", "Search failed: HTTP 503"},
           {"", 0, "No results.", ""}}) {
    answers[text("downloads desc")] = text(answer);
    found.search();
    EXPECT_EQ(found.emptyText() + found.errorText(), QString()); // while it searches
    ASSERT_TRUE(turnUntil([&] { return !found.isSearching(); }));
    EXPECT_EQ(found.results()->count(), count);
    EXPECT_EQ(found.emptyText(), text(empty));
    EXPECT_EQ(found.errorText(), text(error));
  }
}

TEST_F(CatalogScreensTest, AnItemSaysWhatItsFilesAreGoodFor) {
  struct Case {
    std::initializer_list<const char*> names;
    bool restricted;
    const char* warning; // its beginning
    const char* files;   // "+": has the button
  };
  const char* other = "Other video files (download only)";
  for (const Case& c : {
           Case{{"a.mp4", "b.mkv", "c.MOV"}, false, "", "Play:a.mp4+|Play:c.MOV+|%1:b.mkv"},
           Case{{"a.mp4", "b.mkv"}, true, "This item is access-restr", "Play:a.mp4|:b.mkv"},
           Case{{}, true, "This item is access-restr", ""},
           Case{{"a.mkv", "b.avi"}, false, "No Mac-compatible stream", "%1:a.mkv|%1:b.avi"},
           Case{{"a.txt", "b.srt"}, false, "No video files found in t", ""},
       }) {
    files(c.names);
    record.restricted = c.restricted;
    open(item("id"));
    EXPECT_EQ(page.warning().left(24), text(c.warning).left(24));
    QStringList shown;
    for (int i = 0; i < page.files()->count(); ++i) {
      const QModelIndex row = page.files()->index(i);
      shown += row.data(ItemFiles::GroupRole).toString() + u':' +
               row.data(ItemFiles::NameRole).toString() +
               (row.data(ItemFiles::CanPlayRole).toBool() ? text("+") : QString());
    }
    EXPECT_EQ(shown.join(u'|'), text(c.files).replace(text("%1"), text(other)));
    takeEvents();
    page.play(0);
    EXPECT_EQ(!takeEvents().isEmpty(), text(c.files).contains(u'+'));
  }
}

TEST_F(CatalogScreensTest, AnItemPlaysSavesAndInspects) {
  files({"b.mkv", "a.mp4", "a.srt", "a.vtt", "x.torrent"});
  open(item("id"));
  EXPECT_EQ(page.subtitlesText(), text("2 subtitle file(s) will be available in the player."));
  page.save(1);
  page.save(2);
  page.inspectTorrent();
  ASSERT_TRUE(turnUntil([&] { return events.size() == 2; }));
  EXPECT_EQ(takeEvents().join(u'|'), text("save b.mkv of id|inspect x.torrent"));
  page.play(1); // may not
  EXPECT_TRUE(page.isShown());
  page.play(0);
  EXPECT_TRUE(takeEvents().contains(text("load a.mp4 0")));
  EXPECT_EQ(subtitles.tracks().size(), 2U);
  EXPECT_EQ(library.history()[0].key, text("id|a.mp4"));
  EXPECT_FALSE(page.isShown());
  EXPECT_EQ(page.title(), text("id")); // still there to fade out
}

TEST_F(CatalogScreensTest, AnItemShowsWhatIsKnownAndNothingOfAnother) {
  navigation.setSelectedItem(item("slow"));
  EXPECT_TRUE(page.isLoading());
  open(item("bad")); // the end of the first one comes late
  EXPECT_EQ(page.errorText(), text("Couldn't load item files: HTTP 503"));
  EXPECT_EQ(page.title(), text("bad"));

  files({"a.mp4"});
  record.item = {.id = text("id"),
                 .title = text("Other"),
                 .year = text("1927"),
                 .summary = text("One\r\n\ttwo\u202e"),
                 .creator = text("Lang"),
                 .subjects = {},
                 .downloads = 0,
                 .licenseURL = text("http://l/")};
  navigation.setSelectedItem(item("slow"));
  MediaItem known = item("id");
  known.year = text("1926");
  open(known);
  EXPECT_EQ(page.errorText(), QString());
  EXPECT_EQ(page.title() + u' ' + page.byline(), text("id 1926 · Lang"));
  EXPECT_EQ(page.summary(), text("One\ntwo\uFFFD"));
  EXPECT_EQ(page.licence(), text("http://l/"));
  page.close();
  navigation.setSelectedItem(item("slow")); // and nobody waits for it at the end
}

TEST_F(CatalogScreensTest, OpensNothingButWebPages) {
  const QString longOne = text("https://l/") + QString(400, u'a');
  for (const auto& [licence, link] :
       std::initializer_list<std::pair<QString, bool>>{{text("https://l/by/4.0/"), true},
                                                       {longOne, true}, // shown short, opened whole
                                                       {text("public domain"), false},
                                                       {text("file:///etc/passwd"), false},
                                                       {text("javascript:alert(1)"), false},
                                                       {text("http:///nowhere"), false},
                                                       {text("vlc://l/"), false}}) {
    MediaItem licensed = item("id");
    licensed.licenseURL = licence;
    open(licensed);
    EXPECT_EQ(page.licenceIsLink(), link) << licence.toStdString();
    EXPECT_LE(page.licence().size(), 300);
    page.openLicence();
    EXPECT_EQ(takeEvents().join(u'|'), link ? text("page ") + licence : QString());
  }
}

} // namespace
} // namespace vellum::ui
