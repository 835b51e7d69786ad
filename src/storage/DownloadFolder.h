// The rules of the downloads folder: how files are named, and which of them are films. Any thread.
#pragma once
#include "storage/DownloadTask.h"
#include <functional>
#include <optional>

namespace vellum::downloadFolder {

// The last component of the address's path, decoded; what separates folders becomes "_", and so do
// control characters and those that turn the direction of a text.
QString fileName(const QUrl& url);

// The n-th other name for a file: "film.mp4" becomes "film 2.mp4"; without an extension the name
// ends in a point. The stem is cut where a file system could not take the whole, 255 bytes of
// UTF-8.
QString numbered(const QString& name, int n);

// The first path for `name` in `folder` that is not taken: as it is (cut like a numbered one), or
// numbered from 1.
QString freePath(const QString& folder, const QString& name,
                 const std::function<bool(const QString& path)>& isTaken);

// Whether a file of that name counts as a saved film.
bool isVideo(const QString& name);

// Makes the folder and those above it. Nothing on success, else the reason.
std::optional<QString> make(const QString& folder);

inline const QDateTime kDistantPast = QDateTime(QDate(1, 1, 1), QTime(0, 0), Qt::UTC);

// The films at the folder's top level, hidden ones left out, newest first. Empty if it cannot be
// read.
SavedFiles list(const QString& folder);

} // namespace vellum::downloadFolder
