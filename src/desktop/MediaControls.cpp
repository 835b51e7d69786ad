#include "desktop/MediaControls.h"

namespace vellum {

bool isJump(const MediaStatus& before, const MediaStatus& now) {
  if (!before.isLoaded || !now.isLoaded || before.title != now.title) return false;
  const double moved = now.position - before.position;
  return moved < 0 || moved > 2;
}

} // namespace vellum
