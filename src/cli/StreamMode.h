// The process in stream mode, from its services to its exit code.
#pragma once
#include "app/Runtime.h"
#include "cli/Arguments.h"

namespace vellum {

// Main thread, with an application object and no window system. Runs the main loop until the
// stream fails or SIGINT or SIGTERM ends it; gives the exit code.
int runStreamMode(Runtime& runtime, const Arguments& arguments, const QStringList& defaultTrackers,
                  TimePoint processStart);

} // namespace vellum
