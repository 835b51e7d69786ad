// Every public address that the program knows by itself, each once.
#pragma once
#include <QString>
#include <QStringList>

namespace vellum::addresses {

inline QString catalogBase() { return QStringLiteral("https://archive.org"); }
inline QString apiBayBase() { return QStringLiteral("https://apibay.org"); }

// Public UDP trackers, always named in this order.
inline QStringList defaultTrackers() {
  return {QStringLiteral("udp://tracker.opentrackr.org:1337/announce"),
          QStringLiteral("udp://open.stealth.si:80/announce"),
          QStringLiteral("udp://tracker.torrent.eu.org:451/announce"),
          QStringLiteral("udp://exodus.desync.com:6969/announce")};
}

} // namespace vellum::addresses
