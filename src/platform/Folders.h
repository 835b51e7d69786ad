// The user's folders. When VELLUM_HOME is set they all lie below it instead: nothing else of the
// user's is then touched. Any thread.
#pragma once
#include <QString>

namespace vellum::folders {

QString applicationSupport(); // where applications keep what is theirs
QString movies();
QString preferences();
QString runtime(); // what lasts as long as the program runs: its socket

} // namespace vellum::folders
