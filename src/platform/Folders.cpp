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
// Asked for only when it is needed: on Linux the question may make a folder.
QString runtime() {
  const QString ours = below("Runtime", {});
  if (!ours.isEmpty()) return ours;
  return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
         QStringLiteral("/vellum");
}

} // namespace vellum::folders
