#include "base/ReplaceFile.h"
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace vellum {

bool replaceFile(const QString& path, const QByteArray& bytes, Privacy privacy) {
  QDir().mkpath(QFileInfo(path).path());
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return false;
  if (privacy == Privacy::OwnerOnly) file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
  // Qt would commit what a full disk has cut short.
  return file.write(bytes) == bytes.size() && file.flush() && file.commit();
}

} // namespace vellum
