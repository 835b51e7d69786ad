#include "storage/CachePolicy.h"
#include <algorithm>
#include <iterator>
#include <limits>

namespace vellum {

namespace {

constexpr double kMillisecondsPerDay = 86'400'000;

qint64 ageKey(const CachedFile& file) {
  return file.modified.isValid() ? file.modified.toMSecsSinceEpoch()
                                 : std::numeric_limits<qint64>::min();
}

} // namespace

std::vector<CachedFile> tooOld(const std::vector<CachedFile>& files, std::int64_t days,
                               const QDateTime& now) {
  std::vector<CachedFile> old;
  if (days <= 0) return old;
  // In floating point: any number of days may stand in the settings.
  const double oldest = static_cast<double>(now.toMSecsSinceEpoch()) -
                        static_cast<double>(days) * kMillisecondsPerDay;
  std::copy_if(files.begin(), files.end(), std::back_inserter(old),
               [&](const CachedFile& file) { return static_cast<double>(ageKey(file)) < oldest; });
  return old;
}

std::vector<CachedFile> overLimit(std::vector<CachedFile> files, std::int64_t limit) {
  std::stable_sort(files.begin(), files.end(),
                   [](const CachedFile& a, const CachedFile& b) { return ageKey(a) < ageKey(b); });
  std::int64_t total = 0;
  for (const CachedFile& file : files) total += file.bytes;
  auto next = files.begin();
  for (; next != files.end() && total > limit; ++next) total -= next->bytes;
  files.erase(next, files.end());
  return files;
}

} // namespace vellum
