#include "platform/Folders.h"
#include "platform/StandardFolders.h"
#include <QDir>
#include <QStandardPaths>

namespace vellum::folders {

namespace {
QString below(const char* name, const QString& otherwise) {
  const QString home = qEnvironmentVariable("VELLUM_HOME");
  return home.isEmpty() ? otherwise : QDir(home).absoluteFilePath(QLatin1String(name));
}
} // namespace

// On macOS the generic data of an application lie in "~/Library/Application Support".
QString applicationSupport() {
  return below("ApplicationSupport",
               QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
}
QString movies() {
  return below("Movies", QStandardPaths::writableLocation(QStandardPaths::MoviesLocation));
}
QString preferences() { return below("Preferences", standardPreferences()); }
QString runtime() {
  return below("Runtime", QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
                              QStringLiteral("/vellum"));
}

} // namespace vellum::folders
