// The one folder of everything that may be thrown away: measured, kept within limits, emptied.
#pragma once
#include "base/IoPool.h"
#include "base/MainLoop.h"
#include "net/HttpClient.h"
#include "storage/CacheFolder.h"
#include "storage/SettingsStore.h"
#include <QDateTime>
#include <QObject>
#include <atomic>
#include <functional>
#include <memory>

namespace vellum {

// Main thread; walks and removals run on the pool's workers. Every failure of the file system is
// passed over. Symbolic links are never followed: what they lead to is not the cache's.
class CacheManager final : public QObject {
  Q_OBJECT
  Q_PROPERTY(qint64 usedBytes READ usedBytes NOTIFY measured)
  Q_PROPERTY(qint64 freeBytes READ freeBytes NOTIFY measured)

public:
  using WallClock = std::function<QDateTime()>; // called on a worker

  // All outlive it. Installs the HTTP cache, measures, and enforces the limits.
  CacheManager(SettingsStore& settings, MainLoop& main, IoPool& pool, HttpClient& http,
               WallClock now = &QDateTime::currentDateTimeUtc);
  // A walk under way stops at its next file; its result is dropped.
  ~CacheManager() override;

  // Allocated bytes of all files below the cache folder, and free bytes where downloads go; 0
  // until the first measurement has ended.
  qint64 usedBytes() const { return m_usedBytes; }
  qint64 freeBytes() const { return m_freeBytes; }

  // The folder of the torrents; made at each call.
  QString torrentDir() const;

  void refresh();
  // Removes files by the age and size limits, but for those in use, and measures.
  void enforce();
  // Empties the cache, and measures. A running session keeps its open file until it stops.
  void clear();
  void configureURLCache();

  static std::int64_t freeSpace(const QString& path);
  static std::int64_t directorySize(const QString& path);

Q_SIGNALS:
  void measured();

private:
  using Alive = std::shared_ptr<std::atomic<bool>>;

  CacheFolder folder() const;
  // Runs `work` on a worker, after whatever was asked for before, and then measures.
  void inBackground(std::function<void()> work);

  SettingsStore& m_settings;
  MainLoop& m_main;
  asio::strand<asio::thread_pool::executor_type> m_worker;
  HttpClient& m_http;
  WallClock m_now;
  qint64 m_usedBytes = 0;
  qint64 m_freeBytes = 0;
  Alive m_alive = std::make_shared<std::atomic<bool>>(true); // shared with what runs on workers
};

} // namespace vellum
