#include "platform/Programs.h"
#include <QFileInfo>
#include <QStandardPaths>

namespace vellum::platform {

bool isExecutable(const QString& path) {
  const QFileInfo file(path);
  return file.isFile() && file.isExecutable();
}

QString findProgram(const QString& name) { return QStandardPaths::findExecutable(name); }

} // namespace vellum::platform
