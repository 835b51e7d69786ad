#include "storage/DownloadManager.h"
#include "world/MainThread.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <limits>

namespace vellum {
namespace {

using namespace world;

using Kind = DownloadTask::State::Kind;

// Transfers that do what the test says.
struct ScriptedTransfers final : FileTransfers {
  struct Transfer final : FileTransfer {
    void pause() override { ++pauses; }
    void cancel() override { isCancelled = true; }
    std::optional<TransferProgress> progress() const override { return now; }

    TransferSource source;
    Ended ended;
    std::optional<TransferProgress> now;
    int pauses = 0;
    bool isCancelled = false;
  };
  std::shared_ptr<FileTransfer> start(TransferSource source, Ended ended) override {
    all.push_back(std::make_shared<Transfer>());
    all.back()->source = std::move(source);
    all.back()->ended = std::move(ended);
    return all.back();
  }
  std::vector<std::shared_ptr<Transfer>> all;
};

struct DownloadManagerTest : testing::Test, world::MainThread {
  DownloadManagerTest() {
    settings.setDownloadsPath(folder);
    manager.emplace(settings, main, *pool, transfers, [this](const QString&) { return free; });
    QObject::connect(&*manager, &DownloadManager::tasksChanged, [this] { ++changes; });
  }

  QUuid start(const char* url = "http://h/film.mp4", std::optional<qint64> size = {}) {
    EXPECT_EQ(manager->start(QStringLiteral("A film"), QUrl(QLatin1String(url)), size),
              std::nullopt);
    return manager->tasks().front().id;
  }
  std::shared_ptr<PartFile> part(const QByteArray& bytes = "whole") const {
    std::error_code error;
    auto file = PartFile::create(folder, error);
    EXPECT_TRUE(file && !file->append(bytes)) << error.message();
    return file;
  }
  ResumeData resumeData() const { return {part("half"), "\"tag\"", 5}; }
  // The last launched transfer ends; returns when the row has taken it in.
  void end(TransferEnd how) {
    transfers.all.back()->ended(std::move(how));
    QCoreApplication::processEvents();
  }
  const DownloadTask& row(std::size_t index = 0) const { return manager->tasks().at(index); }
  bool turnsTo(Kind kind) {
    return turnUntil([&] { return row().state.kind == kind; });
  }
  QString name(std::size_t index = 0) const {
    return QFileInfo(row(index).dest.toLocalFile()).fileName();
  }
  void put(const char* fileName, const QByteArray& bytes = "mine") const {
    QDir().mkpath(folder);
    QFile file(folder + u'/' + QLatin1String(fileName));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }
  QByteArray contents(const char* fileName) const {
    QFile file(folder + u'/' + QLatin1String(fileName));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
  }
  bool partsGo() const {
    return turnUntil([&] {
      const QStringList hidden = {QStringLiteral(".*")};
      return QDir(folder).entryList(hidden, QDir::Files | QDir::Hidden).isEmpty();
    });
  }

  QTemporaryDir home;
  const QString folder = home.path() + QStringLiteral("/not/there/yet");
  std::int64_t free = std::numeric_limits<std::int64_t>::max();
  std::optional<IoPool> pool{std::in_place};
  PreferenceStore preferences;
  SettingsStore settings{preferences};
  ScriptedTransfers transfers;
  std::optional<DownloadManager> manager;
  int changes = 0;
};

TEST_F(DownloadManagerTest, RefusesWhatTheDiskCannotHoldAndAFolderThatCannotBe) {
  constexpr std::int64_t reserve = 209'715'200;
  struct Case {
    std::int64_t free;
    std::optional<qint64> size;
    const char* message;
  };
  for (const auto& [space, size, message] :
       {Case{1'500 + reserve, 1'500, ""}, Case{0, {}, ""}, Case{reserve - 5, -5, ""},
        Case{1'499 + reserve, 1'500, "Not enough free disk space for 2 KB."},
        Case{reserve - 6, -5, "Not enough free disk space for —."},
        Case{std::numeric_limits<std::int64_t>::max() - 1, std::numeric_limits<qint64>::max(),
             "Not enough free disk space for 9.22 EB."}}) {
    free = space;
    const auto rows = manager->tasks().size();
    const auto refusal = manager->start({}, QUrl(QStringLiteral("http://h/f.mp4")), size);
    EXPECT_EQ(refusal.value_or(QString()).toStdString(), message);
    EXPECT_EQ(manager->tasks().size(), rows + (refusal ? 0 : 1));
  }
  free = std::numeric_limits<std::int64_t>::max();
  put("file");
  for (const auto& [path, reason] :
       {std::pair{folder + QStringLiteral("/file/x"), "Not a directory"},
        std::pair{QStringLiteral("x"), "No such file or directory"}}) {
    settings.setDownloadsPath(path);
    const auto refusal = manager->start({}, QUrl(QStringLiteral("http://h/f.mp4")), {});
    EXPECT_EQ(refusal.value_or(QString()).toStdString(),
              std::string("Cannot create downloads folder: ") + reason);
  }
  EXPECT_EQ(transfers.all.size(), manager->tasks().size());
}

TEST_F(DownloadManagerTest, ANameIsHeldByFilesAndByRowsThatMayStillNeedIt) {
  start();
  start();
  start();
  EXPECT_EQ((QStringList{name(2), name(1), name(0)}.join(u'|').toStdString()),
            "film.mp4|film 1.mp4|film 2.mp4");
  end(TransferFailed{QStringLiteral("gone")}); // of "film 2": it may be resumed
  start();
  EXPECT_EQ(name().toStdString(), "film 3.mp4");
  put("film 4.mp4");
  start();
  EXPECT_EQ(name().toStdString(), "film 5.mp4");
  end(TransferFinished{part()});
  ASSERT_TRUE(turnsTo(Kind::Finished));
  start();
  EXPECT_EQ(name().toStdString(), "film 6.mp4");
  ASSERT_TRUE(QFile::remove(folder + QStringLiteral("/film 5.mp4")));
  start();
  EXPECT_EQ(name().toStdString(), "film 5.mp4") << "its file was deleted";
}

TEST_F(DownloadManagerTest, PausesAndGoesOnWithWhatTheTransferGave) {
  const QUuid id = start("http://h/film.mp4", 9);
  manager->resume(id); // it runs already
  EXPECT_EQ(transfers.all.size(), 1);
  transfers.all[0]->now = TransferProgress{4, 0};
  manager->publishProgress();
  EXPECT_EQ(row().expected, 9) << "an unknown length leaves the known one";

  manager->pause(id);
  manager->pause(id);
  EXPECT_EQ(transfers.all[0]->pauses, 1);
  EXPECT_EQ(row().state.kind, Kind::Downloading) << "until the transfer has stopped";
  end(TransferPaused{resumeData()});
  EXPECT_EQ(row().state.kind, Kind::Paused);
  manager->clearFinished();
  ASSERT_EQ(manager->tasks().size(), 1);

  manager->resume(id);
  EXPECT_EQ(row().state.kind, Kind::Downloading);
  EXPECT_EQ(transfers.all.back()->source.resume->validator, "\"tag\"");
  manager->pause(id);
  end(TransferPaused{});
  EXPECT_EQ(row().state.kind, Kind::Paused);
  manager->resume(id);
  EXPECT_FALSE(transfers.all.back()->source.resume) << "data is used once";
  EXPECT_EQ(row().received, 4) << "the old figure, until there is progress";
  transfers.all.back()->now = TransferProgress{1, 5};
  manager->publishProgress();
  EXPECT_EQ(row().received, 1);
  EXPECT_EQ(row().expected, 5);
}

TEST_F(DownloadManagerTest, AResumeMayOvertakeThePauseBeforeIt) {
  const QUuid id = start();
  manager->pause(id);
  manager->resume(id);
  EXPECT_EQ(transfers.all.size(), 1) << "never two for one row";
  end(TransferPaused{resumeData()});
  EXPECT_EQ(row().state.kind, Kind::Downloading);
  ASSERT_EQ(transfers.all.size(), 2);
  EXPECT_TRUE(transfers.all[1]->source.resume);

  manager->pause(id);
  manager->resume(id);
  manager->pause(id);
  end(TransferPaused{resumeData()});
  EXPECT_EQ(row().state.kind, Kind::Paused);

  manager->resume(id);
  manager->pause(id);
  end(TransferFinished{part()}); // it was complete before it could stop
  EXPECT_TRUE(turnsTo(Kind::Finished));
  EXPECT_EQ(contents("film.mp4"), "whole");
}

TEST_F(DownloadManagerTest, ACancelledRowLeavesNothingWhateverComesLate) {
  const QUuid paused = start();
  manager->pause(paused);
  end(TransferPaused{resumeData()});
  manager->cancel(paused);
  const QUuid pausing = start();
  manager->pause(pausing);
  manager->cancel(pausing);
  EXPECT_TRUE(transfers.all.back()->isCancelled);
  end(TransferPaused{resumeData()});
  const QUuid ending = start();
  transfers.all.back()->ended(TransferFinished{part()});
  manager->cancel(ending);
  QCoreApplication::processEvents();
  for (const QUuid& id : {paused, pausing, ending}) {
    manager->resume(id);
    manager->pause(id);
    manager->cancel(id);
  }
  EXPECT_TRUE(manager->tasks().empty());
  EXPECT_EQ(transfers.all.size(), 3);
  EXPECT_TRUE(partsGo());
  EXPECT_EQ(contents("film.mp4"), "(none)");

  start();
  end(TransferPaused{resumeData()});
  start();
  manager.reset();
  EXPECT_TRUE(transfers.all.back()->isCancelled);
  end(TransferFinished{part()});
  EXPECT_TRUE(partsGo());
}

TEST_F(DownloadManagerTest, AnEndedRowMayBeginAgainOrBeCleared) {
  const QUuid failed = start();
  end(TransferFailed{QStringLiteral("HTTP 404")});
  EXPECT_EQ(row().state, (DownloadTask::State{Kind::Failed, QStringLiteral("HTTP 404")}));
  manager->pause(failed); // nothing runs
  EXPECT_EQ(row().state.kind, Kind::Failed);
  manager->resume(failed);
  EXPECT_EQ(row().state.kind, Kind::Downloading);
  EXPECT_FALSE(transfers.all.back()->source.resume);
  end(TransferFailed{QStringLiteral("again")});
  start("http://h/other.mp4");
  end(TransferFinished{part()});
  ASSERT_TRUE(turnsTo(Kind::Finished));
  start("http://h/third.mp4");
  manager->clearFinished();
  ASSERT_EQ(manager->tasks().size(), 1);
  EXPECT_EQ(name().toStdString(), "third.mp4");
  EXPECT_EQ(contents("other.mp4"), "whole");
}

TEST_F(DownloadManagerTest, AWholeFileIsMovedButNeverOverAnother) {
  start("http://h/film.mp4", 99);
  put("film.mp4");
  put("film 1.mp4");
  end(TransferFinished{part()});
  ASSERT_TRUE(turnsTo(Kind::Finished));
  EXPECT_EQ(contents("film.mp4"), "mine");
  EXPECT_EQ(contents("film 1.mp4"), "mine");
  EXPECT_EQ(contents("film 2.mp4"), "whole");
  EXPECT_EQ(name().toStdString(), "film 2.mp4");
  EXPECT_EQ(row().received, 5);
  EXPECT_EQ(row().expected, 5);
  EXPECT_TRUE(turnUntil([&] { return manager->saved().size() == 3; }));

  start(("http://h/" + std::string(300, 'x')).c_str());
  end(TransferFinished{part()});
  ASSERT_TRUE(turnsTo(Kind::Finished)) << "the name was cut before";
  EXPECT_EQ(name().toStdString(), std::string(255, 'x'));

  start("http://h/gone.mp4");
  auto file = part();
  ASSERT_TRUE(QDir(folder).removeRecursively());
  end(TransferFinished{std::move(file)});
  ASSERT_TRUE(turnsTo(Kind::Failed));
  EXPECT_EQ(row().state.reason.toStdString(), "No such file or directory");
}

TEST_F(DownloadManagerTest, ProgressOfAllRowsIsOneChange) {
  for (int i = 0; i < 5; ++i) start();
  changes = 0;
  for (int round = 1; round <= 3; ++round) {
    for (const auto& transfer : transfers.all) transfer->now = TransferProgress{round, 10};
    manager->publishProgress();
    manager->publishProgress(); // nothing new
    EXPECT_EQ(changes, round);
  }
}

TEST_F(DownloadManagerTest, SavedAreTheFilmsOfTheFolderNewestFirst) {
  EXPECT_TRUE(turnUntil([&] { return manager->saved().empty(); }));
  for (const char* each : {"a.mp4", "b.MKV", ".c.mp4", "d.txt", "e.mp4.part"}) put(each);
  ASSERT_TRUE(QDir(folder).mkpath(QStringLiteral("sub.mp4")));
  put("sub.mp4/f.mp4");
  ASSERT_TRUE(QFile::link(QStringLiteral("/nowhere"), folder + QStringLiteral("/lost.avi")));
  int listings = 0;
  QObject::connect(&*manager, &DownloadManager::savedChanged, [&] { ++listings; });
  manager->refreshSaved();
  ASSERT_TRUE(turnUntil([&] { return manager->saved().size() == 3; }));
  QStringList names;
  for (const SavedFile& file : manager->saved()) names << file.url.fileName();
  EXPECT_TRUE(names.contains(QStringLiteral("a.mp4")) && names.contains(QStringLiteral("b.MKV")));
  EXPECT_EQ(names.back().toStdString(), "lost.avi");
  EXPECT_EQ(manager->saved().back().size, 0);
  EXPECT_EQ(manager->saved().back().added, QDateTime(QDate(1, 1, 1), QTime(0, 0), Qt::UTC));
  EXPECT_EQ(manager->saved().front().size, 4);
  EXPECT_GE(manager->saved()[0].added, manager->saved()[1].added);

  settings.setDownloadsPath(home.path() + QStringLiteral("/elsewhere"));
  manager->refreshSaved();
  EXPECT_TRUE(turnUntil([&] { return manager->saved().empty(); })) << "no folder counts as empty";
}

} // namespace
} // namespace vellum
