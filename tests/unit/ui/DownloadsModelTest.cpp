#include "ui/manage/DownloadsModel.h"
#include "unit/playback/PlaybackWorld.h"
#include "unit/ui/MadeTransfers.h"

namespace vellum::ui {
namespace {

using test::PlaybackWorld;

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

struct DownloadsModelTest : PlaybackWorld, TorrentEngine::Surroundings {
  DownloadsModelTest() {
    settings.setDownloadsPath(folder.path());
    settings.setCachePath(folder.path());
    model.emplace(DownloadsModel::Services{downloads, engine, *coordinator, entries, cache});
  }
  // Nobody answers: sessions only have to be there.
  static Flow<QByteArray> nobody(QUrl, std::chrono::milliseconds) {
    throw NetError::platform(NetError::Reason::HostNotFound, QString());
    co_return QByteArray();
  }
  QString streamsDirectory() override { return folder.path(); }
  bool stopSeedingOnClose() const override { return false; }
  bool keepAfterPlayback() const override { return false; }
  std::function<std::int64_t()> uploadLimit() const override {
    return [] { return std::int64_t(0); };
  }
  void unregister(const QString& key) override { events += text("unregister ") + key.first(2); }
  void cacheChanged() override {}

  QString run(std::uint8_t byte, const char* title) {
    Hash20 hash;
    hash.fill(std::byte(byte));
    return engine.acquire(hash, {}, text(title), nullptr)->key();
  }
  static QString column(QAbstractListModel* rows, const char* name) {
    QStringList list;
    const int role = rows->roleNames().key(name);
    for (int i = 0; i < rows->rowCount(); ++i) list += rows->data(rows->index(i), role).toString();
    return list.join(u'|');
  }

  PreferenceStore memory;
  SettingsStore settings{memory};
  HttpClient http{main};
  CacheManager cache{settings, main, pool, http};
  test::MadeTransfers transfers;
  DownloadManager downloads{settings, main, pool, transfers};
  SystemRandom random;
  TorrentEngine engine{{pool, main, clock, random, nobody, {}}, *this};
  Navigation navigation;
  PlayEntryPoints entries{*coordinator, navigation};
  std::optional<DownloadsModel> model;
};

TEST_F(DownloadsModelTest, TellsHowEachDownloadStands) {
  for (const char* name : {"a", "b", "c", "d"})
    downloads.start(text(name) + text(*name == 'a' ? "\n\xE2\x80\xAE" : ""),
                    QUrl(text("http://h/") + text(name) + text(".mp4")),
                    *name == 'a' ? std::nullopt : std::optional<qint64>(3'000'000));
  QStringList rebuilt;
  for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
    QObject::connect(model->tasks(), signal, [&] { rebuilt += text("x"); });
  transfers.all[0]->now = {1'200'000, 0};
  transfers.all[1]->now = {1'500'000, 3'000'000};
  downloads.publishProgress();
  const QString b = column(model->tasks(), "key").section(u'|', 2, 2);
  model->pause(b);
  transfers.all[2]->ended(TransferFailed{text("HTTP\n404")});
  std::error_code error;
  transfers.all[3]->ended(TransferFinished{PartFile::create(folder.path(), error)});
  const auto phases = [&] { return column(model->tasks(), "phase"); };
  ASSERT_TRUE(turnUntil([&] { return phases() == text("finished|failed|paused|downloading"); }))
      << phases().toStdString();
  EXPECT_EQ(column(model->tasks(), "detail"),
            text("Saved to ") + folder.filePath(text("d.mp4")) +
                text("|Failed: HTTP 404|1.5 MB of 3 MB|1.2 MB of —"));
  EXPECT_EQ(column(model->tasks(), "progress").section(u'|', 2), text("0.5|-1"));
  EXPECT_TRUE(rebuilt.isEmpty()); // rows change where they are

  const QStringList keys = column(model->tasks(), "key").split(u'|');
  model->play(keys[1]); // not a finished one
  EXPECT_FALSE(coordinator->nowPlaying());
  model->play(keys[0]);
  EXPECT_EQ(coordinator->nowPlaying()->title, text("d"));
  model->resume(keys[2]);
  EXPECT_EQ(phases(), text("finished|failed|downloading|downloading"));
  model->cancel(keys[2]);
  model->cancel(text("no key"));
  EXPECT_EQ(column(model->tasks(), "title"), text("d|c|a �"));
  EXPECT_TRUE(model->hasFinished());
  model->clearFinished();
  EXPECT_EQ(column(model->tasks(), "title"), text("a �"));
  EXPECT_FALSE(model->hasFinished());
}

TEST_F(DownloadsModelTest, StopsWhatPlaysOnlyWithItsOwnTorrent) {
  const QString seeding = run(0xBB, "B\n"), streaming = run(0xAA, "A");
  TorrentResult played;
  played.id = played.title = text("A");
  played.infoHash = streaming;
  session->snap.meta = meta({{}});
  coordinator->playFromSearchResult(played, {}, true, true);
  ASSERT_TRUE(turnUntil([&] { return coordinator->activeSession() != nullptr; }));
  EXPECT_EQ(column(model->torrents(), "name"), text("A|B"));
  EXPECT_EQ(column(model->torrents(), "status"), text("Streaming|Seeding"));
  EXPECT_EQ(column(model->torrents(), "counts").section(u'|', 0, 0),
            text("0 peers · ↓ Zero KB/s · ↑ Zero KB/s · uploaded Zero KB"));
  takeEvents();

  model->stopTorrent(text("unknown"));
  model->stopTorrent(seeding);
  EXPECT_EQ(takeEvents().join(u'|'), text("unregister bb"));
  EXPECT_TRUE(coordinator->stream());
  EXPECT_EQ(column(model->torrents(), "name"), text("A"));

  subtitles.add({text("track"), QUrl(text("file:///t.srt"))});
  model->stopTorrent(streaming);
  EXPECT_EQ(takeEvents().join(u'|'), text("unregister aa|release|stop"));
  EXPECT_FALSE(coordinator->stream());
  EXPECT_FALSE(coordinator->nowPlaying());
  EXPECT_TRUE(subtitles.tracks().empty());
  EXPECT_FALSE(model->hasTorrents());
}

} // namespace
} // namespace vellum::ui
