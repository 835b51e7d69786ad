#include "platform/Folders.h"
#include <QDir>
#include <QStandardPaths>

namespace vellum::folders {

namespace {
QString under(const char* name, const QString& otherwise) {
  const QString home = qEnvironmentVariable("VELLUM_HOME");
  return home.isEmpty() ? otherwise : QDir(home).absoluteFilePath(QLatin1String(name));
}
} // namespace

// GenericDataLocation is "~/Library/Application Support" here; the configuration locations of Qt
// are not where macOS keeps preferences.
QString applicationSupport() {
  return under("ApplicationSupport",
               QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
}
QString movies() {
  return under("Movies", QStandardPaths::writableLocation(QStandardPaths::MoviesLocation));
}
QString preferences() {
  return under("Preferences", QDir::homePath() + QStringLiteral("/Library/Preferences"));
}

} // namespace vellum::folders
