#include "platform/Programs.h"
#include "platform/ChildProcess.h"
#include "platform/linux/DesktopEntry.h"
#include <QDir>

namespace vellum::platform {

namespace {

// Goes on by itself, whatever becomes of us.
bool start(QStringList command) {
  QString program = command.takeFirst();
  if (!QDir::isAbsolutePath(program)) program = findProgram(program);
  return !program.isEmpty() && ChildProcess().launch(program, command);
}

} // namespace

bool openInVlc(const QUrl& url) {
  if (url.scheme() != u"http" && url.scheme() != u"https") return false;
  const QString address = QString::fromLatin1(url.toEncoded());
  for (const char* entry : {"vlc.desktop", "org.videolan.VLC.desktop", "vlc_vlc.desktop"})
    if (const auto command = desktopEntry::installedCommand(QLatin1String(entry), address))
      return start(*command);
  const QString vlc = findProgram(QStringLiteral("vlc"));
  return !vlc.isEmpty() && start({vlc, address});
}

bool openWithDesktop(const QString& link) {
  const bool isMagnet = link.startsWith(QLatin1String("magnet:"));
  if (!isMagnet && !QDir::isAbsolutePath(link)) return false;
  const auto type = isMagnet ? QStringLiteral("x-scheme-handler/magnet")
                             : QStringLiteral("application/x-bittorrent");
  const auto command = desktopEntry::defaultCommand(type, link);
  // As on every platform, whether the program starts is not looked at.
  if (command) start(*command);
  return command.has_value();
}

} // namespace vellum::platform
