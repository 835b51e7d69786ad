// The torrent search: its table, and what a row offers.
#include "ui/torrents/TorrentSearchModel.h"
#include "unit/ui/ModelTest.h"

namespace vellum::ui {
namespace {

using namespace test;
using Column = ResultColumn;

// Known by the first letter of its title.
TorrentResult row(const char* title, std::optional<qint64> size = {},
                  std::optional<qint64> seeds = {}, const QStringList& sources = {text("A")}) {
  TorrentResult result;
  result.title = text(title);
  result.id = result.title.first(1);
  result.size = size;
  result.seeders = seeds;
  result.sources = sources;
  return result;
}

TEST(TorrentTable, ShowsWhatPassesAndGapsBelowEverythingReal) {
  TorrentTable table;
  const qint64 two = qint64{2} << 30;
  TorrentResults rows{row("b 1080p mkv", two, 0), row("A 720p mp4"),
                      row("c brrip", two + 1, 9, {text("B"), text("A")}),
                      row("B", 5, 9, {text("B")}), row("none 1080p", 5, 9, {})};
  rows[0].leechers = 3;
  table.setResults(rows);
  for (const auto& [filter, order, shown] :
       {std::tuple<ResultFilter, ResultOrder, const char*>{{}, {}, "c|B|b|A"},
        {{}, {Column::Seeds, true}, "A|b|c|B"},
        {{}, {Column::Title, true}, "A|B|b|c"},
        {{}, {Column::Size, false}, "c|b|B|A"},
        {{}, {Column::Peers, false}, "b|A|c|B"},
        {{}, {Column::Source, false}, "B|c|b|A"},
        {{text("1080p"), text("Any"), 0, {}}, {}, "b"},
        {{text("SD"), text("Any"), 0, {}}, {}, ""},
        {{text("Any"), text("mp4"), 0, {}}, {}, "A"},
        {{text("Any"), text("Any"), 2, {}}, {}, "B|b|A"},
        {{text("Any"), text("Any"), 0, {text("A")}}, {}, "c|B"},
        {{text("Any"), text("Any"), 0, {text("A"), text("B")}}, {}, ""}}) {
    table.setFilter(filter);
    table.setOrder(order);
    EXPECT_EQ(column(table, "key"), shown);
  }
  EXPECT_EQ(said(table.countText() + table.allSources().join(u'|')), "0 of 5 resultsA|B");
}

TEST(TorrentTable, LateResultsKeepTheViewWhereItIs) {
  TorrentTable table;
  std::string changes;
  QObject::connect(&table, &TorrentTable::modelReset, &table, [&] { changes += "reset "; });
  QObject::connect(&table, &TorrentTable::rowsInserted, &table, [&] { changes += "in "; });
  TorrentResult film = row("x 720p mkv", 1000, 5), other = row("y", {}, 9);
  film.baseTitle = other.baseTitle = text("film");
  table.setResults({film});
  EXPECT_EQ(column(table, "quality") + column(table, "hasVariants"), "720pfalse");
  film.title = text("x 1080p mp4"); // the same row tells more of itself
  film.sources.prepend(text("B"));
  film.infoHash = text("x");
  table.setResults({film, other});
  table.setRowStates({{text("y"), {RowState::Kind::Failed, text("why")}}});
  std::string told;
  for (const char* role : {"key", "quality", "format", "source", "size", "seeds", "peers",
                           "hasVariants", "playable", "playState", "failure"})
    told += column(table, role) + ' ';
  EXPECT_EQ(told, "y|x —|1080p —|mp4 A|A, B —|1 KB 9|5 —|— true|true false|true failed| why| ");
  film.archiveID = film.license = text("id");
  table.setResults({film});
  EXPECT_EQ(column(table, "note"), "Licensed: id");
  EXPECT_EQ(changes, "in in ");
}

TEST(TorrentTable, SelectsByKeyWhereverTheRowsGo) {
  using Table = TorrentTable;
  Table table;
  TorrentResults results{row("a", 1, 9), row("b", 1, 8), row("c", 1, 7), row("d", 1, 6)};
  table.setResults(results);
  for (const auto& [index, how, selected] :
       {std::tuple{-5, Table::PickOnly, "true|false|false|false"},
        {2, Table::PickExtend, "true|true|true|false"},
        {1, Table::PickExtend, "true|true|false|false"},
        {99, Table::PickToggle, "true|true|false|true"},
        {1, Table::PickToggle, "true|false|false|true"}}) {
    table.pick(index, how);
    EXPECT_EQ(column(table, "selected"), selected);
    EXPECT_EQ(table.currentRow(), std::clamp(index, 0, 3));
  }
  results.insert(results.begin(), row("z", 1, 99));
  table.setResults(results);
  EXPECT_EQ(said(table.currentKey()), "b");
  EXPECT_EQ(table.currentRow(), 2);
  EXPECT_EQ(column(table, "selected"), "false|true|false|false|true");
}

struct TorrentSearchTest : ModelTest {
  bool search(const char* words) {
    model.setProperty("query", text(words));
    model.search();
    EXPECT_EQ(said(model.emptyText()), "Searching…");
    return turnUntil([&] { return !aggregator.isSearching(); });
  }

  SearchAggregator aggregator{main, pool};
  TorrentSearchModel model{
      {aggregator, registry, *coordinator, links, navigation, note("copy"), note("page")}};
};

TEST_F(TorrentSearchTest, TellsHowASearchGoesAndSortsNumbersFromTheGreatest) {
  EXPECT_EQ(said(model.emptyText()), "Enter a search to query your enabled providers in parallel.");
  net.hosts[text("empty")] = reply("[]");
  registry.add(provider("Empty", ProviderKind::Apibay, "http://empty"));
  registry.add(provider("Gone", ProviderKind::Apibay, "http://gone"));
  ASSERT_TRUE(search(" x "));
  EXPECT_EQ(said(model.emptyText()), "No results.");
  EXPECT_EQ(column(model.statuses(), "text"), "Empty: 0|Gone: failed");
  EXPECT_EQ(column(model.banners(), "text"),
            "Gone unreachable at gone. Check the address in Settings → Providers");

  std::string ways; // names begin with the first, numbers with the greatest, as by seeds already
  for (const Column by : {Column::Seeds, Column::Title, Column::Size, Column::Size}) {
    model.sortBy(int(by));
    ways += model.sortAscending() ? "up " : "down ";
  }
  EXPECT_EQ(ways, "up up down up ");
}

TEST_F(TorrentSearchTest, PlaysAndOffersWhatARowHas) {
  const QString a(40, u'a'), b(40, u'b'), c(40, u'c'), item = text("archive:item");
  const QString answer = text(R"({"data":{"movies":[
      {"title":"F","year":2000,"url":"https://page/","torrents":[
        {"hash":"%1","quality":"1080p","seeds":5,"url":"http://t/"},{"hash":"%2","quality":"720p"}]},
      {"title":"G","url":"file:///etc","torrents":[{"hash":"%3"}]}]}})");
  net.hosts[text("yts")] = reply(answer.arg(a, b, c).toUtf8());
  settings.setProviders({provider("C", ProviderKind::ArchiveOrg, ""),
                         provider("Y", ProviderKind::Yts, "http://yts")});
  ASSERT_TRUE(search("f"));
  EXPECT_EQ(column(model.variants(a), "text"), "720p · seeds unknown|1080p · 5 seeds");
  EXPECT_EQ(column(model.variants(c), "text"), "");
  model.playVariant(a, b);
  EXPECT_EQ(said(stream().title), "F (2000) 720p");
  model.play(a);
  const auto playing = model.table()->index(model.table()->indexOf(a));
  EXPECT_EQ(said(playing.data(TorrentTable::PlayStateRole).toString()), "starting");
  model.play(item);
  EXPECT_EQ(said(navigation.selectedItem()->id + *navigation.selectedItem()->year), "item1957");
  EXPECT_EQ(said(stream().title), "F (2000) 1080p") << "it goes on";

  EXPECT_EQ(column(model.actions(item), "id"), "details|page");
  EXPECT_EQ(column(model.actions(c), "id"), "inspect|external|copyMagnet|copyHash");
  EXPECT_EQ(column(model.actions(a), "id"), "inspect|external|copyMagnet|torrent|page|copyHash");
  takeEvents();
  for (const char* action : {"external", "copyMagnet", "copyHash", "page", "unknown", "inspect"})
    model.act(a, text(action));
  const QString magnet = *model.table()->result(a)->magnet;
  EXPECT_EQ(told(), said(text("open %1|copy %1|copy %2|page https://page/").arg(magnet, a)));
  EXPECT_EQ(said(navigation.inspector()->infoHash), said(a));
}

} // namespace
} // namespace vellum::ui
