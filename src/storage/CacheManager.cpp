#include "storage/CacheManager.h"
#include "platform/Disk.h"
#include "storage/CachePolicy.h"
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <limits>

namespace vellum {

namespace {

constexpr std::int64_t kBytesPerMB = 1048576;
const QString kHttpCache = QStringLiteral("URLCache");

std::vector<CachedFile> filesBelow(const QString& folder) {
  std::vector<CachedFile> files;
  QDirIterator walk(folder, QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                    QDirIterator::Subdirectories);
  while (walk.hasNext()) {
    const QString path = walk.next();
    files.push_back({path, walk.fileInfo().lastModified(), disk::allocatedSize(path)});
  }
  return files;
}

void enforceLimits(const QString& folder, std::int64_t limit, std::int64_t days) {
  auto files = filesBelow(folder);
  for (const CachedFile& file : tooOld(files, days, QDateTime::currentDateTime()))
    QFile::remove(file.path);
  std::erase_if(files, [](const CachedFile& file) { return !QFile::exists(file.path); });
  for (const CachedFile& file : overLimit(std::move(files), limit))
    QFile::remove(file.path);
}

void removeChildren(const QString& folder) {
  const auto children = QDir(folder).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                                   QDir::NoDotAndDotDot);
  for (const QFileInfo& child : children) {
    if (child.fileName() == kHttpCache)
      continue;
    if (child.isDir() && !child.isSymLink())
      QDir(child.filePath()).removeRecursively();
    else
      QFile::remove(child.filePath());
  }
}

} // namespace

CacheManager::CacheManager(SettingsStore& settings, MainLoop& main, IoPool& pool, HttpClient& http)
    : m_settings(settings), m_main(main), m_pool(pool), m_http(http) {
  configureURLCache();
  refresh();
  enforce();
}

CacheManager::~CacheManager() = default;

QString CacheManager::torrentDir() const {
  const QString folder = m_settings.cachePath() + QStringLiteral("/Torrents");
  QDir().mkpath(folder);
  return folder;
}

void CacheManager::configureURLCache() {
  const QString folder = m_settings.cachePath() + u'/' + kHttpCache;
  QDir().mkpath(folder);
  m_http.setCacheDirectory(folder);
}

void CacheManager::refresh() {
  asio::post(m_pool.workers(),
             [this, &main = m_main, alive = std::weak_ptr(m_alive), cache = m_settings.cachePath(),
              downloads = m_settings.downloadsPath()] {
               const std::int64_t used = directorySize(cache);
               const std::int64_t free = freeSpace(downloads);
               main.post([this, alive, used, free] {
                 if (alive.expired())
                   return;
                 m_usedBytes = used;
                 m_freeBytes = free;
                 Q_EMIT measured();
               });
             });
}

void CacheManager::inBackground(std::function<void()> work) {
  asio::post(m_pool.workers(),
             [this, &main = m_main, alive = std::weak_ptr(m_alive), work = std::move(work)] {
               work();
               main.post([this, alive] {
                 if (!alive.expired())
                   refresh();
               });
             });
}

void CacheManager::enforce() {
  std::int64_t limit = 0;
  if (__builtin_mul_overflow(m_settings.cacheLimitMB(), kBytesPerMB, &limit))
    limit = m_settings.cacheLimitMB() > 0 ? std::numeric_limits<std::int64_t>::max() : -1;
  inBackground([cache = m_settings.cachePath(), limit, days = m_settings.autoCleanDays()] {
    enforceLimits(cache, limit, days);
  });
}

void CacheManager::clear() {
  m_http.clearCache();
  inBackground([cache = m_settings.cachePath()] { removeChildren(cache); });
}

std::int64_t CacheManager::freeSpace(const QString& path) { return disk::freeSpace(path); }

std::int64_t CacheManager::directorySize(const QString& path) {
  std::int64_t total = 0;
  for (const CachedFile& file : filesBelow(path))
    total += file.bytes;
  return total;
}

} // namespace vellum
