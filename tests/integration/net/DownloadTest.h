// What the tests of real downloads share: a manager over HTTP and a folder to look into.
#pragma once
#include "net/HttpFileTransfers.h"
#include "storage/DownloadManager.h"
#include "world/MainThread.h"
#include "world/Payload.h"
#include "world/RequestHead.h"
#include "world/ScriptedServer.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;

using namespace std::chrono_literals;

struct DownloadTest : testing::Test, MainThread {
  using Kind = DownloadTask::State::Kind;

  DownloadTest() {
    settings.setDownloadsPath(folder);
    startManager();
  }
  void startManager(std::chrono::milliseconds patience = HttpFileTransfers::kPatience) {
    stopManager();
    pool.emplace();
    transfers.emplace(patience);
    manager.emplace(settings, main, *pool, *transfers);
  }
  // As at the end of the program: everything under way has ended when it returns.
  void stopManager() {
    manager.reset();
    transfers.reset();
    pool.reset();
  }

  QUuid start(const QUrl& url, std::optional<qint64> size = {}) {
    EXPECT_EQ(manager->start(QStringLiteral("A film"), url, size), std::nullopt);
    return manager->tasks().front().id;
  }
  const DownloadTask& row() const { return manager->tasks().front(); }
  // Turns until the newest row is no longer downloading; how it ended, as one text.
  std::string ending() {
    const bool inTime = turnUntil([&] { return row().state.kind != Kind::Downloading; });
    switch (row().state.kind) {
    case Kind::Failed: return row().state.reason.toStdString();
    case Kind::Paused: return "paused";
    case Kind::Finished: return "finished";
    default: return inTime ? "?" : "still downloading";
    }
  }
  // Turns until the newest row has bytes on the disk.
  bool receives() {
    return turnUntil([&] { return row().received > 0; });
  }
  QStringList hidden() const {
    return QDir(folder).entryList({QStringLiteral(".*")}, QDir::Files | QDir::Hidden);
  }
  bool partsGo() const {
    return turnUntil([&] { return hidden().isEmpty(); }, 10s);
  }
  QStringList visible() const { return QDir(folder).entryList(QDir::Files, QDir::Name); }
  QByteArray contents(const char* name = "film.mp4") const {
    QFile file(folder + u'/' + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
  }

  QTemporaryDir home;
  const QString folder = home.path() + QStringLiteral("/Films");
  PreferenceStore preferences;
  SettingsStore settings{preferences};
  std::optional<IoPool> pool;
  std::optional<HttpFileTransfers> transfers;
  std::optional<DownloadManager> manager;
};

} // namespace vellum::test
