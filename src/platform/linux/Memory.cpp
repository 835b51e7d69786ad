#include "platform/Memory.h"
#include <cstdlib> // says which C library this is
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace vellum::platform {

void giveMemoryBack() {
#ifdef __GLIBC__
  mallopt(M_ARENA_MAX, 2);
  // Blocks of that size go back at once; by itself the limit rises with the largest one freed.
  mallopt(M_MMAP_THRESHOLD, 1024 * 1024); // bytes
#endif
}

} // namespace vellum::platform
