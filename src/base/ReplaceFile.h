// A small file written as a whole or not at all.
#pragma once
#include <QByteArray>
#include <QString>

namespace vellum {

enum class Privacy { Everybody, OwnerOnly };

// Makes the folder too. Whatever happens, also with a full disk or a process that is killed, either
// the old file or the new one is there. False if it is the old one.
bool replaceFile(const QString& path, const QByteArray& bytes, Privacy privacy);

} // namespace vellum
