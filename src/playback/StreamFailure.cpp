#include "playback/StreamFailure.h"
#include <QCoreApplication>

namespace vellum {

namespace {
struct Texts {
  Q_DECLARE_TR_FUNCTIONS(StreamFailure)
};
} // namespace

StreamFailure StreamFailure::nothingToStream() {
  return other(Texts::tr("This result has no magnet link or torrent file to stream."));
}
StreamFailure StreamFailure::downloadFailed(const QString& reason) {
  return other(Texts::tr("Couldn't download the .torrent file: %1").arg(reason));
}
StreamFailure StreamFailure::noServer() {
  return other(Texts::tr("Couldn't start the local streaming server."));
}

QString StreamFailure::text() const {
  switch (kind) {
  case Kind::Other:
  case Kind::Disk: return detail;
  case Kind::NoMetadata:
    return Texts::tr("Couldn't fetch the torrent's metadata within 60 seconds. It may have no "
                     "active peers, or trackers may be unreachable.");
  case Kind::NoVideo: return Texts::tr("No playable video file was found in this torrent.");
  case Kind::Stalled:
    return Texts::tr("The stream stalled and no peers are connected. The swarm may be dead.");
  case Kind::Unsupported:
    return Texts::tr("This video's format or codec isn't supported by the built-in player, and "
                     "no external player (mpv, VLC) was found. Install mpv (brew install mpv) "
                     "to play it.");
  }
  return {};
}

} // namespace vellum
