#include "net/PartFile.h"
#include <QDir>
#include <QFile>
#include <QUuid>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vellum {

namespace {

const QString kPrefix = QStringLiteral(".vellum-");
const QString kSuffix = QStringLiteral(".part");
constexpr mode_t kUsual = 0666; // less what the user's mask takes away

std::error_code lastError() { return {errno, std::system_category()}; }

QString freshName() {
  return kPrefix + QUuid::createUuid().toString(QUuid::WithoutBraces) + kSuffix;
}

bool isOurs(const QString& name) {
  constexpr qsizetype kUuidLength = 36;
  const QString middle = name.mid(kPrefix.size(), kUuidLength);
  return name.startsWith(kPrefix) && name.endsWith(kSuffix) &&
         name.size() == kPrefix.size() + kUuidLength + kSuffix.size() &&
         QUuid::fromString(middle).toString(QUuid::WithoutBraces) == middle;
}

// A path as the system takes it; what follows a NUL it would leave out.
std::optional<QByteArray> systemPath(const QString& path) {
  QByteArray encoded = QFile::encodeName(path);
  if (encoded.isEmpty() || encoded.contains('\0')) return std::nullopt;
  return encoded;
}

bool lock(int descriptor) { return ::flock(descriptor, LOCK_EX | LOCK_NB) == 0; }

// Somebody who clears may come between making a file and locking it. On a volume without locks
// nobody can clear.
bool isLost(int descriptor) {
  if (!lock(descriptor)) return errno == EWOULDBLOCK;
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 && status.st_nlink == 0;
}

bool meansNoLinks(const std::error_code& error) {
  return error == std::errc::operation_not_permitted || error == std::errc::not_supported ||
         error == std::errc::operation_not_supported || error == std::errc::function_not_supported;
}

void removeIfLeft(const QByteArray& path) {
  const int descriptor = ::open(path.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return;
  struct stat status {};
  if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && lock(descriptor))
    ::unlink(path.constData());
  ::close(descriptor);
}

} // namespace

std::shared_ptr<PartFile> PartFile::create(const QString& folder, std::error_code& error) {
  error.clear();
  for (;;) {
    const QString path = folder + u'/' + freshName();
    const auto encoded = systemPath(path);
    if (!encoded) {
      error = std::make_error_code(std::errc::invalid_argument);
      return nullptr;
    }
    const int descriptor =
        ::open(encoded->constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kUsual);
    if (descriptor < 0) {
      error = lastError();
      return nullptr;
    }
    if (!isLost(descriptor)) return std::shared_ptr<PartFile>(new PartFile(descriptor, path));
    ::close(descriptor);
  }
}

PartFile::~PartFile() {
  if (!m_isInPlace) ::unlink(QFile::encodeName(m_path).constData());
  ::close(m_descriptor);
}

std::error_code PartFile::append(std::span<const char> bytes) {
  while (!bytes.empty()) {
    const auto written = ::pwrite(m_descriptor, bytes.data(), bytes.size(), m_size);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return lastError();
    m_size += written;
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return {};
}

std::error_code PartFile::clear() {
  if (::ftruncate(m_descriptor, 0) != 0) return lastError();
  m_size = 0;
  return {};
}

std::error_code PartFile::sync() {
  return ::fsync(m_descriptor) == 0 ? std::error_code() : lastError();
}

std::error_code PartFile::moveTo(const QString& path) {
  const auto to = systemPath(path);
  if (!to) return std::make_error_code(std::errc::invalid_argument);
  const QByteArray from = QFile::encodeName(m_path);
  if (::link(from.constData(), to->constData()) == 0) {
    ::unlink(from.constData());
  } else {
    const auto error = lastError();
    if (!meansNoLinks(error)) return error;
    if (const auto failed = renameToFreeName(m_path, path)) return failed;
  }
  m_isInPlace = true;
  return {};
}

std::error_code PartFile::renameToFreeName(const QString& from, const QString& to) {
  const QByteArray target = QFile::encodeName(to);
  const int claim = ::open(target.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kUsual);
  if (claim < 0) return lastError();
  ::close(claim);
  if (::rename(QFile::encodeName(from).constData(), target.constData()) == 0) return {};
  const auto error = lastError();
  ::unlink(target.constData());
  return error;
}

void PartFile::clearLeftovers(const QString& folder) {
  if (QDir::isRelativePath(folder)) return;
  const auto names = QDir(folder).entryList({kPrefix + u'*' + kSuffix}, QDir::Files | QDir::Hidden);
  for (const QString& name : names)
    if (isOurs(name)) removeIfLeft(QFile::encodeName(folder + u'/' + name));
}

} // namespace vellum
