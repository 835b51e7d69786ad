#include "playback/StreamFailure.h"
#include <QCoreApplication>

namespace vellum {

QString StreamFailure::text() const {
  const auto translated = [](const char* sentence) {
    return QCoreApplication::translate("StreamFailure", sentence);
  };
  switch (kind) {
  case Kind::Other:
  case Kind::Disk: return detail;
  case Kind::NoMetadata:
    return translated("Couldn't fetch the torrent's metadata within 60 seconds. It may have no "
                      "active peers, or trackers may be unreachable.");
  case Kind::NoVideo: return translated("No playable video file was found in this torrent.");
  case Kind::Stalled:
    return translated("The stream stalled and no peers are connected. The swarm may be dead.");
  case Kind::Unsupported:
    return translated("This video's format or codec isn't supported by the built-in player, and "
                      "no external player (mpv, VLC) was found. Install mpv (brew install mpv) "
                      "to play it.");
  }
  return {};
}

} // namespace vellum
