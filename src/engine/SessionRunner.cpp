#include "engine/SessionRunner.h"
#include "engine/PeerSocket.h"
#include "engine/Tracker.h"
#include <cassert>

namespace vellum {

SessionRunner::SessionRunner(const SessionEnvironment& environment, const Strand& strand,
                             SessionCore::Config config, Events events)
    : m_environment(environment), m_strand(strand), m_events(std::move(events)),
      m_announceRequest{config.infoHash, config.peerId},
      m_core(std::move(config), environment.clock, *this), m_flows(strand), m_uploadTimer(strand) {}

void SessionRunner::start() {
  assert(m_strand.running_in_this_thread());
  if (m_core.isStopped()) return;
  m_flows.spawn(tickEverySecond(shared_from_this()));
  m_core.start();
}

void SessionRunner::stop() {
  assert(m_strand.running_in_this_thread());
  m_core.stop();
  m_uploadTimer.cancel();
  m_flows.cancelAll();
}

Flow<> SessionRunner::tickEverySecond(std::shared_ptr<SessionRunner> self) {
  asio::steady_timer timer(self->m_strand);
  const Clock& clock = self->m_environment.clock;
  auto next = clock.now();
  while (!self->m_core.isStopped()) {
    // Ticks that were missed are not made up for: the rates count on a second between two.
    next = std::max(next + std::chrono::seconds(1), clock.now());
    timer.expires_at(next);
    co_await timer.async_wait(asio::use_awaitable);
    if (self->m_core.isStopped()) co_return;
    self->m_core.tick();
    self->m_events.ticked(self->m_core.makeSnapshot());
  }
}

std::shared_ptr<PeerLink> SessionRunner::dial(const PeerAddr& address,
                                              std::shared_ptr<PeerConn> peer) {
  assert(m_strand.running_in_this_thread());
  auto socket = std::make_shared<PeerSocket>(m_strand);
  m_flows.spawn(socket->run(address, std::move(peer)));
  return socket;
}

void SessionRunner::announce(const QStringList& trackers) {
  m_announcesRunning = static_cast<int>(trackers.size());
  for (const QString& tracker : trackers) m_flows.spawn(announceTo(shared_from_this(), tracker));
  if (trackers.isEmpty()) m_core.onAnnounceDone();
}

Flow<> SessionRunner::announceTo(std::shared_ptr<SessionRunner> self, QString tracker) {
  std::optional<TrackerResult> result;
  try {
    result = co_await Tracker::announce(tracker, self->m_announceRequest,
                                        self->m_environment.random, self->m_environment.fetch);
  } catch (const std::exception&) {
    // Only a cancelled announce throws.
  }
  if (result) self->m_core.onTrackerResult(*result);
  if (--self->m_announcesRunning == 0) self->m_core.onAnnounceDone();
}

void SessionRunner::wakeForUploads(TimePoint at) {
  if (m_uploadTimerSet) return;
  m_uploadTimerSet = true;
  m_uploadTimer.expires_at(at);
  m_uploadTimer.async_wait([self = shared_from_this()](asio::error_code error) {
    self->m_uploadTimerSet = false;
    if (!error) self->m_core.sendDueBlocks();
  });
}

} // namespace vellum
