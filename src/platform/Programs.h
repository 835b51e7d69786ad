// Other programs of this machine: finding them, and having them open something. Any thread, but for
// openInVlc() and openWithDesktop(), which are for the main thread.
#pragma once
#include <QString>
#include <QUrl>

namespace vellum::platform {

// Whether the path is a file that the user may execute.
bool isExecutable(const QString& path);
// The path of a program by that name, where programs are looked for (PATH); empty if there is none.
QString findProgram(const QString& name);

// Opens an "http" or "https" address in VLC, found in the way of the system. False if VLC is not
// installed or cannot be started; what becomes of it afterwards is not told.
bool openInVlc(const QUrl& url);
// Hands a magnet link, or the absolute path of a .torrent file, to the program that the user has
// chosen for such, or to another one if that is this program. False if there is none.
bool openWithDesktop(const QString& link);

} // namespace vellum::platform
