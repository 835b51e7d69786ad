#include "platform/StandardFolders.h"
#include <QStandardPaths>

namespace vellum::folders {

QString standardPreferences() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
}

} // namespace vellum::folders
