// What each system needs to keep our descriptors from a child.
#pragma once
#include <spawn.h>

namespace vellum::platform {

// Everything but standard input, output and error is closed in the child.
void keepDescriptorsFromChild(posix_spawn_file_actions_t& actions, short& flags);

} // namespace vellum::platform
