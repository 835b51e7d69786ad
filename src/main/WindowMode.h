// Vellum with its window.
#pragma once
#include <QStringList>

namespace vellum {

// Whether a window can be shown at all.
bool hasDisplay();

// Runs until the window is closed, and returns the exit code. Makes the application object. `links`
// are to be opened, as they were given; another Vellum that runs already gets them instead.
int runWindowMode(int argc, char** argv, const QStringList& links,
                  const QStringList& defaultTrackers);

} // namespace vellum
