#include "storage/CacheFolder.h"
#include "platform/Disk.h"
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <algorithm>
#include <filesystem>

namespace vellum {

namespace {

namespace fs = std::filesystem;

constexpr auto kEverything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

// Without links, also of what does not exist yet; empty for a relative path.
QString canonical(const QString& path) {
  if (QDir::isRelativePath(path)) return {};
  const QString clean = QDir::cleanPath(path);
  std::error_code error;
  const fs::path found = fs::weakly_canonical(QFile::encodeName(clean).toStdString(), error);
  return error ? clean : QDir::cleanPath(QFile::decodeName(found.string().c_str()));
}

// Whether `path` is `folder` or lies in it; both canonical. A volume may have two spellings, or
// two places, for one folder.
bool isWithin(const QString& path, const QString& folder) {
  if (path.isEmpty() || folder.isEmpty()) return false;
  const fs::path wanted = QFile::encodeName(folder).toStdString();
  for (fs::path at = QFile::encodeName(path).toStdString();; at = at.parent_path()) {
    std::error_code error;
    if (at == wanted || fs::equivalent(at, wanted, error)) return true;
    if (at == at.parent_path()) return false;
  }
}

} // namespace

CacheFolder::CacheFolder(const QString& path, const QString& downloads, const QStringList& records)
    : m_path(canonical(path)) {
  const QString saved = canonical(downloads);
  const bool isBelowSaved = isWithin(m_path, saved);
  m_isShared = isBelowSaved || std::any_of(records.begin(), records.end(), [&](const auto& each) {
                 return isWithin(canonical(each), m_path);
               });
  if (!isBelowSaved && isWithin(saved, m_path)) m_skipped = saved;
}

QStringList CacheFolder::roots() const {
  if (m_path.isEmpty()) return {};
  if (!m_isShared) return {m_path};
  const QDir cache(m_path);
  QStringList own{cache.filePath(kHttpCache)};
  const QDir streams(cache.filePath(kTorrents + QStringLiteral("/streams")));
  static const QRegularExpression infoHash(QStringLiteral("\\A[0-9a-f]{40}\\z"));
  for (const QString& name : streams.entryList(QDir::Dirs | QDir::NoSymLinks))
    if (infoHash.match(name).hasMatch()) own.append(streams.filePath(name));
  own.removeIf([](const QString& root) { return canonical(root) != root; });
  return own;
}

std::vector<CachedFile> CacheFolder::filesBelow(const QString& path,
                                                const std::atomic<bool>& alive) {
  std::vector<CachedFile> files;
  if (QDir::isRelativePath(path)) return files;
  QDirIterator walk(path, QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                    QDirIterator::Subdirectories);
  while (alive && walk.hasNext()) {
    const QString file = walk.next();
    files.push_back({file, walk.fileInfo().lastModified(), disk::allocatedSize(file)});
  }
  return files;
}

std::vector<CachedFile> CacheFolder::removable(const std::atomic<bool>& alive) const {
  std::vector<CachedFile> files;
  for (const QString& root : roots()) {
    auto found = filesBelow(root, alive);
    std::move(found.begin(), found.end(), std::back_inserter(files));
  }
  if (!m_skipped.isEmpty())
    std::erase_if(files, [below = m_skipped + u'/'](const CachedFile& file) {
      return file.path.startsWith(below);
    });
  return files;
}

void CacheFolder::clear() const {
  if (m_path.isEmpty()) return;
  if (m_isShared) {
    const QString httpCache = QDir(m_path).filePath(kHttpCache);
    for (const QString& root : roots())
      if (root != httpCache) removeTree(root);
    return;
  }
  for (const QString& name : QDir(m_path).entryList(kEverything))
    if (name != kHttpCache) removeTree(QDir(m_path).filePath(name));
}

void CacheFolder::removeTree(const QString& path) const {
  const QFileInfo info(path);
  if (info.isSymLink() || !info.isDir()) {
    QFile::remove(path);
  } else if (!isWithin(m_skipped, path)) {
    QDir(path).removeRecursively();
  } else if (!isWithin(path, m_skipped)) {
    for (const QString& name : QDir(path).entryList(kEverything))
      removeTree(QDir(path).filePath(name));
  }
}

QString CacheFolder::placeIn(const QString& folder) {
  const QStringList there = QDir(folder).entryList(kEverything);
  const bool isOurs = std::all_of(there.begin(), there.end(), [](const QString& name) {
    return name == kHttpCache || name == kTorrents;
  });
  return isOurs ? folder : QDir(folder).filePath(QStringLiteral("VellumApp Cache"));
}

} // namespace vellum
