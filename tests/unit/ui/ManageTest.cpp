// Downloads, library and settings.
#include "app/AppState.h"
#include "ui/manage/DownloadsModel.h"
#include "ui/manage/LibraryModel.h"
#include "ui/manage/SettingsModel.h"
#include "unit/ui/ModelTest.h"
#include <QFile>
#include <QPointer>
#include <limits>

namespace vellum::ui {
namespace {

using namespace test;

struct DownloadsModelTest : ModelTest {
  QString run(char digit, const char* title) {
    const auto hash = hash20FromHex(QString(40, QLatin1Char(digit)));
    return state.engine.acquire(*hash, {}, text(title), nullptr)->key();
  }

  Runtime runtime;
  AppState state{runtime, AppState::Options{}};
  DownloadsModel model{{downloads, state.engine, *coordinator, entries, cache}};
  QAbstractItemModel& tasks = *model.tasks();
};

TEST_F(DownloadsModelTest, TellsHowEachDownloadStands) {
  for (const char* name : {"a\n\u202e", "b", "c", "d"})
    downloads.start(text(name), QUrl(text("http://h/%1.mp4").arg(QLatin1Char(*name))),
                    *name == 'a' ? std::nullopt : std::optional<qint64>(3'000'000));
  transfers.all[0]->now = {1'200'000, 0};
  transfers.all[1]->now = {1'500'000, 3'000'000};
  downloads.publishProgress();
  const QStringList keys = text(column(tasks, "key").c_str()).split(u'|');
  model.pause(keys[2]);
  transfers.all[2]->ended(TransferFailed{text("HTTP\n404")});
  std::error_code error;
  transfers.all[3]->ended(TransferFinished{PartFile::create(folder.path(), error)});
  ASSERT_TRUE(turnUntil([&] { return column(tasks, "phase").starts_with("finished|failed"); }));
  EXPECT_EQ(column(tasks, "phase"), "finished|failed|paused|downloading");
  EXPECT_EQ(column(tasks, "detail"), "Saved to " + said(folder.filePath(text("d.mp4"))) +
                                         "|Failed: HTTP 404|1.5 MB of 3 MB|1.2 MB of —");
  EXPECT_TRUE(column(tasks, "progress").ends_with("|0.5|-1")) << column(tasks, "progress");
  model.play(keys[1]); // not a finished one
  EXPECT_FALSE(coordinator->nowPlaying());
  model.play(keys[0]);
  EXPECT_EQ(said(coordinator->nowPlaying()->title), "d");
  model.resume(keys[2]);
  EXPECT_EQ(column(tasks, "phase"), "finished|failed|downloading|downloading");
  model.cancel(keys[2]);
  model.cancel(keys[0]);
  EXPECT_EQ(column(tasks, "title"), "c|a \uFFFD");
  EXPECT_TRUE(model.hasFinished()) << "what has failed can be cleared too";
  model.clearFinished();
  EXPECT_EQ(column(tasks, "title"), "a \uFFFD");
  EXPECT_FALSE(model.hasFinished());
}

TEST_F(DownloadsModelTest, StopsWhatPlaysOnlyWithItsOwnTorrent) {
  const QString seeding = run('b', "B\n"), streaming = run('a', "A");
  session->snap.meta = meta({{}});
  coordinator->playFromSearchResult(result("a", "A"), {}, true, true);
  ASSERT_TRUE(turnUntil([&] { return coordinator->activeSession() != nullptr; }));
  const QAbstractItemModel& torrents = *model.torrents();
  EXPECT_EQ(column(torrents, "name"), "A|B");
  EXPECT_EQ(column(torrents, "status"), "Streaming|Seeding");
  const std::string counts = "0 peers · ↓ Zero KB/s · ↑ Zero KB/s · uploaded Zero KB";
  EXPECT_EQ(column(torrents, "counts"), counts + '|' + counts);
  for (const QString& key : {text("unknown"), seeding}) model.stopTorrent(key);
  EXPECT_EQ(column(torrents, "name"), "A");
  EXPECT_TRUE(coordinator->stream());
  model.stopTorrent(streaming);
  EXPECT_FALSE(coordinator->stream() || coordinator->nowPlaying() || model.hasTorrents());
}

struct LibraryModelTest : ModelTest {
  LibraryModel model{library, downloads, entries};
  QAbstractItemModel& rows = *model.rows();
};

TEST_F(LibraryModelTest, ShowsPlaysAndForgetsWhatWasSavedAndWatched) {
  QFile film(folder.filePath(text("a#b 100%.mkv")));
  ASSERT_TRUE(film.open(QIODevice::WriteOnly) && film.resize(1'200'000));
  film.close();
  for (const auto& [name, position, duration] :
       {std::tuple{"new", 0, 0}, {"begun", 61, 3661}, {"over", 9000, 3600}}) // a file may say so
    library.record({text("id|%1").arg(text(name)),
                    text("id"),
                    text(name) + u'\n',
                    text("/films/%1").arg(text(name)),
                    true,
                    {},
                    double(position),
                    double(duration),
                    0});
  model.open();
  ASSERT_TRUE(turnUntil([&] { return model.hasSaved(); }));
  EXPECT_EQ(column(rows, "group"), "saved|history|history|history");
  EXPECT_EQ(column(rows, "title"), "a#b 100%.mkv|over|begun|new");
  EXPECT_EQ(column(rows, "detail"), "1.2 MB|2:30:00 / 1:00:00|1:01 / 1:01:01|0:00 / 0:00");
  EXPECT_EQ(column(rows, "resumes"), "false|true|true|false");
  EXPECT_TRUE(column(rows, "progress").starts_with("0|1|0.016")) << column(rows, "progress");

  model.playSaved(text("id|begun"));
  EXPECT_FALSE(coordinator->nowPlaying());
  model.playSaved(text(column(rows, "key").c_str()).section(u'|', 0, 0));
  EXPECT_EQ(said(coordinator->nowPlaying()->title), "a#b 100%");
  takeEvents();
  for (const char* key : {"unknown", "id|begun"}) model.resume(text(key));
  EXPECT_TRUE(takeEvents().contains(text("load begun 61")));
  model.remove(text("id|over"));
  EXPECT_EQ(column(rows, "title"), "a#b 100%.mkv|begun|a#b 100%|new");
  model.clearHistory();
  EXPECT_FALSE(model.hasHistory());
}

struct SettingsTest : ModelTest {
  SettingsTest() { settings.setProviders({catalog, indexer, other}); }
  ProviderRowModel& row(int index) { return *rows.at(index); }
  const ProviderConfig& stored(std::size_t index) const { return settings.providers().at(index); }
  std::string names() {
    QStringList list;
    for (int i = 0; i < rows.count(); ++i) list += row(i).name();
    return said(list.join(u' '));
  }

  const ProviderConfig catalog = provider("C", ProviderKind::ArchiveOrg, "https://fixed");
  const ProviderConfig indexer = provider("I", ProviderKind::Torznab, "https://i");
  const ProviderConfig other = provider("O", ProviderKind::Yts, "");
  SettingsModel model{
      {settings, registry, memory, net.transport(), clock, main, pool}, cache, library};
  ProviderRowsModel& rows = *model.providers();
};

TEST_F(SettingsTest, AProviderStoresWhatIsValidAndKeepsTheRestInItsEditor) {
  for (const auto& [base, mirrors, isValid, storedBase, storedMirrors, ignored] :
       {std::tuple{"", "", true, "", "", ""}, // an address can be cleared
        {" \thttps://x/ \n", "", true, "https://x/", "", ""},
        {"x", "https://a\nnot one", false, "https://i", "", "not one"},
        {"   ", "https://a", false, "https://i", "", ""},
        {"http://x", " https://a \r\n\r\n\t\rhttp://b\nftp://c\n", true, "http://x",
         "https://a|http://b", "ftp://c"}}) {
    SCOPED_TRACE(testing::Message() << base << " / " << mirrors);
    settings.update(indexer);
    row(1).edit();
    row(1).setBase(text(base));
    row(1).setMirrorsText(text(mirrors));
    EXPECT_EQ(row(1).isBaseValid(), isValid);
    row(1).done();
    EXPECT_FALSE(row(1).isExpanded());
    EXPECT_EQ(said(stored(1).baseURL), storedBase);
    EXPECT_EQ(said(stored(1).mirrors.join(u'|')), storedMirrors);
    EXPECT_EQ(said(row(1).invalidMirrors().join(u'|')), ignored);
    EXPECT_EQ(said(row(1).mirrorsText()), mirrors);
  }
  EXPECT_TRUE(row(1).isBasePlain()) << "it is warned of";

  row(0).edit(); // the catalog's own address is fixed
  row(0).setBase(text("https://elsewhere"));
  row(0).done();
  row(0).remove();
  EXPECT_EQ(stored(0), catalog);
  row(0).setEnabled(false);
  EXPECT_FALSE(stored(0).enabled);
}

TEST_F(SettingsTest, AProviderIsTestedAsItIsOnTheScreen) {
  net.hosts[text("good")] = reply("<rss><channel></channel></rss>");
  net.hosts[text("page")] = reply("<html>", 200, "text/html");
  row(1).setApiKey(text("key"));
  row(1).setBase(text("https://good"));
  row(1).setMirrorsText(text("https://page\nhttps://gone"));
  for (int round = 0; round < 2; ++round) {
    row(1).test();
    EXPECT_EQ(column(row(1).results(), "state"), "");
    ASSERT_TRUE(turnUntil([&] { return !row(1).isTesting(); }));
    EXPECT_EQ(column(row(1).results(), "state"), "ok|doubtful|failed");
    row(1).setBase(text("in valid")); // then it is tested as it is stored
  }
  const std::string detail = column(row(1).results(), "detail");
  EXPECT_TRUE(detail.starts_with("Reachable, API format OK · 0 ms|")) << detail;
  EXPECT_TRUE(net.asked[0].contains(text("apikey=key")));
}

TEST_F(SettingsTest, RowsOfProvidersKeepWhatIsTypedAndGoInTheirTime) {
  const QPointer<ProviderRowModel> first = &row(1), second = &row(2);
  second->edit();
  second->setBase(text("half typ"));
  first->edit();
  first->test();
  first->remove();
  EXPECT_EQ(names(), "C O");
  ASSERT_NE(first, nullptr) << "whoever pressed its button still looks at it";
  first->done();
  EXPECT_EQ(settings.providers().size(), 2U);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(first, nullptr);
  QCoreApplication::processEvents(); // the test's answer finds nobody

  auto twice = indexer;
  twice.name = text("T");
  settings.setProviders({other, indexer, twice, catalog}); // two with one id
  EXPECT_EQ(names(), "O I T C");
  EXPECT_EQ(&row(0), second);
  EXPECT_EQ(said(second->base()), "half typ");
  rows.startOver();
  EXPECT_EQ(said(row(0).base()), "");
  EXPECT_FALSE(row(0).isExpanded());
}

TEST_F(SettingsTest, NumbersStayWithinTheirLimitsWhateverIsStored) {
  struct Number {
    QVariantMap (SettingsModel::*shown)() const;
    void (SettingsModel::*set)(int);
    void (SettingsStore::*store)(qint64);
    qint64 (SettingsStore::*stored)() const;
    int from, to;
    const char *most, *none; // what stands there for 128 and for 0
  };
  using Store = SettingsStore;
  using Model = SettingsModel;
  constexpr qint64 most = std::numeric_limits<qint64>::max();
  for (const Number& n :
       {Number{&Model::cacheLimit, &Model::setCacheLimit, &Store::setCacheLimitMB,
               &Store::cacheLimitMB, 128, 51200, "Cache limit: 128 MB", "Cache limit: 0 MB"},
        Number{&Model::cacheAge, &Model::setCacheAge, &Store::setAutoCleanDays,
               &Store::autoCleanDays, 0, 90, "Auto-clean cache older than 128 days",
               "Auto-clean cache: never"},
        Number{&Model::uploadLimit, &Model::setUploadLimit, &Store::setUploadLimitKBps,
               &Store::uploadLimitKBps, 0, 20000, "Upload rate limit: 128 KB/s",
               "Upload rate limit: unlimited"}}) {
    const auto shown = [&](const char* what) { return (model.*n.shown)().value(text(what)); };
    for (const auto& [stored, value] : {std::pair{most, n.to}, {-most, n.from}, {n.to + 1, n.to}}) {
      (settings.*n.store)(stored);
      EXPECT_EQ(shown("value"), value) << n.most << stored;
      EXPECT_EQ((settings.*n.stored)(), stored) << "looking changes nothing";
    }
    for (const auto& [wanted, kept] : {std::pair{n.to + 1, n.to}, {n.from - 1, n.from}}) {
      (model.*n.set)(wanted);
      EXPECT_EQ((settings.*n.stored)(), kept);
    }
    for (const auto& [stored, label] : {std::pair{128, n.most}, {0, n.none}}) {
      (settings.*n.store)(stored);
      EXPECT_EQ(said(shown("label").toString()), label);
    }
  }
}

TEST_F(SettingsTest, FoldersAreOfThisMachineAndProvidersHaveANameAndAnAddress) {
  for (const char* address : {"http://host/folder", "", "relative"}) {
    model.setCacheFolder(QUrl(text(address)));
    model.setDownloadsFolder(QUrl(text(address)));
  }
  EXPECT_EQ(said(settings.cachePath()), said(folder.path()));
  EXPECT_EQ(said(settings.downloadsPath()), said(folder.path()));
  const QString chosen = folder.filePath(text("a b/c#d")), photos = folder.filePath(text("photos"));
  ASSERT_TRUE(QDir(photos).mkpath(text("of a friend")));
  for (const auto& [wanted, used] :
       {std::pair{chosen, chosen}, {photos, photos + text("/VellumApp Cache")}}) {
    model.setCacheFolder(QUrl::fromLocalFile(wanted));
    EXPECT_EQ(said(model.cacheFolder()), said(used));
    EXPECT_TRUE(QDir(used + text("/URLCache")).exists()) << "answers are kept there at once";
    model.setCacheFolder(QUrl::fromLocalFile(used));
    EXPECT_EQ(said(model.cacheFolder()), said(used)) << "it is the cache already";
  }

  settings.setProviders({});
  for (const auto& [name, kind, url, isAdded] : {std::tuple{"", "yts", "http://h", false},
                                                 {"n", "yts", "", false},
                                                 {"n", "yts", "ftp://h", false},
                                                 {"n", "unknown", "http://h/api", true},
                                                 {"m", "yts", "https://y", true}}) {
    AddProviderModel& sheet = *model.addition();
    sheet.reset();
    sheet.setProperty("name", text(name));
    sheet.setProperty("url", text(url));
    sheet.setKind(text(kind));
    EXPECT_EQ(sheet.add(), isAdded) << name << url;
  }
  ASSERT_EQ(names(), "n m");
  EXPECT_NE(stored(0).id, stored(1).id);
  EXPECT_EQ(stored(0).kind, ProviderKind::Torznab);
  EXPECT_EQ(stored(1).kind, ProviderKind::Yts);
}

} // namespace
} // namespace vellum::ui
