// What the way from a pressed Play to a picture asks of engine, disk, network, server and player.
#pragma once
#include "base/Bytes.h"
#include "base/Clock.h"
#include "base/Flow.h"
#include "engine/PeerAddr.h"
#include "engine/SessionSnapshot.h"
#include "formats/TorrentMeta.h"
#include <QUrl>

namespace vellum {

// A running torrent. Main thread; dropping the last reference does not end the torrent.
class StreamSession {
public:
  virtual ~StreamSession() = default;
  virtual QString key() const = 0;       // the info hash, 40 lower-case hexadecimal digits
  virtual QString directory() const = 0; // its folder in the cache
  virtual SessionSnapshot snapshot() = 0;
  virtual void addPeers(std::vector<PeerAddr> peers) = 0;
  virtual void select(int file, const std::vector<int>& subtitles) = 0;
  // The loopback address of a file; nothing if the server cannot start.
  virtual Flow<std::optional<QUrl>> url(int file, QString name) = 0;
  // Writes a file that is complete and small enough to `destination`; false if it did not.
  virtual Flow<bool> extract(int file, QString destination) = 0;
};

// The video player. Main thread.
class StreamPlayer {
public:
  virtual ~StreamPlayer() = default;
  virtual void load(const QUrl& url, double startAt) = 0; // seconds
  virtual void stop() = 0;
  virtual void clearError() = 0;
  virtual bool isBuffering() const = 0;
  virtual double currentTime() const = 0; // seconds
  virtual double duration() const = 0;    // seconds, 0 while unknown
};

// Everything else. Main thread.
class PlaybackSurroundings {
public:
  virtual ~PlaybackSurroundings() = default;
  // A running session for a play, a new one or the one that is there.
  virtual std::shared_ptr<StreamSession> acquire(const Hash20& hash, const QStringList& trackers,
                                                 const QString& title,
                                                 std::shared_ptr<const TorrentMeta> meta) = 0;
  virtual void release(StreamSession& session) = 0;
  virtual QString preferredQuality() const = 0;
  virtual std::int64_t freeSpace() const = 0; // bytes, where the cache is
  // A .torrent file of the web, read off the main thread; nothing if it is none. Throws NetError,
  // and asio::system_error when cancelled.
  virtual Flow<std::optional<TorrentMeta::TorrentFile>>
  fetchTorrent(QUrl url, std::chrono::seconds timeout) = 0;
  // Throws asio::system_error when cancelled.
  virtual Flow<> sleep(std::chrono::milliseconds duration) = 0;
  virtual TimePoint now() const = 0;
  virtual double secondsSince2001() const = 0; // the date, for the history
};

} // namespace vellum
