#include "desktop/LaunchArguments.h"
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace vellum {

bool isWebTorrent(const QString& link) {
  const QUrl url(link);
  return (url.scheme() == u"http" || url.scheme() == u"https") &&
         QFileInfo(url.path()).suffix().toLower() == u"torrent";
}

QStringList openableLinks(const QStringList& arguments, const QString& workingFolder) {
  QStringList out;
  for (const QString& argument : arguments) {
    if (argument.startsWith(QLatin1String("magnet:")) || isWebTorrent(argument)) {
      out += argument;
      continue;
    }
    if (argument.startsWith(u'-')) continue;
    const bool isAddress = argument.startsWith(QLatin1String("file:"), Qt::CaseInsensitive);
    const QString path = isAddress ? QUrl(argument).toLocalFile() : argument;
    if (QFileInfo(path).suffix().toLower() == u"torrent")
      out += QDir::cleanPath(QDir(workingFolder).absoluteFilePath(path));
  }
  return out;
}

} // namespace vellum
