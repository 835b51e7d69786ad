#include "storage/HeldFile.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vellum {

namespace {

// False once the name has been removed, or given to another file.
bool isCalled(int file, const QByteArray& name) {
  struct stat opened {};
  struct stat named {};
  return ::fstat(file, &opened) == 0 && ::lstat(name.constData(), &named) == 0 &&
         opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

// On a volume without locks nobody is told from anybody.
bool lock(int file, int how) {
  int result = 0;
  do result = ::flock(file, how);
  while (result != 0 && errno == EINTR);
  return result == 0;
}

} // namespace

int openForUse(const QString& path) {
  constexpr int kMostTries = 100; // each but the last has met a removal
  const QByteArray name = QFile::encodeName(path);
  for (int tries = 0; tries < kMostTries; ++tries) {
    QDir().mkpath(QFileInfo(path).path());
    const int file = ::open(name.constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0644);
    if (file < 0 && errno != ENOENT) return -1;
    if (file < 0) continue;
    lock(file, LOCK_SH);
    if (isCalled(file, name)) return file;
    ::close(file);
  }
  return -1;
}

RemovalRight::RemovalRight(const QString& path) {
  const QByteArray name = QFile::encodeName(path);
  m_file = ::open(name.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  m_isThere = m_file >= 0 || errno != ENOENT;
  if (m_file < 0) return;
  const bool isRefused = !lock(m_file, LOCK_EX | LOCK_NB) && errno == EWOULDBLOCK;
  m_isInUse = isRefused || !isCalled(m_file, name);
}

RemovalRight::~RemovalRight() {
  if (m_file >= 0) ::close(m_file);
}

void removeUnlessInUse(const QString& path) {
  const RemovalRight right(path);
  // What comes to be there after the look is not ours to remove.
  if (right.isThere() && !right.isInUse()) QFile::remove(path);
}

} // namespace vellum
