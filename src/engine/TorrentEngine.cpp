#include "engine/TorrentEngine.h"
#include <algorithm>
#include <cassert>

namespace vellum {

TorrentEngine::TorrentEngine(const SessionEnvironment& environment, Surroundings& surroundings)
    : m_environment(environment), m_surroundings(surroundings) {}

TorrentEngine::~TorrentEngine() {
  while (!m_sessions.empty()) stop(QString(m_sessions.begin()->first));
}

std::shared_ptr<TorrentSession> TorrentEngine::acquire(const Hash20& hash,
                                                       const QStringList& trackers,
                                                       const QString& title,
                                                       std::shared_ptr<const TorrentMeta> meta) {
  assert(m_environment.main.isCurrentThread());
  const QString key = toHex(hash);
  m_streaming.insert(key);
  const auto running = m_sessions.find(key);
  if (running != m_sessions.end() && !running->second->isStopped()) {
    running->second->addPeers({}); // nudges it to dial what it already knows
    refresh();
    return running->second;
  }
  const QString folder = m_surroundings.streamsDirectory() + u'/' + key;
  auto session = std::make_shared<TorrentSession>(m_environment, hash, trackers, title, folder,
                                                  std::move(meta));
  session->setUploadLimit(m_surroundings.uploadLimit());
  // Ended with the session, which the engine owns.
  session->setOnTick([this, key](const SessionSnapshot& snapshot) {
    if (!m_sessions.contains(key)) return;
    m_snaps[key] = snapshot;
    m_titles[key] = snapshot.title;
    refresh();
  });
  m_titles[key] = session->title();
  m_sessions[key] = session;
  session->start();
  refresh();
  return session;
}

void TorrentEngine::release(const std::shared_ptr<TorrentSession>& session) {
  assert(m_environment.main.isCurrentThread());
  m_streaming.erase(session->key());
  if (m_surroundings.stopSeedingOnClose())
    stop(session->key());
  else
    refresh();
}

void TorrentEngine::stop(const QString& key) {
  assert(m_environment.main.isCurrentThread());
  const auto found = m_sessions.find(key);
  if (found == m_sessions.end()) return;
  const auto session = found->second;
  session->setOnTick({});
  session->stop(!m_surroundings.keepAfterPlayback());
  m_surroundings.unregister(key);
  m_sessions.erase(key);
  m_titles.erase(key);
  m_snaps.erase(key);
  m_streaming.erase(key);
  refresh();
  m_surroundings.cacheChanged();
}

void TorrentEngine::refresh() {
  m_entries.clear();
  for (const auto& [key, session] : m_sessions) {
    const auto snap = m_snaps.find(key);
    m_entries.push_back({key, m_titles[key],
                         snap != m_snaps.end() ? snap->second : SessionSnapshot{},
                         m_streaming.contains(key)});
  }
  std::stable_sort(m_entries.begin(), m_entries.end(),
                   [](const Entry& a, const Entry& b) { return a.title < b.title; });
  Q_EMIT entriesChanged();
}

} // namespace vellum
