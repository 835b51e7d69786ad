// What a user may hand over as a torrent, turned into what a session starts from.
#pragma once
#include "base/Bytes.h"
#include "base/Flow.h"
#include "engine/PeerAddr.h"
#include "formats/TorrentMeta.h"
#include "net/FetchData.h"
#include "playback/StreamFailure.h"
#include <memory>
#include <variant>

namespace vellum {

struct TorrentSource {
  Hash20 hash{};
  QStringList trackers;
  QString title;
  std::shared_ptr<const TorrentMeta> meta; // nothing for a magnet link and a bare hash
  std::vector<PeerAddr> peers;             // those that a magnet link names
};

// A magnet link, the path or http(s) address of a .torrent file, or 40 hexadecimal digits. Main
// thread.
Flow<std::variant<TorrentSource, StreamFailure>> openTorrentSource(QString text, FetchData fetch);

} // namespace vellum
