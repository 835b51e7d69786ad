#include "platform/Folders.h"
#include <QDir>
#include <QStandardPaths>

namespace vellum::folders {

namespace {
QString under(const char* name, QStandardPaths::StandardLocation otherwise) {
  const QString home = qEnvironmentVariable("VELLUM_HOME");
  if (!home.isEmpty())
    return QDir(home).absoluteFilePath(QLatin1String(name));
  return QStandardPaths::writableLocation(otherwise);
}
} // namespace

QString applicationSupport() {
  return under("ApplicationSupport", QStandardPaths::GenericDataLocation);
}
QString movies() { return under("Movies", QStandardPaths::MoviesLocation); }
QString preferences() { return under("Preferences", QStandardPaths::GenericConfigLocation); }

} // namespace vellum::folders
