#include "platform/Memory.h"

namespace vellum::platform {

void giveMemoryBack() {} // the system's allocator does

} // namespace vellum::platform
