#include "platform/SpawnRules.h"

namespace vellum::platform {

void keepDescriptorsFromChild(posix_spawn_file_actions_t& /*actions*/, short& flags) {
  flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
}

} // namespace vellum::platform
