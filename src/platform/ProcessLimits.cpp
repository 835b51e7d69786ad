#include "platform/ProcessLimits.h"
#include <algorithm>
#include <csignal>
#include <sys/resource.h>

namespace vellum::platform {

void raiseProcessLimits() {
  constexpr rlim_t kEnough = 8192; // macOS refuses "unlimited"
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < kEnough) {
    limit.rlim_cur = std::min(limit.rlim_max, kEnough);
    setrlimit(RLIMIT_NOFILE, &limit);
  }
  std::signal(SIGPIPE, SIG_IGN);
}

} // namespace vellum::platform
