#include "ui/manage/LibraryModel.h"
#include "unit/playback/PlaybackWorld.h"
#include "unit/ui/MadeTransfers.h"
#include <QFile>

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
    entry.key = entry.title = text(key);
    entry.itemID = entry.key.section(u'|', 0, 0);
    entry.source = text("/films/") + entry.key.section(u'|', -1);
    entry.isLocal = true;
    entry.position = position;
    entry.duration = duration;
    library.record(entry);
  }
  static QString column(QAbstractListModel* rows, const char* name) {
    QStringList list;
    const int role = rows->roleNames().key(name);
    for (int i = 0; i < rows->rowCount(); ++i) list += rows->data(rows->index(i), role).toString();
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
  EXPECT_EQ(column(model->history(), "title"), text("over|begun|new"));
  EXPECT_EQ(column(model->history(), "times"),
            text("2:30:00 / 1:00:00|1:01 / 1:01:01|0:00 / 0:00"));
  EXPECT_EQ(column(model->history(), "resumes"), text("true|true|false"));
  EXPECT_EQ(column(model->history(), "progress").section(u'|', 0, 0), text("1"));

  QStringList changes;
  const auto note = [&](const char* what) {
    return [&changes, what](const QModelIndex&, int first, int last) {
      changes += text(what) + QString::number(first) + u'-' + QString::number(last);
    };
  };
  QObject::connect(model->history(), &QAbstractItemModel::rowsInserted, note("+"));
  QObject::connect(model->history(), &QAbstractItemModel::rowsRemoved, note("-"));
  QObject::connect(model->history(), &QAbstractItemModel::rowsMoved, note("~"));
  QObject::connect(model->history(), &QAbstractItemModel::dataChanged,
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
  EXPECT_EQ(column(model->history(), "key"), text("new|begun"));
  EXPECT_FALSE(library.entry(text("over")));
  model->clearHistory();
  EXPECT_FALSE(model->hasHistory());
}

TEST_F(LibraryModelTest, PlaysFilesAndResumesRows) {
  QFile film(folder.filePath(text("a#b 100%.mkv")));
  ASSERT_TRUE(film.open(QIODevice::WriteOnly) && film.resize(1'200'000));
  film.close();
  model->open();
  ASSERT_TRUE(turnUntil([&] { return model->hasSaved(); }));
  EXPECT_EQ(column(model->saved(), "name") + column(model->saved(), "size"),
            text("a#b 100%.mkv1.2 MB"));
  model->playSaved(text("unknown"));
  EXPECT_FALSE(coordinator->nowPlaying());
  model->playSaved(column(model->saved(), "key"));
  EXPECT_EQ(coordinator->nowPlaying()->title, text("a#b 100%"));
  EXPECT_TRUE(navigation.showPlayer());

  record("id|begun.mkv", 61, 3661);
  takeEvents();
  model->resume(text("unknown"));
  model->resume(text("id|begun.mkv"));
  EXPECT_TRUE(takeEvents().contains(text("load begun.mkv 61")));
}

} // namespace
} // namespace vellum::ui
