#include "app/Runtime.h"
#include "platform/Folders.h"

namespace vellum {

namespace {
// Bytes: tens of thousands of peers, many times what a tracker sends.
constexpr std::int64_t kLargestTrackerReply = 256 * kKiB;
} // namespace

Runtime::Runtime()
    : Runtime(folders::preferences() + QStringLiteral("/VellumApp/preferences.json")) {}

Runtime::Runtime(const QString& preferencesFile) : preferences(preferencesFile) {}

SessionEnvironment Runtime::sessionEnvironment(const QStringList& trackers) {
  return {pool, main, clock, random, http.fetcher(kLargestTrackerReply), trackers};
}

} // namespace vellum
