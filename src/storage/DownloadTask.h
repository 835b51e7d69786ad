// The rows of the downloads list, and of the list of what was saved. Plain values; any thread.
#pragma once
#include <QDateTime>
#include <QString>
#include <QUrl>
#include <QUuid>
#include <vector>

namespace vellum {

struct DownloadTask {
  struct State {
    enum class Kind { Failed, Downloading, Paused, Finished };
    Kind kind = Kind::Downloading;
    QString reason = {}; // of a failure, for the user
    bool operator==(const State&) const = default;
  };

  QUuid id;
  QString title;
  QUrl url;
  QUrl dest;           // the final file, local
  qint64 received = 0; // bytes
  qint64 expected = 0; // bytes; 0 while unknown
  State state = {};
  bool operator==(const DownloadTask&) const = default;
};

using DownloadTasks = std::vector<DownloadTask>;

struct SavedFile {
  QUrl url;
  qint64 size = 0; // bytes; 0 if unknown
  QDateTime added; // when it was made; kDistantPast if unknown
  bool operator==(const SavedFile&) const = default;
};

using SavedFiles = std::vector<SavedFile>;

} // namespace vellum
