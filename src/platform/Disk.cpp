#include "platform/Disk.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <filesystem>
#include <limits>
#include <sys/stat.h>

namespace vellum::disk {

std::int64_t freeSpace(const QString& path) {
  QString existing = QDir::cleanPath(QDir::current().absoluteFilePath(path));
  while (!QFileInfo::exists(existing) && existing != QLatin1String("/"))
    existing = QFileInfo(existing).path();
  std::error_code error;
  const auto space = std::filesystem::space(QFile::encodeName(existing).toStdString(), error);
  constexpr std::uintmax_t kMost = std::numeric_limits<std::int64_t>::max();
  return error ? 0 : static_cast<std::int64_t>(std::min(space.available, kMost));
}

std::int64_t allocatedSize(const QString& path) {
  constexpr std::int64_t kStatBlock = 512; // the unit of st_blocks, on Linux and macOS alike
  struct stat status {};
  if (::lstat(QFile::encodeName(path).constData(), &status) != 0) return 0;
  return std::int64_t{status.st_blocks} * kStatBlock;
}

} // namespace vellum::disk
