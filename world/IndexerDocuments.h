// What the three dialects of indexers answer, with the fields and habits of such services. Pure.
#pragma once
#include "world/IndexedTorrents.h"
#include <QByteArray>
#include <QUrl>

namespace vellum::world {

// Documents hold the torrents that they are given, in that order. `base` is the server's address,
// which completes addresses that are paths.

// A flat array in which numbers are strings; for nothing found, one row with a hash of zeros.
QByteArray apiBayDocument(const IndexedTorrents& torrents);
// At most `limit` films with their torrents below them; `data` has no `movies` when nothing was
// found.
QByteArray ytsDocument(const IndexedTorrents& torrents, const QUrl& base, int limit);
// RSS 2.0 with torznab and newznab attributes. `trackers` stand in the magnet links.
QByteArray torznabDocument(const IndexedTorrents& torrents, const QUrl& base,
                           const QStringList& trackers);
QByteArray torznabError(int code, const QString& description);

} // namespace vellum::world
