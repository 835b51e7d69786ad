// What of the cache folder may go: all of it, unless other things have their place there.
#pragma once
#include "storage/CachePolicy.h"
#include <QStringList>
#include <atomic>

namespace vellum {

// A value; any thread. The saved downloads are never touched. A folder that holds the user's home
// or the program's own records, or that lies where downloads are saved, is shared: of that only
// what the program itself has put there may go. Symbolic links are never followed, and a relative
// path, which would mean whatever folder the program was started in, means none.
class CacheFolder {
public:
  // `records`: folders that are never a cache, nor what is beside it in them.
  CacheFolder(const QString& path, const QString& downloads, const QStringList& records);

  // Regular files. Ends early, with what it has found, once `alive` falls.
  std::vector<CachedFile> removable(const std::atomic<bool>& alive) const;
  // Removes everything that may go but the folder of the HTTP cache, files in use included.
  void clear() const;

  // All regular files below a folder.
  static std::vector<CachedFile> filesBelow(const QString& path, const std::atomic<bool>& alive);
  // Where the cache is put when the user points at `folder`: there, or in a folder of its own in
  // it, if it holds anything that is not a cache's.
  static QString placeIn(const QString& folder);

  static inline const QString kHttpCache = QStringLiteral("URLCache");
  static inline const QString kTorrents = QStringLiteral("Torrents");

private:
  QStringList roots() const;
  void removeTree(const QString& path) const;

  QString m_path;    // canonical; empty for none
  QString m_skipped; // canonical; the downloads, if they lie below
  bool m_isShared = false;
};

} // namespace vellum
