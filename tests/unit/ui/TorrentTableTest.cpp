#include "ui/torrents/TorrentTable.h"
#include <gtest/gtest.h>

namespace vellum::ui {
namespace {

constexpr qint64 kGigabyte = qint64{1} << 30;

TorrentResult row(const char* title, std::optional<qint64> size = {},
                  std::optional<qint64> seeds = {},
                  const QStringList& sources = {QStringLiteral("A")}) {
  TorrentResult result;
  result.title = QLatin1String(title);
  result.id = result.title;
  result.size = size;
  result.seeders = seeds;
  result.sources = sources;
  return result;
}
QString shown(const TorrentTable& table) {
  QStringList titles;
  for (int i = 0; i < table.rowCount(); ++i)
    titles += table.data(table.index(i), TorrentTable::TitleRole).toString();
  return titles.join(u'|');
}
QString text(const char* utf8) { return QString::fromUtf8(utf8); }

TEST(TorrentTable, FiltersByQualityFormatSizeAndSource) {
  TorrentTable table;
  table.setResults({row("a 1080p mkv", 2 * kGigabyte), row("b 720p mp4", 2 * kGigabyte + 1),
                    row("c brrip", {}, {}, {text("A"), text("B")}), row("d", 1, {}, {text("B")}),
                    row("e 1080p", {}, {}, {})});
  struct Case {
    ResultFilter filter;
    const char* shown;
  };
  for (const auto& [filter, expected] :
       {Case{{}, "a 1080p mkv|b 720p mp4|c brrip|d"},
        Case{{.resolution = text("1080p"), .hiddenSources = {}}, "a 1080p mkv"},
        Case{{.resolution = text("SD"), .hiddenSources = {}}, ""},
        Case{{.format = text("mp4"), .hiddenSources = {}}, "b 720p mp4"},
        Case{{.maxSizeGB = 2, .hiddenSources = {}}, "a 1080p mkv|c brrip|d"},
        Case{{.hiddenSources = {text("A")}}, "c brrip|d"},
        Case{{.hiddenSources = {text("A"), text("B")}}, ""}}) {
    table.setFilter(filter);
    EXPECT_EQ(shown(table), text(expected));
  }
  EXPECT_EQ(table.countText(), text("0 of 5 results"));
  EXPECT_EQ(table.allSources(), QStringList({text("A"), text("B")}));
}

TEST(TorrentTable, SortsWithGapsBelowEverythingReal) {
  TorrentTable table;
  table.setResults(
      {row("b", 5, 0), row("A", {}, {}), row("c", 7, 9, {text("B"), text("A")}), row("B", 5, 9)});
  struct Case {
    ResultOrder order;
    const char* shown;
  };
  using Column = ResultColumn;
  EXPECT_EQ(shown(table), text("c|B|b|A")); // the most seeded first
  for (const auto& [order, expected] :
       {Case{{Column::Seeds, true}, "A|b|c|B"}, Case{{Column::Title, true}, "A|b|B|c"},
        Case{{Column::Size, false}, "c|b|B|A"}, Case{{Column::Source, false}, "c|b|A|B"}}) {
    table.setOrder(order);
    EXPECT_EQ(shown(table), text(expected));
  }
}

TEST(TorrentTable, LateResultsKeepTheViewWhereItIs) {
  TorrentTable table;
  int resets = 0, inserted = 0, removed = 0;
  QObject::connect(&table, &TorrentTable::modelReset, &table, [&] { ++resets; });
  QObject::connect(&table, &TorrentTable::rowsInserted, &table, [&] { ++inserted; });
  QObject::connect(&table, &TorrentTable::rowsRemoved, &table, [&] { ++removed; });
  table.setResults({row("x", 1, 5)});
  table.setResults({row("x", 1, 5), row("y", 1, 9)});
  EXPECT_EQ(table.indexOf(text("x")), 1);
  table.setRowStates({{text("y"), {RowState::Kind::Failed, text("why")}}});
  const auto at = [&](int index, int role) {
    return table.data(table.index(index), role).toString();
  };
  EXPECT_EQ(at(0, TorrentTable::PlayStateRole) + at(0, TorrentTable::FailureRole),
            text("failedwhy"));
  EXPECT_EQ(at(1, TorrentTable::PlayStateRole), QString());
  table.setResults({});
  EXPECT_EQ(table.indexOf(text("x")), -1);
  EXPECT_FALSE(table.data(table.index(0), TorrentTable::TitleRole).isValid());
  EXPECT_EQ(inserted, 2);
  EXPECT_EQ(removed, 1);
  EXPECT_EQ(resets, 0);
}

TEST(TorrentTable, SelectsByKeyWhereverTheRowsGo) {
  TorrentTable table;
  table.pick(0, TorrentTable::PickOnly);
  EXPECT_EQ(table.currentRow(), -1);
  const TorrentResults results{row("a", 1, 9), row("b", 1, 8), row("c", 1, 7), row("d", 1, 6)};
  table.setResults(results);
  const auto selected = [&table] {
    QString keys;
    for (int i = 0; i < table.rowCount(); ++i)
      if (table.data(table.index(i), TorrentTable::SelectedRole).toBool())
        keys += table.data(table.index(i), TorrentTable::KeyRole).toString();
    return keys + u' ' + table.currentKey();
  };
  using Kind = TorrentTable::PickKind;
  struct Case {
    int index;
    Kind kind;
    const char* selected;
  };
  for (const auto& [index, kind, expected] :
       {Case{2, Kind::PickExtend, "c c"}, Case{-5, Kind::PickOnly, "a a"},
        Case{2, Kind::PickExtend, "abc c"}, Case{1, Kind::PickExtend, "ab b"},
        Case{3, Kind::PickToggle, "abd d"}, Case{1, Kind::PickToggle, "ad b"},
        Case{0, Kind::PickExtend, "ab a"}, Case{99, Kind::PickToggle, "abd d"}}) {
    table.pick(index, kind);
    EXPECT_EQ(selected(), text(expected));
  }
  TorrentResults late{row("z", 1, 99)};
  late.insert(late.end(), results.begin(), results.end());
  table.setResults(late);
  EXPECT_EQ(selected(), text("abd d"));
  EXPECT_EQ(table.currentRow(), 4);
  table.setFilter({.resolution = text("480p"), .hiddenSources = {}});
  EXPECT_EQ(table.currentRow(), -1);
  table.setFilter({});
  EXPECT_EQ(selected(), text("abd d"));
  table.pickAll();
  EXPECT_EQ(selected(), text("zabcd d"));
}

TEST(TorrentTable, ReadsTextsAgainWhenTheyChange) {
  TorrentTable table;
  TorrentResult film = row("film 720p mkv");
  film.baseTitle = text("film");
  TorrentResult other = row("film 480p");
  other.baseTitle = film.baseTitle;
  const auto told = [&](int role) { return table.data(table.index(0), role).toString(); };
  const auto all = [&] {
    return told(TorrentTable::QualityRole) + u' ' + told(TorrentTable::FormatRole) + u' ' +
           told(TorrentTable::SourceRole) + u' ' + told(TorrentTable::HasVariantsRole);
  };
  table.setResults({film});
  EXPECT_EQ(all(), text("720p mkv A false"));
  film.title = text("film 1080p mp4");
  film.sources.prepend(text("B"));
  table.setResults({film, other});
  EXPECT_EQ(all(), text("1080p mp4 A, B true"));
  film.title = text("film");
  film.archiveID = text("id");
  table.setResults({film});
  EXPECT_EQ(all(), text("— mp4 A, B false"));
}

TEST(TorrentTable, TellsWhatARowIs) {
  TorrentTable table;
  TorrentResult item = row("item");
  item.archiveID = text("id");
  TorrentResult licensed = item;
  licensed.id = text("2");
  licensed.license = text("L");
  TorrentResult torrent = row("t", 1000);
  torrent.infoHash = text("abc");
  table.setResults({item, licensed, torrent, row("nothing")});
  const auto at = [&](int index, int role) { return table.data(table.index(index), role); };
  EXPECT_EQ(at(0, TorrentTable::NoteRole).toString(),
            text("Vidarium catalog item · license not stated"));
  EXPECT_EQ(at(1, TorrentTable::NoteRole).toString(), text("Licensed: L"));
  EXPECT_EQ(at(2, TorrentTable::NoteRole).toString() + at(2, TorrentTable::KeyRole).toString() +
                at(2, TorrentTable::SizeRole).toString() +
                at(2, TorrentTable::SeedsRole).toString(),
            text("abc1 KB—"));
  EXPECT_TRUE(at(0, TorrentTable::PlayableRole).toBool() &&
              at(2, TorrentTable::PlayableRole).toBool());
  EXPECT_FALSE(at(3, TorrentTable::PlayableRole).toBool());
}

} // namespace
} // namespace vellum::ui
