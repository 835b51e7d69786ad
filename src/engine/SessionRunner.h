// What drives a session: its timer, its connections, its announces.
#pragma once
#include "base/Flow.h"
#include "base/IoPool.h"
#include "base/MainLoop.h"
#include "engine/SessionCore.h"
#include "net/FetchData.h"

namespace vellum {

// The world of a session; everything in it outlives the session.
struct SessionEnvironment {
  IoPool& pool;
  MainLoop& main;
  const Clock& clock;
  Random& random; // usable from any thread
  FetchData fetch;
  QStringList defaultTrackers;
};

// Lives on its strand ("torrent.session"); its coroutines hold it, and stop() ends them all.
class SessionRunner final : public SessionCore::Outside,
                            public std::enable_shared_from_this<SessionRunner> {
public:
  // Each runs on the strand; what they do is their owner's business.
  struct Events {
    std::function<void(const SessionSnapshot&)> ticked;
    std::function<void(const SessionSnapshot&)> milestone;
    std::function<void()> metadataArrived;
  };

  // Builds the state; nothing runs yet.
  SessionRunner(const SessionEnvironment& environment, const Strand& strand,
                SessionCore::Config config, Events events);

  void start();
  void stop();
  SessionCore& core() { return m_core; }

  std::shared_ptr<PeerLink> dial(const PeerAddr& address, std::shared_ptr<PeerConn> peer) override;
  void announce(const QStringList& trackers) override;
  void wakeForUploads(TimePoint at) override;
  void metadataArrived() override { m_events.metadataArrived(); }
  void milestone() override { m_events.milestone(m_core.makeSnapshot()); }

private:
  static Flow<> tickEverySecond(std::shared_ptr<SessionRunner> self);
  static Flow<> announceTo(std::shared_ptr<SessionRunner> self, QString tracker);

  SessionEnvironment m_environment;
  Strand m_strand;
  Events m_events;
  AnnounceRequest m_announceRequest;
  SessionCore m_core;
  FlowGroup m_flows;
  asio::steady_timer m_uploadTimer;
  bool m_uploadTimerSet = false;
  int m_announcesRunning = 0;
};

} // namespace vellum
