#include "storage/DownloadManager.h"
#include "base/ReplaceFile.h"
#include "world/MainThread.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <future>
#include <gtest/gtest.h>

namespace vellum {
namespace {

using Kind = DownloadTask::State::Kind;

// A transfer that does what the test says.
struct Scripted final : FileTransfer {
  Scripted(TransferSource from, FileTransfers::Ended then)
      : source(std::move(from)), ended(std::move(then)) {}
  void pause() override { ++pauses; }
  void cancel() override { isCancelled = true; }
  std::optional<TransferProgress> progress() const override { return now; }

  TransferSource source;
  FileTransfers::Ended ended;
  std::optional<TransferProgress> now;
  int pauses = 0;
  bool isCancelled = false;
};

struct DownloadManagerTest : testing::Test, world::MainThread, FileTransfers {
  DownloadManagerTest() {
    settings.setDownloadsPath(folder);
    startManager();
  }
  void startManager() {
    manager.emplace(settings, main, pool, *this, [this](const QString&) { return free; });
    QObject::connect(&*manager, &DownloadManager::tasksChanged, [this] { ++changes; });
    QObject::connect(&*manager, &DownloadManager::savedChanged, [this] { ++listings; });
  }
  std::shared_ptr<FileTransfer> start(TransferSource source, Ended ended) override {
    return transfers.emplace_back(std::make_shared<Scripted>(std::move(source), std::move(ended)));
  }

  QUuid begin(std::optional<qint64> size = {}) {
    EXPECT_FALSE(manager->start({}, QUrl(QStringLiteral("http://h/film.mp4")), size));
    return row().id;
  }
  std::shared_ptr<PartFile> part() const {
    std::error_code error;
    auto file = PartFile::create(folder, error);
    EXPECT_TRUE(file && !file->append(std::string_view("whole"))) << error.message();
    return file;
  }
  ResumeData resumeData() const { return {part(), "\"tag\"", 9}; }
  // The last launched transfer ends; returns when the row has taken it in.
  void end(TransferEnd how) {
    transfers.back()->ended(std::move(how));
    QCoreApplication::processEvents();
  }
  void finish(std::shared_ptr<PartFile> file) {
    end(TransferFinished{std::move(file)});
    EXPECT_TRUE(turnUntil([&] { return row().state.kind != Kind::Downloading; }));
  }
  // The pool's only worker does nothing until the promise is kept.
  std::promise<void> holdWorker() {
    std::promise<void> goesOn;
    asio::post(pool.workers(), [wait = goesOn.get_future().share()] { wait.wait(); });
    return goesOn;
  }
  const DownloadTask& row() const { return manager->tasks().at(0); }
  std::string name() const { return row().dest.fileName().toStdString(); }
  void put(const char* fileName) const {
    EXPECT_TRUE(replaceFile(folder + u'/' + QLatin1String(fileName), "mine", Privacy::Everybody));
  }
  QByteArray contents(const char* fileName) const {
    QFile file(folder + u'/' + QLatin1String(fileName));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
  }
  qsizetype parts() const {
    return QDir(folder).entryList({QStringLiteral(".*")}, QDir::Files | QDir::Hidden).size();
  }

  QTemporaryDir home;
  const QString folder = home.path() + QStringLiteral("/not/there/yet");
  std::int64_t free = INT64_MAX;
  IoPool pool{1, 1};
  PreferenceStore preferences;
  SettingsStore settings{preferences};
  std::vector<std::shared_ptr<Scripted>> transfers; // all that were launched
  std::optional<DownloadManager> manager;
  int changes = 0, listings = 0;
};

TEST_F(DownloadManagerTest, RefusesWhatTheDiskCannotHoldAndAFolderThatCannotBe) {
  constexpr std::int64_t reserve = 209'715'200, least = 104'857'600, all = INT64_MAX;
  using Size = std::optional<qint64>;
  const auto refusal = [this](Size size) {
    const auto said = manager->start({}, QUrl(QStringLiteral("http://h/f.mp4")), size);
    return said.value_or(QString()).toStdString();
  };
  using Case = std::tuple<std::int64_t, Size, const char*>;
  for (const auto& [space, size, message] :
       {Case{1'500 + reserve, 1'500, ""}, Case{0, {}, ""},
        Case{1'499 + reserve, 1'500, "Not enough free disk space for 2 KB."},
        Case{all - 1, all, "Not enough free disk space for 9.22 EB."}}) {
    free = space;
    EXPECT_EQ(refusal(size), message);
    EXPECT_EQ(row().expected, space == 1'500 + reserve ? 1'500 : 0);
  }
  EXPECT_EQ(manager->tasks().size(), 2);
  settings.setDownloadsPath(QStringLiteral("x"));
  EXPECT_EQ(refusal({}), "Cannot create downloads folder: No such file or directory");
  EXPECT_EQ(transfers.size(), 2);
  free = least; // for one under way
  EXPECT_TRUE(transfers.back()->source.hasRoom());
  free = least - 1;
  EXPECT_FALSE(transfers.back()->source.hasRoom());
}

TEST_F(DownloadManagerTest, ANameIsHeldByFilesAndByRowsThatMayStillNeedIt) {
  const auto next = [&] { return begin(), name(); };
  EXPECT_EQ(next(), "film.mp4");
  EXPECT_EQ(next(), "film 1.mp4");
  end(TransferFailed{}); // it may be resumed
  EXPECT_EQ(next(), "film 2.mp4");
  put("film 3.mp4");
  EXPECT_EQ(next(), "film 4.mp4");
  finish(part());
  EXPECT_EQ(next(), "film 5.mp4");
  ASSERT_TRUE(QFile::remove(folder + QStringLiteral("/film 4.mp4")));
  EXPECT_EQ(next(), "film 4.mp4") << "its file was deleted";
}

TEST_F(DownloadManagerTest, ARowObeysItsUserAndItsTransferAndNobodyElse) {
  // The user: p pauses, r resumes, c cancels, k clears what has ended. The transfer that runs: P is
  // paused and may go on, N cannot go on, X fails, F has its file. L: the first one ends once more.
  struct Case {
    const char* steps;
    std::optional<Kind> state; // nothing: the row has gone
    int launches, changes;
    bool goesOn = false; // the last launch, from what the one before it gave
  };
  for (const auto& [steps, state, launches, wantedChanges, goesOn] :
       {Case{"r", Kind::Downloading, 1, 1},
        Case{"pp", Kind::Downloading, 1, 1},
        Case{"ppP", Kind::Paused, 1, 3},
        Case{"pPr", Kind::Downloading, 2, 4, true},
        Case{"pPrL", Kind::Downloading, 2, 4, true},
        Case{"pPrpNr", Kind::Downloading, 3, 6},
        Case{"pNr", Kind::Downloading, 2, 3},
        Case{"prP", Kind::Downloading, 2, 3, true},
        Case{"prpP", Kind::Paused, 1, 3},
        Case{"pF", Kind::Finished, 1, 2},
        Case{"prF", Kind::Finished, 1, 2},
        Case{"Fr", Kind::Downloading, 2, 3},
        Case{"FrF", Kind::Finished, 2, 4},
        Case{"Xp", Kind::Failed, 1, 2},
        Case{"Xr", Kind::Downloading, 2, 3},
        Case{"k", Kind::Downloading, 1, 1},
        Case{"pPk", Kind::Paused, 1, 3},
        Case{"Fkk", {}, 1, 3},
        Case{"Xkk", {}, 1, 3},
        Case{"cprck", {}, 1, 2}}) {
    const auto nobody = [&] {
      const QUuid id = QUuid::createUuid();
      manager->pause(id);
      manager->resume(id);
      manager->cancel(id);
    };
    transfers.clear();
    startManager();
    changes = 0;
    nobody();
    const QUuid id = begin();
    const auto first = transfers.at(0);
    for (const char step : std::string_view(steps)) {
      if (step == 'p') manager->pause(id);
      if (step == 'r') manager->resume(id);
      if (step == 'c') manager->cancel(id);
      if (step == 'k') manager->clearFinished();
      if (step == 'P') transfers.back()->now = TransferProgress{4, 0};
      if (step == 'P') end(TransferPaused{resumeData()});
      if (step == 'N') end(TransferPaused{});
      if (step == 'X') end(TransferFailed{QStringLiteral("HTTP 404")});
      if (step == 'L') first->ended(TransferFailed{});
      if (step == 'F') finish(part());
    }
    QCoreApplication::processEvents();
    nobody();
    EXPECT_EQ(changes, wantedChanges) << steps;
    EXPECT_EQ(first->pauses, steps[0] == 'p') << steps << ": it is told once";
    EXPECT_EQ(transfers.size(), launches) << steps;
    EXPECT_EQ(transfers.back()->source.resume.has_value(), goesOn) << steps;
    ASSERT_EQ(manager->tasks().size(), state ? 1 : 0) << steps;
    if (!state) continue;
    EXPECT_EQ(row().state.kind, *state) << steps;
    EXPECT_EQ(row().state.reason.toStdString(), state == Kind::Failed ? "HTTP 404" : "");
    if (state == Kind::Paused) EXPECT_EQ(row().received, 4) << steps;
    if (state == Kind::Finished) EXPECT_EQ(contents(name().c_str()), "whole") << steps;
  }
}

TEST_F(DownloadManagerTest, ACancelledRowLeavesNothingWhateverComesLate) {
  const QUuid paused = begin();
  end(TransferPaused{resumeData()});
  begin();
  auto goesOn = holdWorker();
  manager->cancel(paused);
  EXPECT_EQ(parts(), 1) << "a large file is not removed on the main thread";
  manager->cancel(row().id);
  EXPECT_TRUE(transfers.back()->isCancelled);
  end(TransferPaused{resumeData()});
  EXPECT_EQ(parts(), 2);
  begin();
  end(TransferFinished{part()}); // now it waits to be moved
  manager->cancel(row().id);
  begin();
  end(TransferFinished{part()});
  begin();
  end(TransferPaused{resumeData()});
  begin();
  manager.reset(); // what waits to be moved is not wanted any more either
  EXPECT_EQ(parts(), 5);
  EXPECT_TRUE(transfers.back()->isCancelled);
  end(TransferFinished{part()});
  goesOn.set_value();
  EXPECT_TRUE(turnUntil([&] { return parts() == 0; }));
}

TEST_F(DownloadManagerTest, AWholeFileIsMovedButNeverOverAnother) {
  for (const auto& [taken, dest] :
       {std::pair{"film.mp4", "film 1.mp4"}, {"film 2.mp4", "film 3.mp4"}}) {
    begin(99);
    put(taken);
    finish(part());
    EXPECT_EQ(contents(taken), "mine");
    EXPECT_EQ(contents(dest), "whole");
    EXPECT_EQ(name(), dest);
    EXPECT_EQ(row().received + row().expected, 5 + 5);
  }
  EXPECT_TRUE(turnUntil([&] { return manager->saved().size() == 4; }));
  EXPECT_EQ(listings, 3) << "one at first, and one for each film";

  begin();
  auto file = part();
  ASSERT_TRUE(QDir(folder).removeRecursively());
  finish(std::move(file));
  EXPECT_EQ(row().state,
            (DownloadTask::State{Kind::Failed, QStringLiteral("No such file or directory")}));
}

TEST_F(DownloadManagerTest, ProgressIsPublishedByTheClockAndOnceForAllRows) {
  for (int i = 0; i < 5; ++i) begin(9);
  using Case = std::pair<TransferProgress, qint64>; // nothing of the others is known
  for (const auto& [now, expected] :
       {Case{{4, 0}, 9}, Case{{4, 1}, 1}, Case{{5, 1}, 1}, Case{{5, 20}, 20}})
    for (std::size_t i = 0; i < 5; ++i) {
      for (const auto& transfer : transfers) transfer->now.reset();
      transfers[i]->now = now;
      changes = 0;
      manager->publishProgress();
      manager->publishProgress(); // nothing new
      EXPECT_EQ(changes, 1);
      EXPECT_EQ(manager->tasks()[4 - i].received, now.received);
      EXPECT_EQ(manager->tasks()[4 - i].expected, expected);
    }
  changes = 0;
  for (const auto& transfer : transfers) transfer->now = TransferProgress{6, 20};
  EXPECT_TRUE(turnUntil([&] { return row().received + manager->tasks()[1].received == 12; }));
  EXPECT_EQ(changes, 1);
}

TEST_F(DownloadManagerTest, ListsTheFolderAtFirstAndWhenAsked) {
  manager.reset();
  put("a.mp4");
  put(".vellum-00000000-0000-0000-0000-000000000001.part"); // of a program that died
  auto goesOn = holdWorker();
  for (int i = 0; i < 3; ++i) startManager(); // what was asked for by the first two is dropped
  listings = 0;
  goesOn.set_value();
  ASSERT_TRUE(turnUntil([&] { return listings > 0; }));
  EXPECT_EQ(manager->saved().size(), 1);
  EXPECT_EQ(parts(), 0);
  settings.setDownloadsPath(home.path() + QStringLiteral("/elsewhere"));
  manager->refreshSaved();
  EXPECT_TRUE(turnUntil([&] { return manager->saved().empty(); })) << "no folder counts as empty";
  EXPECT_EQ(listings, 2);
}

} // namespace
} // namespace vellum
