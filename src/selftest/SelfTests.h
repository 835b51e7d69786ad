// The checks that the program carries with it ("vellum --selftest").
#pragma once
#include "app/Runtime.h"

namespace vellum {

// Main thread. Prints a line for each check and a last one for all; 0 if every check passed,
// else 1.
int runSelfTests(Runtime& runtime);

} // namespace vellum
