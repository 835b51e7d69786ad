#include "ui/manage/DownloadsModel.h"
#include "base/Text.h"
#include "ui/player/StreamTexts.h"

namespace vellum::ui {

namespace {

using Kind = DownloadTask::State::Kind;

QString phaseOf(Kind kind) {
  switch (kind) {
  case Kind::Failed: return QStringLiteral("failed");
  case Kind::Downloading: return QStringLiteral("downloading");
  case Kind::Paused: return QStringLiteral("paused");
  case Kind::Finished: return QStringLiteral("finished");
  }
  return {};
}

QString detailOf(const DownloadTask& task) {
  switch (task.state.kind) {
  case Kind::Failed: return DownloadsModel::tr("Failed: %1").arg(oneLine(task.state.reason));
  case Kind::Finished:
    return DownloadsModel::tr("Saved to %1").arg(printable(task.dest.toLocalFile()));
  default: break;
  }
  // A total that is unknown is a dash.
  return DownloadsModel::tr("%1 of %2")
      .arg(formatByteCount(task.received), formatByteCount(task.expected > 0 ? task.expected : -1));
}

double progressOf(const DownloadTask& task) {
  if (task.expected <= 0) return -1;
  return std::clamp(double(task.received) / double(task.expected), 0.0, 1.0);
}

QString countsOf(const SessionSnapshot& snap) {
  StreamState numbers;
  numbers.peers = snap.peers;
  numbers.down = snap.downRate;
  numbers.up = snap.upRate;
  return DownloadsModel::tr("%1 · uploaded %2")
      .arg(numbersText(numbers), formatByteCount(snap.uploaded));
}

} // namespace

DownloadsModel::DownloadsModel(const Services& services) : m_services(services) {
  connect(&services.downloads, &DownloadManager::tasksChanged, this, &DownloadsModel::updateTasks);
  connect(&services.engine, &TorrentEngine::entriesChanged, this, &DownloadsModel::updateTorrents);
  connect(&services.playback, &PlaybackCoordinator::streamChanged, this,
          &DownloadsModel::updateTorrents);
  connect(&services.cache, &CacheManager::measured, this, &DownloadsModel::measured);
  updateTasks();
  updateTorrents();
}

QString DownloadsModel::freeSpace() const {
  return tr("Free space: %1").arg(formatByteCount(m_services.cache.freeBytes()));
}

bool DownloadsModel::hasFinished() const {
  const auto& tasks = m_services.downloads.tasks();
  return std::any_of(tasks.begin(), tasks.end(), [](const DownloadTask& task) {
    return task.state.kind == Kind::Finished || task.state.kind == Kind::Failed;
  });
}

void DownloadsModel::updateTasks() {
  std::vector<DownloadRowItem> rows;
  for (const DownloadTask& task : m_services.downloads.tasks())
    rows.push_back({task.id.toString(), oneLine(task.title), phaseOf(task.state.kind),
                    detailOf(task), progressOf(task)});
  m_tasks.setRows(rows);
  Q_EMIT changed();
}

bool DownloadsModel::isStreaming(const QString& key) const {
  const auto session = m_services.playback.activeSession();
  return session != nullptr && session->key() == key;
}

void DownloadsModel::updateTorrents() {
  std::vector<TorrentRowItem> rows;
  for (const TorrentEngine::Entry& entry : m_services.engine.entries()) {
    const bool streams = isStreaming(entry.id);
    const QString name = oneLine(entry.snap.name);
    rows.push_back({entry.id, name.isEmpty() ? oneLine(entry.title) : name,
                    streams ? tr("Streaming") : tr("Seeding"), streams, countsOf(entry.snap)});
  }
  m_torrents.setRows(rows);
  Q_EMIT changed();
}

void DownloadsModel::pause(const QString& key) {
  m_services.downloads.pause(QUuid::fromString(key));
}
void DownloadsModel::resume(const QString& key) {
  m_services.downloads.resume(QUuid::fromString(key));
}
void DownloadsModel::cancel(const QString& key) {
  m_services.downloads.cancel(QUuid::fromString(key));
}

void DownloadsModel::play(const QString& key) {
  for (const DownloadTask& task : m_services.downloads.tasks())
    if (task.id.toString() == key && task.state.kind == Kind::Finished)
      return m_services.entries.playLocal(QUrl(task.dest));
}

void DownloadsModel::stopTorrent(const QString& key) {
  const bool streams = isStreaming(key);
  // By value in effect: what ends on the way updates the rows, and may take the caller's text with
  // it.
  m_services.engine.stop(QString(key));
  if (streams) m_services.playback.cancel();
}

} // namespace vellum::ui
