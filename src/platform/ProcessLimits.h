// What the process asks of the operating system for itself.
#pragma once

namespace vellum::platform {

// As many open files as the system allows at all (a swarm and its readers need hundreds), and no
// end by a pipe or socket whose other side has gone.
void raiseProcessLimits();

} // namespace vellum::platform
