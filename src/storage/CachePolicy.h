// Which files of the cache have to go. Pure.
#pragma once
#include <QDateTime>
#include <QString>
#include <cstdint>
#include <vector>

namespace vellum {

struct CachedFile {
  QString path;
  QDateTime modified;     // invalid: unknown, and older than every other
  std::int64_t bytes = 0; // allocated
};

// Files last changed more than `days` days before `now`; none if `days` is not above 0.
std::vector<CachedFile> tooOld(const std::vector<CachedFile>& files, std::int64_t days,
                               const QDateTime& now);

// The oldest files that have to go until the rest takes no more than `limit` bytes.
std::vector<CachedFile> overLimit(std::vector<CachedFile> files, std::int64_t limit);

} // namespace vellum
