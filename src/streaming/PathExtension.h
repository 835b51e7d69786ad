// The extension by which files are told apart. Pure.
#pragma once
#include <QString>

namespace vellum {

// Lower-cased, of the last component of a path; empty for a name without one, as ".mkv" is.
inline QString pathExtension(const QString& path) {
  const QString name = path.section(u'/', -1);
  const qsizetype dot = name.lastIndexOf(u'.');
  return dot < 1 ? QString() : name.mid(dot + 1).toLower();
}

} // namespace vellum
