// The owner of all running torrents: at most one session per info hash, shared between plays.
#pragma once
#include "engine/TorrentSession.h"
#include <QObject>
#include <map>
#include <set>

namespace vellum {

// Lives on the main thread. Sessions run on strands of their own and report back through onTick.
class TorrentEngine final : public QObject {
  Q_OBJECT

public:
  // What it asks of settings, cache and stream server.
  class Surroundings {
  public:
    virtual ~Surroundings() = default;
    // Session folders are made below it, one per info hash.
    virtual QString streamsDirectory() = 0;
    virtual bool stopSeedingOnClose() const = 0;
    virtual bool keepAfterPlayback() const = 0;
    // Bytes per second, below 1 for no limit; asked on session strands, at every request.
    virtual std::function<std::int64_t()> uploadLimit() const = 0;
    // The session with this key has ended: nobody may be served from it.
    virtual void unregister(const QString& key) = 0;
    // A session's folder is gone, or at rest.
    virtual void cacheChanged() = 0;
  };

  // One row of the list.
  struct Entry {
    QString id; // the key: 40 lower-case hexadecimal digits of the info hash
    QString title;
    SessionSnapshot snap; // an empty one before the first tick
    bool streaming = false;
  };

  // Both outlive the engine.
  TorrentEngine(const SessionEnvironment& environment, Surroundings& surroundings);
  // Stops every session, and deletes what is not to be kept.
  ~TorrentEngine() override;

  // A running session for a play: the one that is there (the other arguments are then ignored), or
  // a new one.
  std::shared_ptr<TorrentSession> acquire(const Hash20& hash, const QStringList& trackers,
                                          const QString& title,
                                          std::shared_ptr<const TorrentMeta> meta);
  // Playback has ended with this session; it seeds on, or ends, as the settings say.
  void release(const std::shared_ptr<TorrentSession>& session);
  // Ends a session now; an unknown key changes nothing.
  void stop(const QString& key);

  // Sorted by title.
  const std::vector<Entry>& entries() const { return m_entries; }

Q_SIGNALS:
  void entriesChanged();

private:
  void refresh();

  SessionEnvironment m_environment;
  Surroundings& m_surroundings;
  std::vector<Entry> m_entries;
  std::map<QString, std::shared_ptr<TorrentSession>> m_sessions;
  std::map<QString, QString> m_titles; // from the last snapshot, or before the first one
  std::map<QString, SessionSnapshot> m_snaps;
  std::set<QString> m_streaming;
};

} // namespace vellum
