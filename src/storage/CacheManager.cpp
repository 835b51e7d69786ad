#include "storage/CacheManager.h"
#include "platform/Disk.h"
#include "storage/CacheFolder.h"
#include "storage/HeldFile.h"
#include <QDir>
#include <QFile>
#include <limits>

namespace vellum {

namespace {

std::int64_t sizeOf(const std::vector<CachedFile>& files) {
  std::int64_t total = 0;
  for (const CachedFile& file : files) total += file.bytes;
  return total;
}

struct Limits {
  std::int64_t bytes;
  std::int64_t days;
  QDateTime now;
};

void enforceLimits(const CacheFolder& folder, const Limits& limits,
                   const std::atomic<bool>& alive) {
  auto files = folder.removable(alive);
  if (!alive) // the list may be cut short, and then says nothing about the size
    return;
  for (const CachedFile& file : tooOld(files, limits.days, limits.now))
    removeUnlessInUse(file.path);
  std::erase_if(files, [](const CachedFile& file) { return !QFile::exists(file.path); });
  for (const CachedFile& file : overLimit(std::move(files), limits.bytes))
    removeUnlessInUse(file.path);
}

} // namespace

CacheManager::CacheManager(SettingsStore& settings, MainLoop& main, IoPool& pool, HttpClient& http,
                           WallClock now)
    : m_settings(settings), m_main(main), m_worker(asio::make_strand(pool.workers())), m_http(http),
      m_now(std::move(now)) {
  configureURLCache();
  refresh();
  enforce();
}

CacheManager::~CacheManager() { *m_alive = false; }

QString CacheManager::torrentDir() const {
  const QString folder = QDir(m_settings.cachePath()).filePath(CacheFolder::kTorrents);
  QDir().mkpath(folder);
  return folder;
}

void CacheManager::configureURLCache() {
  const QDir cache(m_settings.cachePath());
  if (cache.isRelative()) return;
  const QString folder = cache.filePath(CacheFolder::kHttpCache);
  QDir().mkpath(folder);
  m_http.setCacheDirectory(folder);
}

void CacheManager::refresh() {
  asio::post(m_worker, [this, &main = m_main, alive = m_alive, cache = m_settings.cachePath(),
                        downloads = m_settings.downloadsPath()] {
    const std::int64_t used = sizeOf(CacheFolder::filesBelow(cache, *alive));
    const std::int64_t free = freeSpace(downloads);
    main.post([this, alive, used, free] {
      if (!*alive) return;
      m_usedBytes = used;
      m_freeBytes = free;
      Q_EMIT measured();
    });
  });
}

void CacheManager::inBackground(std::function<void()> work) {
  asio::post(m_worker, [this, &main = m_main, alive = m_alive, work = std::move(work)] {
    work();
    main.post([this, alive] {
      if (*alive) refresh();
    });
  });
}

CacheFolder CacheManager::folder() const {
  return {m_settings.cachePath(),
          m_settings.downloadsPath(),
          {QDir::homePath(), SettingsStore::appSupport()}};
}

void CacheManager::enforce() {
  std::int64_t bytes = 0;
  if (__builtin_mul_overflow(m_settings.cacheLimitMB(), kMiB, &bytes))
    bytes = m_settings.cacheLimitMB() > 0 ? std::numeric_limits<std::int64_t>::max() : -1;
  inBackground(
      [folder = folder(), bytes, days = m_settings.autoCleanDays(), now = m_now, alive = m_alive] {
        enforceLimits(folder, {bytes, days, now()}, *alive);
      });
}

void CacheManager::clear() {
  inBackground([folder = folder(), forgotten = m_http.clearCache()] {
    if (!forgotten.isEmpty()) QDir(forgotten).removeRecursively();
    folder.clear();
  });
}

std::int64_t CacheManager::freeSpace(const QString& path) { return disk::freeSpace(path); }

std::int64_t CacheManager::directorySize(const QString& path) {
  return sizeOf(CacheFolder::filesBelow(path, std::atomic<bool>(true)));
}

} // namespace vellum
