// The state of every address of a provider, side by side.
#pragma once
#include "base/Clock.h"
#include "providers/ProviderClient.h"

namespace vellum {

struct MirrorHealth {
  QString url;
  bool reachable = false;       // the host answered at all
  std::optional<qint64> millis; // time of the attempt; absent when the host did not answer
  bool formatOK = false;        // the answer parsed as the provider's format
  QString detail;               // a sentence for the user
  bool operator==(const MirrorHealth&) const = default;
};

// No state; any executor. Parses where it is awaited: keep large answers off the main thread.
struct ProviderHealthChecker {
  // Asks every address, one after the other, and remembers none. Never throws: a failure is a line,
  // a cancellation too.
  static Flow<std::vector<MirrorHealth>> check(ProviderConfig config, Transport transport,
                                               const PreferenceStore& memory, const Clock& clock);
};

} // namespace vellum
