// A large file from a server on loopback into a folder: how fast it comes, and what that costs the
// main thread.
#include "WatchedApplication.h"
#include "net/HttpFileTransfers.h"
#include "storage/DownloadManager.h"
#include "world/ScriptedServer.h"
#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <array>
#include <benchmark/benchmark.h>

namespace vellum {

using namespace world;
namespace {

using Kind = DownloadTask::State::Kind;

constexpr std::int64_t kFile = 1024 * kMiB;
constexpr std::int64_t kBlock = 4 * kMiB;

void oneLargeFile(benchmark::State& state) {
  int argc = 1;
  std::array<char, 6> name{"bench"};
  std::array<char*, 2> argv{name.data(), nullptr};
  WatchedApplication<QCoreApplication> app(argc, argv.data());
  const QTemporaryDir folder(QStringLiteral("downloads-XXXXXX"));
  ScriptedServer server([block = QByteArray(kBlock, 'x')](const QByteArray&) {
    return ScriptedServer::Answer{
        "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(qint64(kFile)) + "\r\n\r\n",
        block, int(kFile / kBlock)};
  });
  MainLoop main;
  IoPool pool;
  PreferenceStore preferences;
  SettingsStore settings(preferences);
  settings.setDownloadsPath(folder.path());
  HttpFileTransfers transfers;
  DownloadManager manager(settings, main, pool, transfers);
  int updates = 0;
  QObject::connect(&manager, &DownloadManager::tasksChanged, [&] { ++updates; });
  for ([[maybe_unused]] const auto _ : state) {
    if (manager.start({}, server.url(QStringLiteral("/film.mp4")), kFile))
      return state.SkipWithError("refused");
    const DownloadTask& row = manager.tasks().front();
    // Sleeps between events, as a window does.
    while (row.state.kind == Kind::Downloading)
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    if (row.state.kind != Kind::Finished) return state.SkipWithError("not whole");
    state.PauseTiming();
    QFile::remove(row.dest.toLocalFile());
    state.ResumeTiming();
  }
  const auto rounds = static_cast<double>(state.iterations());
  state.SetBytesProcessed(state.iterations() * kFile);
  state.counters["longest_ms_of_main"] = std::ranges::max(app.takeSteps());
  state.counters["updates"] = updates / rounds;
}
BENCHMARK(oneLargeFile)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace vellum
