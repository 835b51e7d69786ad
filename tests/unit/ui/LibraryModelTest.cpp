#include "ui/manage/LibraryModel.h"
#include "unit/playback/PlaybackWorld.h"
#include "unit/ui/MadeTransfers.h"
#include <QFile>
#include <random>

namespace vellum::ui {
namespace {

using test::PlaybackWorld;

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

struct LibraryModelTest : PlaybackWorld {
  LibraryModelTest() {
    settings.setDownloadsPath(folder.path());
    model.emplace(library, downloads, entries);
  }
  void record(const char* key, double position, double duration) {
    HistoryEntry entry;
    entry.key = text(key);
    entry.title = entry.key + u'\n';
    entry.itemID = entry.key.section(u'|', 0, 0);
    entry.source = text("/films/") + entry.key.section(u'|', -1);
    entry.isLocal = true;
    entry.position = position;
    entry.duration = duration;
    library.record(entry);
  }
  QString column(const char* group, const char* name) {
    QStringList list;
    const auto* rows = model->rows();
    const auto field = [&](int row, const char* role) {
      return rows->data(rows->index(row), rows->roleNames().key(role)).toString();
    };
    for (int i = 0; i < rows->rowCount(); ++i)
      if (field(i, "group") == text(group)) list += field(i, name);
    return list.join(u'|');
  }

  PreferenceStore memory;
  SettingsStore settings{memory};
  test::MadeTransfers transfers;
  DownloadManager downloads{settings, main, pool, transfers};
  Navigation navigation;
  PlayEntryPoints entries{*coordinator, navigation};
  std::optional<LibraryModel> model;
};

TEST_F(LibraryModelTest, ShowsWhatWasWatched) {
  record("new", 0, 0);
  record("begun", 61, 3661);
  record("over", 9000, 3600); // a file may say anything
  EXPECT_EQ(column("history", "title"), text("over|begun|new"));
  EXPECT_EQ(column("history", "detail"), text("2:30:00 / 1:00:00|1:01 / 1:01:01|0:00 / 0:00"));
  EXPECT_EQ(column("history", "resumes"), text("true|true|false"));
  EXPECT_EQ(column("history", "progress").section(u'|', 0, 0), text("1"));

  QStringList changes;
  const auto note = [&](const char* what) {
    return [&changes, what](const QModelIndex&, int first, int last) {
      changes += text(what) + QString::number(first) + u'-' + QString::number(last);
    };
  };
  QObject::connect(model->rows(), &QAbstractItemModel::rowsInserted, note("+"));
  QObject::connect(model->rows(), &QAbstractItemModel::rowsRemoved, note("-"));
  QObject::connect(model->rows(), &QAbstractItemModel::rowsMoved, note("~"));
  QObject::connect(model->rows(), &QAbstractItemModel::dataChanged,
                   [&](const QModelIndex& from, const QModelIndex&) {
                     changes += text("=") + QString::number(from.row());
                   });
  library.updateProgress(text("begun"), 62, 0);
  EXPECT_EQ(changes.join(u' '), text("=1"));
  changes.clear();
  record("new", 5, 10); // to the front
  EXPECT_EQ(changes.join(u' '), text("~2-2 =0"));
  changes.clear();
  model->remove(text("over"));
  model->remove(text("unknown"));
  EXPECT_EQ(changes.join(u' '), text("-1-1"));
  EXPECT_EQ(column("history", "key"), text("new|begun"));
  EXPECT_FALSE(library.entry(text("over")));
  model->clearHistory();
  EXPECT_FALSE(model->hasHistory());
}

// A view that follows the signals shows what is there, whatever has changed.
TEST(KeyedRowsTest, AViewFollowsAnyChange) {
  using Rows = std::vector<LibraryRowItem>;
  KeyedRows<LibraryRowItem> model;
  QStringList seen;
  const auto title = [&](int row) { return model.rows().at(std::size_t(row)).title; };
  QObject::connect(&model, &QAbstractItemModel::rowsInserted,
                   [&](const QModelIndex&, int first, int last) {
                     for (int i = first; i <= last; ++i) seen.insert(i, title(i));
                   });
  QObject::connect(
      &model, &QAbstractItemModel::rowsRemoved,
      [&](const QModelIndex&, int first, int last) { seen.remove(first, last - first + 1); });
  QObject::connect(
      &model, &QAbstractItemModel::rowsMoved,
      [&](const QModelIndex&, int from, int, const QModelIndex&, int to) { seen.move(from, to); });
  QObject::connect(&model, &QAbstractItemModel::dataChanged,
                   [&](const QModelIndex& at) { seen[at.row()] = title(at.row()); });
  std::mt19937 random(7);
  for (int round = 0; round < 500; ++round) {
    Rows wanted(random() % 12);
    QStringList titles;
    for (LibraryRowItem& row : wanted) {
      row.id = QString::number(random() % 15); // some twice
      row.title = row.id + QString::number(random() % 2);
      titles += row.title;
    }
    model.setRows(wanted);
    ASSERT_EQ(model.rows(), wanted) << round;
    ASSERT_EQ(seen, titles) << round;
  }

  Rows many(5000);
  for (std::size_t i = 0; i < many.size(); ++i) many[i].id = QString::number(i + 100);
  int changes = 0;
  for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
    QObject::connect(&model, signal, [&] { ++changes; });
  model.setRows({});
  model.setRows(many);
  model.setRows(many);
  model.setRows({});
  EXPECT_LE(changes, 3); // each run of rows at once
}

TEST_F(LibraryModelTest, PlaysFilesAndResumesRows) {
  QFile film(folder.filePath(text("a#b 100%.mkv")));
  record("id|begun.mkv", 61, 3661);
  ASSERT_TRUE(film.open(QIODevice::WriteOnly) && film.resize(1'200'000));
  film.close();
  model->open();
  ASSERT_TRUE(turnUntil([&] { return model->hasSaved(); }));
  EXPECT_EQ(model->rows()->rowCount(), 2);
  EXPECT_EQ(model->rows()->data(model->rows()->index(0), Qt::UserRole).toString(),
            column("saved", "key"))
      << "what was saved stands first";
  EXPECT_EQ(column("saved", "title") + column("saved", "detail"), text("a#b 100%.mkv1.2 MB"));
  model->playSaved(text("unknown"));
  EXPECT_FALSE(coordinator->nowPlaying());
  model->playSaved(column("saved", "key"));
  EXPECT_EQ(coordinator->nowPlaying()->title, text("a#b 100%"));
  EXPECT_TRUE(navigation.showPlayer());

  takeEvents();
  model->resume(text("unknown"));
  model->resume(text("id|begun.mkv"));
  EXPECT_TRUE(takeEvents().contains(text("load begun.mkv 61")));
}

} // namespace
} // namespace vellum::ui
