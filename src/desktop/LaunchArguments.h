// What a start of the program is asked to open. Pure.
#pragma once
#include <QStringList>

namespace vellum {

// Of the arguments of a start, those that can be opened: magnet links and web addresses of .torrent
// files as they are, and .torrent files (paths, or addresses "file:") as absolute paths, so that
// they mean the same in another process. Everything else is left out, options too.
QStringList openableLinks(const QStringList& arguments, const QString& workingFolder);

// Whether that is the web address of a .torrent file.
bool isWebTorrent(const QString& link);

} // namespace vellum
