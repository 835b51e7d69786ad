#include "storage/DownloadManager.h"
#include "base/Text.h"
#include "storage/DownloadFolder.h"
#include <QFileInfo>
#include <algorithm>
#include <limits>

namespace vellum {

namespace {

std::int64_t withReserve(std::int64_t size) {
  std::int64_t sum = 0;
  const bool isTooMuch = __builtin_add_overflow(size, DownloadManager::kReserve, &sum);
  return isTooMuch ? std::numeric_limits<std::int64_t>::max() : sum;
}

} // namespace

// What became of a whole file.
struct DownloadManager::Placed {
  QString path;
  qint64 size = 0; // bytes
  QString error = {};
};

// Under `path`, or numbered if somebody else has put a file there meanwhile. On a worker.
DownloadManager::Placed DownloadManager::place(PartFile& file, const QString& path,
                                               const QString& name,
                                               const std::atomic<bool>& isWanted) {
  const QString folder = QFileInfo(path).path();
  std::error_code error = isWanted ? file.sync() : std::error_code();
  QString tried = path;
  for (int n = 1; !error && isWanted; ++n) {
    error = file.moveTo(tried);
    if (error != std::errc::file_exists) break;
    error.clear();
    tried = folder + u'/' + downloadFolder::numbered(name, n);
  }
  return {tried, file.size(), error ? QString::fromLocal8Bit(error.message().c_str()) : QString()};
}

DownloadManager::DownloadManager(SettingsStore& settings, MainLoop& main, IoPool& pool,
                                 FileTransfers& transfers, FreeSpace freeSpace)
    : m_settings(settings), m_main(main), m_workers(pool.workers()),
      m_listing(pool.makeWorkerStrand()), m_transfers(transfers),
      m_freeSpace(std::move(freeSpace)) {
  m_progressTimer.setInterval(kProgressInterval);
  connect(&m_progressTimer, &QTimer::timeout, this, &DownloadManager::publishProgress);
  refreshSaved();
}

DownloadManager::~DownloadManager() {
  *m_alive = false;
  for (auto& [id, running] : m_running) {
    *running.isWanted = false;
    running.transfer->cancel();
  }
  dropOnWorker(std::move(m_resumeData));
}

std::optional<QString> DownloadManager::start(const QString& title, const QUrl& url,
                                              std::optional<qint64> expectedSize) {
  const QString folder = m_settings.downloadsPath();
  if (const auto error = downloadFolder::make(folder))
    return tr("Cannot create downloads folder: %1").arg(*error);
  if (expectedSize && m_freeSpace(folder) < withReserve(*expectedSize))
    return tr("Not enough free disk space for %1.").arg(formatByteCount(*expectedSize));
  const QString path = downloadFolder::freePath(folder, downloadFolder::fileName(url),
                                                [this](const auto& p) { return isTaken(p); });
  DownloadTask task{QUuid::createUuid(), title, url, QUrl::fromLocalFile(path)};
  task.expected = expectedSize.value_or(0);
  m_tasks.insert(m_tasks.begin(), task);
  launch(task.id, {});
  return std::nullopt;
}

bool DownloadManager::isTaken(const QString& path) const {
  const QUrl dest = QUrl::fromLocalFile(path);
  const bool isPromised =
      std::any_of(m_tasks.begin(), m_tasks.end(), [&](const DownloadTask& task) {
        return task.dest == dest && task.state.kind != Kind::Finished;
      });
  return isPromised || QFileInfo::exists(path);
}

void DownloadManager::launch(const QUuid& id, std::optional<ResumeData> resume) {
  const DownloadTask* task = row(id);
  if (!task) return;
  const quint64 number = ++m_launched;
  const QString folder = QFileInfo(task->dest.toLocalFile()).path();
  const auto hasRoom = [free = m_freeSpace, folder] { return free(folder) >= kLeastFree; };
  TransferSource source{task->url, folder, task->expected, std::move(resume), hasRoom};
  auto whenEnded = [this, &main = m_main, alive = m_alive, id, number](TransferEnd end) {
    main.post([this, alive, id, number, end = std::move(end)]() mutable {
      if (*alive) ended(id, number, std::move(end));
    });
  };
  m_running[id] = {number, m_transfers.start(std::move(source), std::move(whenEnded)),
                   std::make_shared<std::atomic<bool>>(true)};
  m_progressTimer.start();
  setState(id, {Kind::Downloading});
}

void DownloadManager::pause(const QUuid& id) {
  const auto found = m_running.find(id);
  if (found == m_running.end()) return;
  Transfer& running = found->second;
  running.resumesAtOnce = false;
  if (!std::exchange(running.isPausing, true)) running.transfer->pause();
}

void DownloadManager::resume(const QUuid& id) {
  const auto found = m_running.find(id);
  if (found != m_running.end()) {
    found->second.resumesAtOnce = found->second.isPausing;
    return;
  }
  std::optional<ResumeData> data;
  if (auto node = m_resumeData.extract(id)) data = std::move(node.mapped());
  launch(id, std::move(data));
}

void DownloadManager::cancel(const QUuid& id) {
  if (auto node = m_running.extract(id)) {
    *node.mapped().isWanted = false;
    node.mapped().transfer->cancel();
  }
  if (auto node = m_resumeData.extract(id)) dropOnWorker(std::move(node.mapped()));
  if (std::erase_if(m_tasks, [&](const auto& task) { return task.id == id; }) > 0)
    Q_EMIT tasksChanged();
}

void DownloadManager::clearFinished() {
  const auto isOver = [](const DownloadTask& task) {
    return task.state.kind == Kind::Finished || task.state.kind == Kind::Failed;
  };
  if (std::erase_if(m_tasks, isOver) > 0) Q_EMIT tasksChanged();
}

void DownloadManager::refreshSaved() {
  asio::post(m_listing,
             [this, &main = m_main, alive = m_alive, folder = m_settings.downloadsPath()] {
               PartFile::clearLeftovers(folder);
               main.post([this, alive, saved = downloadFolder::list(folder)]() mutable {
                 if (!*alive) return;
                 m_saved = std::move(saved);
                 Q_EMIT savedChanged();
               });
             });
}

void DownloadManager::publishProgress() {
  if (m_running.empty()) m_progressTimer.stop();
  bool hasChanged = false;
  for (const auto& [id, running] : m_running) {
    DownloadTask* task = row(id);
    const auto progress = running.transfer->progress();
    if (!task || !progress) continue;
    const qint64 expected = progress->expected > 0 ? progress->expected : task->expected;
    hasChanged |= task->received != progress->received || task->expected != expected;
    task->received = progress->received;
    task->expected = expected;
  }
  if (hasChanged) Q_EMIT tasksChanged();
}

void DownloadManager::ended(const QUuid& id, quint64 number, TransferEnd end) {
  if (!running(id, number)) return dropOnWorker(std::move(end));
  std::visit([&](auto& how) { onEnd(id, std::move(how)); }, end);
}

void DownloadManager::onEnd(const QUuid& id, TransferFinished end) {
  const DownloadTask* task = row(id);
  const Transfer& running = m_running.at(id);
  auto whenPlaced = [this, alive = m_alive, id, number = running.number](const Placed& placed) {
    if (*alive) moved(id, number, placed);
  };
  asio::post(m_workers,
             [&main = m_main, whenPlaced, file = std::move(end.file),
              path = task->dest.toLocalFile(), name = downloadFolder::fileName(task->url),
              isWanted = running.isWanted]() mutable {
               const Placed placed = place(*file, path, name, *isWanted);
               file.reset();
               main.post([whenPlaced, placed] { whenPlaced(placed); });
             });
}

void DownloadManager::onEnd(const QUuid& id, TransferPaused end) {
  publishProgress();
  const auto running = m_running.extract(id);
  // Whoever heard of the progress may have cancelled the row.
  if (!running) return dropOnWorker(std::move(end));
  if (running.mapped().resumesAtOnce) return launch(id, std::move(end.resume));
  if (end.resume) m_resumeData.insert_or_assign(id, std::move(*end.resume));
  setState(id, {Kind::Paused});
}

void DownloadManager::onEnd(const QUuid& id, const TransferFailed& end) {
  m_running.erase(id);
  setState(id, {Kind::Failed, end.reason});
}

void DownloadManager::moved(const QUuid& id, quint64 number, const Placed& placed) {
  if (!running(id, number)) return refreshSaved();
  m_running.erase(id);
  if (!placed.error.isEmpty()) return setState(id, {Kind::Failed, placed.error});
  DownloadTask& task = *row(id);
  task.dest = QUrl::fromLocalFile(placed.path);
  task.expected = placed.size; // nobody may have known it before
  task.received = task.expected;
  setState(id, {Kind::Finished});
  refreshSaved();
}

void DownloadManager::setState(const QUuid& id, State state) {
  row(id)->state = std::move(state);
  Q_EMIT tasksChanged();
}

template <class Held>
void DownloadManager::dropOnWorker(Held held) {
  asio::post(m_workers, [held = std::move(held)] {});
}

DownloadManager::Transfer* DownloadManager::running(const QUuid& id, quint64 number) {
  const auto found = m_running.find(id);
  return found != m_running.end() && found->second.number == number ? &found->second : nullptr;
}

DownloadTask* DownloadManager::row(const QUuid& id) {
  const auto found =
      std::find_if(m_tasks.begin(), m_tasks.end(), [&](const auto& task) { return task.id == id; });
  return found == m_tasks.end() ? nullptr : &*found;
}

} // namespace vellum
