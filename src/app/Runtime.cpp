#include "app/Runtime.h"
#include "platform/Folders.h"

namespace vellum {

Runtime::Runtime()
    : preferences(folders::preferences() + QStringLiteral("/VellumApp/preferences.json")) {}

SessionEnvironment Runtime::sessionEnvironment(const QStringList& trackers) {
  return {pool, main, clock, random, http.fetcher(), trackers};
}

} // namespace vellum
