#include "playback/StreamFailure.h"
#include <QCoreApplication>

namespace vellum {

namespace {
QString translated(const char* sentence) {
  return QCoreApplication::translate("StreamFailure", sentence);
}
} // namespace

StreamFailure StreamFailure::nothingToStream() {
  return other(translated("This result has no magnet link or torrent file to stream."));
}
StreamFailure StreamFailure::downloadFailed(const QString& reason) {
  return other(translated("Couldn't download the .torrent file: %1").arg(reason));
}
StreamFailure StreamFailure::noServer() {
  return other(translated("Couldn't start the local streaming server."));
}

QString StreamFailure::text() const {
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
