// The applications that a Linux desktop knows: entries (*.desktop) and who opens what, as in the
// Desktop Entry and MIME Applications specifications of freedesktop.org. Any thread.
#pragma once
#include <QByteArray>
#include <QStringList>
#include <optional>

namespace vellum::desktopEntry {

// The command that opens `address` (a URL or an absolute path), from the text of an entry: its Exec
// line with the address as one argument in the place of its field code. Nothing if the entry is
// hidden or names no program. Pure.
std::optional<QStringList> command(const QByteArray& entry, const QString& address);

// The entries named for a type in one group of a list of associations, in order of preference.
// Pure.
QStringList associations(const QByteArray& list, const QByteArray& group, const QString& type);

// The same with the files of this user and machine. Only entries that are installed have commands.
std::optional<QStringList> installedCommand(const QString& entryName, const QString& address);
// Of the program that the user has chosen for a type; ourselves passed over.
std::optional<QStringList> defaultCommand(const QString& type, const QString& address);

} // namespace vellum::desktopEntry
