#include "platform/StandardFolders.h"
#include <QDir>

namespace vellum::folders {

// The configuration locations of Qt are not where macOS keeps preferences.
QString standardPreferences() { return QDir::homePath() + QStringLiteral("/Library/Preferences"); }

} // namespace vellum::folders
