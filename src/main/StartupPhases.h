// When the phases of a start were reached, told to whoever measures them.
#pragma once

class QQuickWindow;

namespace vellum::startup {

// Main thread. With VELLUM_STARTUP=1 in the environment a line "PHASE name seconds" on standard
// error, in seconds of the machine's monotonic clock; otherwise nothing.
void reached(const char* phase);
// Tells of the first picture on the screen ("picture"), and of the moment at which the main loop
// has nothing left to do ("usable").
void watch(QQuickWindow& window);

} // namespace vellum::startup
