#include "desktop/linux/MeetingPlace.h"
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace vellum {

namespace {

bool fits(const QString& place) {
  return QFile::encodeName(meetingSocket(place)).size() <
         static_cast<qsizetype>(sizeof(sockaddr_un::sun_path));
}

QString shortPlace(const QString& folder) {
  const QByteArray hash = QCryptographicHash::hash(folder.toUtf8(), QCryptographicHash::Sha1);
  return QStringLiteral("%1/vellum-%2-%3")
      .arg(QDir::tempPath())
      .arg(geteuid())
      .arg(QLatin1String(hash.first(8).toHex()));
}

// Looks at what it has opened, so that nobody can exchange the folder in between.
bool makePrivate(const QString& place) {
  QDir().mkpath(QFileInfo(place).path());
  const QByteArray name = QFile::encodeName(place);
  if (mkdir(name.constData(), 0700) != 0 && errno != EEXIST) return false;
  const int folder = open(name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (folder < 0) return false;
  struct stat found {};
  const bool isOurs = fstat(folder, &found) == 0 && found.st_uid == geteuid() &&
                      ((found.st_mode & 0777) == 0700 || fchmod(folder, 0700) == 0);
  close(folder);
  return isOurs;
}

} // namespace

QString meetingSocket(const QString& place) { return place + QStringLiteral("/socket"); }

std::optional<QString> meetingPlace(const QString& folder) {
  const QString place = fits(folder) ? folder : shortPlace(folder);
  if (!fits(place) || !makePrivate(place)) return {};
  return place;
}

ProcessLock::~ProcessLock() {
  if (m_descriptor >= 0) close(m_descriptor);
}

ProcessLock::Result ProcessLock::take(const QString& place) {
  const QByteArray name = QFile::encodeName(place + QStringLiteral("/lock"));
  const int file = open(name.constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
  if (file < 0) return Result::Failed;
  // The file stays for ever: were it removed, two could each hold one of that name.
  if (flock(file, LOCK_EX | LOCK_NB) == 0) {
    m_descriptor = file;
    return Result::Taken;
  }
  const bool isHeld = errno == EWOULDBLOCK;
  close(file);
  return isHeld ? Result::Held : Result::Failed;
}

} // namespace vellum
