// Files of the film catalog on their way into the downloads folder, and what is there already.
#pragma once
#include "base/IoPool.h"
#include "base/MainLoop.h"
#include "net/FileTransfers.h"
#include "storage/CacheManager.h"
#include "storage/DownloadTask.h"
#include "storage/SettingsStore.h"
#include <QObject>
#include <QTimer>
#include <map>

namespace vellum {

// Main thread; bytes are written on the thread of the transfers, files are moved, removed and
// listed on the pool's workers. Transfers last as long as the program. A file gets its name when it
// is complete, and never in place of another.
class DownloadManager final : public QObject {
  Q_OBJECT

public:
  static constexpr std::int64_t kReserve = 200 * kMiB; // free space that a download must leave
  // With less than this a transfer under way fails: less than the reserve, so that what was allowed
  // to begin does not fail by what the file system itself needs.
  static constexpr std::int64_t kLeastFree = 100 * kMiB;
  static constexpr std::chrono::milliseconds kProgressInterval{100};

  using FreeSpace = std::function<std::int64_t(const QString& path)>; // bytes; any thread

  // All outlive it. Removes what a dead program has left in the folder, and fills `saved`.
  DownloadManager(SettingsStore& settings, MainLoop& main, IoPool& pool, FileTransfers& transfers,
                  FreeSpace freeSpace = &CacheManager::freeSpace);
  // Ends every transfer; their partial files go.
  ~DownloadManager() override;

  const DownloadTasks& tasks() const { return m_tasks; } // newest first
  const SavedFiles& saved() const { return m_saved; }    // newest first

  // Nothing if the download has begun, else a message for the user. `expectedSize` in bytes;
  // without it the free space is not asked for.
  std::optional<QString> start(const QString& title, const QUrl& url,
                               std::optional<qint64> expectedSize);
  // Does nothing if no transfer is running. The row is paused once the transfer has stopped.
  void pause(const QUuid& id);
  // Goes on, or begins again if there is nothing to go on from; also after an end.
  void resume(const QUuid& id);
  // Removes the row and its partial file.
  void cancel(const QUuid& id);
  // Removes the rows of what has ended; no file is touched.
  void clearFinished();
  // Reads the folder in the background.
  void refreshSaved();

  // Takes over how far the transfers are; called at each kProgressInterval.
  void publishProgress();

Q_SIGNALS:
  void tasksChanged(); // for progress alone at most once in kProgressInterval
  void savedChanged();

private:
  using State = DownloadTask::State;
  using Kind = State::Kind;
  using Flag = std::shared_ptr<std::atomic<bool>>;

  // A launched transfer, up to the move of its file.
  struct Transfer {
    quint64 number; // tells it from an earlier one of the same row
    std::shared_ptr<FileTransfer> transfer;
    Flag isWanted; // falls when the file must not appear any more
    bool isPausing = false;
    bool resumesAtOnce = false; // resumed before the pause was through
  };

  struct Placed;
  static Placed place(PartFile& file, const QString& path, const QString& name,
                      const std::atomic<bool>& isWanted);

  bool isTaken(const QString& path) const;
  void launch(const QUuid& id, std::optional<ResumeData> resume);
  void ended(const QUuid& id, quint64 number, TransferEnd end);
  void onEnd(const QUuid& id, TransferFinished end);
  void onEnd(const QUuid& id, TransferPaused end);
  void onEnd(const QUuid& id, const TransferFailed& end);
  void moved(const QUuid& id, quint64 number, const Placed& placed);
  void setState(const QUuid& id, State state); // of a row that is there
  // Removing a large file takes its time.
  template <class Held>
  void dropOnWorker(Held held);
  // Of the row, if there is one and it was launched with this number.
  Transfer* running(const QUuid& id, quint64 number);
  DownloadTask* row(const QUuid& id);

  SettingsStore& m_settings;
  MainLoop& m_main;
  const asio::thread_pool::executor_type m_workers;
  const WorkerStrand m_listing; // so that the last listing asked for is the one that stays
  FileTransfers& m_transfers;
  const FreeSpace m_freeSpace;
  DownloadTasks m_tasks;
  SavedFiles m_saved;
  std::map<QUuid, Transfer> m_running;
  std::map<QUuid, ResumeData> m_resumeData;
  quint64 m_launched = 0;
  QTimer m_progressTimer;                                       // runs while a transfer does
  std::shared_ptr<bool> m_alive = std::make_shared<bool>(true); // main thread only
};

} // namespace vellum
