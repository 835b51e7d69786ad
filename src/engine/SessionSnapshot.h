// How a session stands at one moment: an immutable copy for the interface and the flow.
#pragma once
#include "formats/TorrentMeta.h"
#include <memory>

namespace vellum {

struct SessionSnapshot {
  std::shared_ptr<const TorrentMeta> meta; // nothing while unknown
  QString name;                            // the torrent's, or the title while that is unknown
  QString title;                           // the session's
  std::int64_t peers = 0;                  // live connections
  std::int64_t knownPeers = 0;             // every address ever heard of
  std::optional<std::int64_t> trackerSeeders;
  double downRate = 0; // bytes per second, smoothed
  double upRate = 0;
  std::int64_t downloaded = 0; // bytes
  std::int64_t uploaded = 0;
  double streamProgress = 0; // 0.0 to 1.0
  bool streamReady = false;
  double secondsSinceProgress = 0;
  bool complete = false;
  bool announced = false; // some tracker has answered

  bool hasMetadata() const { return meta != nullptr; }
  // Empty before the metadata is there.
  const std::vector<TorrentFileEntry>& files() const {
    static const std::vector<TorrentFileEntry> none;
    return meta ? meta->files : none;
  }
};

} // namespace vellum
