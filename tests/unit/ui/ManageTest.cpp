// Downloads, library and settings.
#include "app/AppState.h"
#include "ui/manage/DownloadsModel.h"
#include "ui/manage/LibraryModel.h"
#include "ui/manage/SettingsModel.h"
#include "unit/ui/ModelTest.h"
#include <QFile>
#include <QPointer>

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
};

TEST_F(DownloadsModelTest, TellsHowEachDownloadStands) {
  const QUrl nobody(text("http://127.0.0.1:1/a.mp4"));
  downloads.start(text("a\n\u202e"), nobody, std::nullopt);
  downloads.start(text("b"), nobody, 3'000'000);
  const QAbstractItemModel& tasks = *model.tasks();
  EXPECT_EQ(column(tasks, "title"), "b|a \uFFFD");
  EXPECT_EQ(column(tasks, "phase"), "downloading|downloading");
  EXPECT_EQ(column(tasks, "detail"), "Zero KB of 3 MB|Zero KB of —");
  EXPECT_EQ(column(tasks, "progress"), "0|-1");
  ASSERT_TRUE(turnUntil([&] { return column(tasks, "phase") == "failed|failed"; }));
  EXPECT_TRUE(column(tasks, "detail").starts_with("Failed: ")) << column(tasks, "detail");
  EXPECT_TRUE(model.hasFinished()) << "what has failed can be cleared too";
  model.clearFinished();
  EXPECT_EQ(tasks.rowCount(), 0);
}

TEST_F(DownloadsModelTest, StopsWhatPlaysOnlyWithItsOwnTorrent) {
  const QString seeding = run('b', "B\n"), streaming = run('a', "A");
  session->snap.meta = meta({{}});
  coordinator->playFromSearchResult(result("a", "A"), {}, true, true);
  ASSERT_TRUE(turnUntil([&] { return coordinator->activeSession() != nullptr; }));
  const QAbstractItemModel& torrents = *model.torrents();
  EXPECT_EQ(column(torrents, "name"), "A|B");
  EXPECT_EQ(column(torrents, "status"), "Streaming|Seeding");
  EXPECT_TRUE(column(torrents, "counts")
                  .ends_with("|0 peers · ↓ Zero KB/s · ↑ Zero KB/s · uploaded Zero KB"));
  for (const QString& key : {text("unknown"), seeding}) model.stopTorrent(key);
  EXPECT_EQ(column(torrents, "name"), "A");
  EXPECT_TRUE(coordinator->stream());
  model.stopTorrent(streaming);
  EXPECT_FALSE(coordinator->stream() || coordinator->nowPlaying() || model.hasTorrents());
}

TEST_F(ModelTest, TheLibraryShowsAndPlaysWhatWasSavedAndWatched) {
  LibraryModel model(library, downloads, entries);
  const QAbstractItemModel& rows = *model.rows();
  QFile film(folder.filePath(text("a#b 100%.mkv")));
  ASSERT_TRUE(film.open(QIODevice::WriteOnly) && film.resize(1'200'000));
  film.close();
  for (const auto& [name, position, duration] :
       {std::tuple{"begun", 61., 3661.}, {"over", 9000., 3600.}}) // a file may say so
    library.record({text("id|") + text(name),
                    text("id"),
                    text(name) + u'\n',
                    text("/films/") + text(name),
                    true,
                    {},
                    position,
                    duration,
                    0});
  model.open();
  ASSERT_TRUE(turnUntil([&] { return model.hasSaved(); }));
  EXPECT_EQ(column(rows, "group"), "saved|history|history");
  EXPECT_EQ(column(rows, "title"), "a#b 100%.mkv|over|begun");
  EXPECT_EQ(column(rows, "detail"), "1.2 MB|2:30:00 / 1:00:00|1:01 / 1:01:01");
  EXPECT_TRUE(column(rows, "progress").starts_with("0|1|0.016")) << column(rows, "progress");
  model.playSaved(text(column(rows, "key").c_str()).section(u'|', 0, 0));
  EXPECT_EQ(said(coordinator->nowPlaying()->title), "a#b 100%");
  for (const char* key : {"unknown", "id|begun"}) model.resume(text(key));
  EXPECT_TRUE(takeEvents().contains(text("load begun 61")));
}

struct SettingsTest : ModelTest {
  SettingsTest() { settings.setProviders({catalog, indexer, other}); }
  ProviderRowModel& row(int index) { return *rows.at(index); }
  const ProviderConfig& stored(std::size_t index) const { return settings.providers().at(index); }

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
    settings.update(indexer);
    row(1).edit();
    row(1).setBase(text(base));
    row(1).setMirrorsText(text(mirrors));
    EXPECT_EQ(row(1).isBaseValid(), isValid) << base;
    row(1).done();
    EXPECT_EQ(said(stored(1).baseURL), storedBase) << base;
    EXPECT_EQ(said(stored(1).mirrors.join(u'|')), storedMirrors) << base;
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

TEST_F(SettingsTest, RowsOfProvidersKeepWhatIsTypedAndGoInTheirTime) {
  row(2).setBase(text("half typ"));
  const QPointer<ProviderRowModel> first = &row(1);
  first->test();
  first->remove();
  ASSERT_NE(first, nullptr) << "whoever pressed its button still looks at it";
  first->done();
  EXPECT_EQ(settings.providers().size(), 2U);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(first, nullptr);
  turn(); // the test's answer finds nobody

  settings.setProviders({other, catalog});
  EXPECT_EQ(said(row(0).base()), "half typ");
  rows.startOver();
  EXPECT_EQ(said(row(0).base()), "");
}

TEST_F(SettingsTest, NobodysOwnFolderBecomesTheCache) {
  const QString photos = folder.filePath(text("a b/c#d")),
                inside = photos + text("/VellumApp Cache");
  ASSERT_TRUE(QDir(photos).mkpath(text("of a friend")));
  for (const QString& wanted : {photos, inside}) { // it is so already
    model.setCacheFolder(QUrl::fromLocalFile(wanted));
    EXPECT_EQ(said(model.cacheFolder()), said(inside));
  }
  EXPECT_TRUE(QDir(inside + text("/URLCache")).exists()) << "answers are kept there at once";
}

} // namespace
} // namespace vellum::ui
