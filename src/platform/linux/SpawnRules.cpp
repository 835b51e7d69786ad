#include "platform/SpawnRules.h"

namespace vellum::platform {

void keepDescriptorsFromChild(posix_spawn_file_actions_t& actions, short& /*flags*/) {
  posix_spawn_file_actions_addclosefrom_np(&actions, 3);
}

} // namespace vellum::platform
