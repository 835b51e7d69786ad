// "vellum --search": one search over the enabled providers, told on standard output.
#pragma once
#include "app/Runtime.h"

namespace vellum {

// Main thread, with an application object and no window system. Runs the main loop until every
// provider has answered or failed. Each is told on a line of its own as it comes, then the merged
// results. Gives the exit code: 0 if any provider answered, else 1.
int runSearchMode(Runtime& runtime, const QString& words);

} // namespace vellum
