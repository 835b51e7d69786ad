// The folders that each platform has at a place of its own. Any thread.
#pragma once
#include <QString>

namespace vellum::folders {

QString standardPreferences();

} // namespace vellum::folders
