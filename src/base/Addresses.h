// Every public address that the program knows by itself, each once.
#pragma once
#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace vellum::addresses {

// Without a "/" at its end. Tests and the demonstration put another catalog in its place.
inline QString catalogBase() {
  const QString other = qEnvironmentVariable("VELLUM_CATALOG");
  return other.isEmpty() ? QStringLiteral("https://archive.org") : other;
}
inline QString apiBayBase() { return QStringLiteral("https://apibay.org"); }

// Public UDP trackers, always named in this order. Tests and the demonstration put others in their
// place, or none.
inline QStringList defaultTrackers() {
  if (qEnvironmentVariableIsSet("VELLUM_TRACKERS"))
    return qEnvironmentVariable("VELLUM_TRACKERS").split(u',', Qt::SkipEmptyParts);
  return {QStringLiteral("udp://tracker.opentrackr.org:1337/announce"),
          QStringLiteral("udp://open.stealth.si:80/announce"),
          QStringLiteral("udp://tracker.torrent.eu.org:451/announce"),
          QStringLiteral("udp://exodus.desync.com:6969/announce")};
}

} // namespace vellum::addresses
