#include "ui/torrents/TorrentSearchModel.h"
#include "support/ScriptedTransport.h"
#include "unit/playback/PlaybackWorld.h"

namespace vellum::ui {
namespace {

using test::PlaybackWorld;

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

ProviderConfig provider(const char* name, ProviderKind kind, const char* address) {
  ProviderConfig config;
  config.name = text(name);
  config.kind = kind;
  config.baseURL = text(address);
  return config;
}

struct TorrentSearchModelTest : PlaybackWorld, LinkOpener::Surroundings {
  QString torrentDir() override { return folder.path(); }
  void torrentStored() override {}
  bool openWithDesktop(const QString& link) override {
    events += text("external ") + link.left(6);
    return true;
  }
  static Flow<QByteArray> catalog(QUrl, std::chrono::milliseconds) {
    co_return R"({"response":{"docs":[{"identifier":"item","title":"Item","year":1957}]}})";
  }
  QString joined(const QVariantList& list, const char* field) const {
    QStringList texts;
    for (const QVariant& one : list) texts += one.toMap().value(text(field)).toString();
    return texts.join(u'|');
  }
  void search(const char* words) {
    model.setProperty("query", text(words));
    model.search();
    EXPECT_TRUE(turnUntil([&] { return !aggregator.isSearching(); }));
  }

  PreferenceStore memory;
  SettingsStore settings{memory};
  test::ScriptedTransport net;
  Navigation navigation;
  LinkOpener links{main, pool, FetchData(), navigation, *this};
  SearchAggregator aggregator{main, pool};
  ProviderRegistry registry{settings, memory, net.transport(), ArchiveOrgProvider(catalog)};
  TorrentSearchModel model{
      {aggregator, registry, *coordinator, links, navigation,
       [this](const QString& copied) { events += text("copy ") + copied.left(6); },
       [this](const QUrl& page) { events += text("page ") + page.host(); }}};
};

TEST_F(TorrentSearchModelTest, TellsHowASearchGoes) {
  settings.setProviders({});
  EXPECT_FALSE(model.hasProviders());
  EXPECT_EQ(model.emptyText(), text("Enter a search to query your enabled providers in parallel."));
  net.hosts[text("empty")] = test::reply("[]");
  registry.add(provider("Empty", ProviderKind::Apibay, "http://empty"));
  registry.add(provider("Gone", ProviderKind::Apibay, "http://gone"));
  EXPECT_TRUE(model.hasProviders());
  model.setProperty("query", text(" x "));
  model.search();
  EXPECT_EQ(model.emptyText(), text("Searching…"));
  EXPECT_EQ(joined(model.statuses(), "state"), text("pending|pending"));
  ASSERT_TRUE(turnUntil([&] { return !aggregator.isSearching(); }));
  EXPECT_EQ(model.emptyText(), text("No results."));
  EXPECT_EQ(joined(model.statuses(), "text"), text("Empty: 0|Gone: failed"));
  EXPECT_EQ(joined(model.banners(), "text"),
            text("Gone unreachable at gone. Check the address in Settings → Providers"));
  EXPECT_TRUE(model.banners()[0].toMap().value(text("offersSettings")).toBool());
  model.openSettings();
  EXPECT_EQ(navigation.section(), SidebarSection::Settings);
}

TEST_F(TorrentSearchModelTest, PlaysAndOffersWhatARowHas) {
  const QByteArray hash(40, 'A');
  net.hosts[text("yts")] = test::reply(
      R"({"data":{"movies":[{"title":"F","year":2000,"url":"https://page/","torrents":[
          {"hash":")" +
      hash + R"(","quality":"1080p","seeds":5,"url":"http://t/"},
          {"hash":")" +
      QByteArray(40, 'B') + R"(","quality":"720p"}]},
        {"title":"G","url":"file:///etc","torrents":[{"hash":")" +
      QByteArray(40, 'C') + R"("}]}]}})");
  settings.setProviders({provider("C", ProviderKind::ArchiveOrg, ""),
                         provider("Y", ProviderKind::Yts, "http://yts")});
  search("f");
  ASSERT_EQ(model.table()->rowCount(), 4);
  const QString key = QString::fromLatin1(hash).toLower();
  EXPECT_EQ(joined(model.variants(key), "text"), text("720p · seeds unknown|1080p · 5 seeds"));
  model.playVariant(key, QString(40, u'b'));
  EXPECT_EQ(stream().title, text("F (2000) 720p"));
  model.play(key);
  EXPECT_EQ(stream().title, text("F (2000) 1080p"));
  EXPECT_EQ(
      model.table()
          ->data(model.table()->index(model.table()->indexOf(key)), TorrentTable::PlayStateRole)
          .toString(),
      text("starting"));
  EXPECT_TRUE(model.variants(QString(40, u'c')).isEmpty());

  model.play(text("archive:item"));
  EXPECT_EQ(navigation.selectedItem()->id, text("item"));
  EXPECT_EQ(navigation.selectedItem()->year, text("1957"));
  EXPECT_EQ(stream().title, text("F (2000) 1080p")); // goes on

  EXPECT_EQ(joined(model.actions(text("archive:item")), "id"), text("details|page"));
  EXPECT_EQ(joined(model.actions(QString(40, u'c')), "id"),
            text("inspect|external|copyMagnet|copyHash"));
  EXPECT_EQ(joined(model.actions(key), "text"),
            text("Inspect Magnet|Open Magnet in Torrent App|Copy Magnet Link|Inspect .torrent File|"
                 "Open Source Page|Copy Info Hash"));
  takeEvents();
  for (const char* action : {"external", "copyMagnet", "copyHash", "page", "unknown"})
    model.act(key, text(action));
  model.act(text("unknown"), text("page"));
  EXPECT_EQ(takeEvents().join(u'|'), text("external magnet|copy magnet|copy aaaaaa|page page"));
  model.act(key, text("inspect"));
  EXPECT_EQ(navigation.inspector()->infoHash, key);
}

TEST_F(TorrentSearchModelTest, SortsAndFilters) {
  EXPECT_FALSE(model.sortAscending());
  model.sortBy(int(ResultColumn::Seeds));
  EXPECT_TRUE(model.sortAscending());
  model.sortBy(int(ResultColumn::Title));
  EXPECT_TRUE(model.sortAscending());
  model.sortBy(int(ResultColumn::Size));
  EXPECT_FALSE(model.sortAscending());
  model.sortBy(99);
  EXPECT_EQ(model.sortColumn(), int(ResultColumn::Size));
  model.showSource(text("A"), false);
  model.showSource(text("B"), false);
  model.showSource(text("A"), true);
  EXPECT_EQ(model.hiddenSources(), QStringList(text("B")));
}

} // namespace
} // namespace vellum::ui
