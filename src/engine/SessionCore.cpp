#include "engine/SessionCore.h"
#include <algorithm>
#include <limits>

namespace vellum {

SessionCore::SessionCore(Config config, const Clock& clock, Outside& outside)
    : m_config(std::move(config)), m_clock(clock), m_outside(outside),
      m_storage(m_config.directory),
      m_scheduler(clock, m_storage,
                  [this](const std::function<void(PieceScheduler::Peer&)>& visit) {
                    for (const auto& peer : m_peers) visit(*peer);
                  }),
      m_metadata(m_config.infoHash), m_uploads(clock.now()) {}

Hash20 SessionCore::makePeerId(Random& random) {
  Hash20 id{};
  const auto client = asBytes(std::string_view("-VL0100-"));
  std::copy(client.begin(), client.end(), id.begin());
  for (std::size_t i = client.size(); i < id.size(); ++i)
    id[i] = std::byte(random.uniform(48, 122));
  return id;
}

QStringList SessionCore::withDefaults(QStringList trackers, const QStringList& defaults) {
  for (const QString& tracker : defaults)
    if (!trackers.contains(tracker)) trackers.append(tracker);
  return trackers;
}

void SessionCore::setMeta(std::shared_ptr<const TorrentMeta> meta, bool notify) {
  m_meta = std::move(meta);
  m_scheduler.setMeta(m_meta);
  m_storage.open(m_meta->total);
  // A title of 40 characters is the hash that stood in for the name.
  if (m_config.title.isEmpty() || m_config.title.size() == 40) m_config.title = m_meta->name;
  if (notify) m_outside.metadataArrived();
}

void SessionCore::start() {
  if (m_stopped) return;
  m_storage.makeDirectory();
  announceIfNeeded();
}

void SessionCore::stop() {
  m_stopped = true;
  const auto peers = m_peers;
  for (const auto& peer : peers) peer->close();
  m_peers.clear();
  m_delayed.clear();
  m_storage.close();
}

void SessionCore::tick() {
  if (m_stopped) return;
  updateRates();
  m_scheduler.sweep();
  std::erase_if(m_peers, [](const auto& peer) { return peer->isClosed(); });
  connectMore();
  askForMetadata();
  for (const auto& peer : m_peers) pump(*peer);
  const double interval = livePeers() == 0 ? kAnnounceAlone : kAnnounceWithPeers;
  if (!m_lastAnnounce || secondsBetween(*m_lastAnnounce, m_clock.now()) > interval)
    announceIfNeeded();
}

void SessionCore::updateRates() {
  const std::int64_t down = m_scheduler.downloaded();
  m_downRate = m_downRate * 0.5 + static_cast<double>(down - m_lastDown) * 0.5;
  m_upRate = m_upRate * 0.5 + static_cast<double>(m_uploaded - m_lastUp) * 0.5;
  m_lastDown = down;
  m_lastUp = m_uploaded;
}

std::int64_t SessionCore::livePeers() const {
  return std::count_if(m_peers.begin(), m_peers.end(),
                       [](const auto& peer) { return peer->isHandshaken(); });
}

void SessionCore::addPeers(const std::vector<PeerAddr>& addresses) {
  queueAddresses(addresses);
  connectMore();
}

void SessionCore::queueAddresses(const std::vector<PeerAddr>& addresses) {
  for (const PeerAddr& address : addresses)
    if (m_knownAddrs.insert(address).second) m_pendingAddrs.push_back(address);
}

void SessionCore::connectMore() {
  while (m_peers.size() < kMostPeers && !m_pendingAddrs.empty() && !m_stopped) {
    const PeerAddr address = m_pendingAddrs.front();
    m_pendingAddrs.pop_front();
    if (address.port == 0) continue;
    auto peer = std::make_shared<PeerConn>(*this, m_config.infoHash, m_config.peerId);
    m_peers.push_back(peer);
    peer->attach(m_outside.dial(address, peer));
  }
}

void SessionCore::announceIfNeeded() {
  if (m_announcing || m_stopped) return;
  m_announcing = true;
  // The interval runs from the start of an announce, not from its end.
  m_lastAnnounce = m_clock.now();
  m_outside.announce(m_config.trackers.mid(0, kMostTrackers));
}

void SessionCore::onTrackerResult(const TrackerResult& result) {
  m_announced = true;
  if (result.seeders) m_trackerSeeders = std::max(*result.seeders, m_trackerSeeders.value_or(0));
  addPeers(result.peers);
}

void SessionCore::select(std::int64_t file, const std::vector<int>& subtitles) {
  m_scheduler.select(file, subtitles);
  tellMilestones();
}

void SessionCore::setPlayhead(std::int64_t pos) {
  if (m_stopped) return;
  m_scheduler.setPlayhead(pos);
}

void SessionCore::pump(PeerConn& peer) {
  if (m_stopped || !m_meta) return;
  m_scheduler.pump(peer);
}

void SessionCore::receiveBlock(PeerConn& peer, std::uint32_t piece, std::uint32_t begin,
                               ByteSpan data) {
  if (m_stopped || !m_meta) return;
  const std::int64_t had = m_scheduler.have().count();
  m_scheduler.receiveBlock(peer, piece, begin, data);
  if (m_scheduler.have().count() != had) tellMilestones();
}

void SessionCore::tellMilestones() {
  const bool complete = m_scheduler.complete();
  const bool ready = m_scheduler.streamReady();
  if (ready == m_toldReady && complete == m_toldComplete) return;
  m_toldReady = ready;
  m_toldComplete = complete;
  m_outside.milestone();
}

// Its blocks are offered to the others at once: a reader must not wait for the next tick because
// a seeder died.
void SessionCore::peerClosed(PeerConn& peer) {
  if (!m_scheduler.release(peer)) return;
  for (const auto& other : m_peers) pump(*other);
}

// A piece is asked of one peer at a time: who never answers must not stand before who would.
void SessionCore::askForMetadata() {
  if (m_meta) return;
  auto peers = m_peers;
  std::ranges::stable_sort(peers, {}, [](const auto& p) { return p->unansweredMetadata(); });
  for (const auto& peer : peers) requestMetadata(*peer);
}

void SessionCore::requestMetadata(PeerConn& peer) {
  if (m_meta || peer.utMetadata() == 0 || peer.isClosed()) return;
  if (!peer.canBeAskedForMetadata()) return peer.close();
  if (const auto piece = m_metadata.nextRequest(peer.metadataSize(), m_clock.now()))
    peer.sendMetadataMessage(0, *piece);
}

void SessionCore::receiveMetadataPiece(std::int64_t piece, ByteSpan data) {
  if (m_meta || m_stopped) return;
  auto meta = m_metadata.receive(piece, data);
  if (!meta) return;
  setMeta(std::move(meta), true);
  for (const auto& peer : m_peers) peer->declareInterest();
}

std::optional<ByteVector> SessionCore::haveBitfieldBytes() {
  if (!m_meta || m_scheduler.have().count() == 0) return std::nullopt;
  return m_scheduler.have().bitfield();
}

bool SessionCore::mayServe(const PeerConn::Request& request) {
  if (!m_meta || !m_storage.isOpen() || !m_scheduler.have().has(request.piece)) return false;
  if (request.length < 1 || request.length > kLargestServed) return false;
  return std::int64_t{request.begin} + request.length <= m_scheduler.pieceLength(request.piece);
}

void SessionCore::serve(PeerConn& peer, const PeerConn::Request& request) {
  if (m_stopped || !mayServe(request) || m_delayed.size() >= kMostDelayedBlocks) return;
  const TimePoint now = m_clock.now();
  const auto sendAt = m_uploads.admit(request.length, m_uploadLimit(), now);
  if (!sendAt) return;
  if (*sendAt <= now) return peer.sendBlock(request);
  m_delayed.push_back({*sendAt, peer.weak_from_this(), request});
  m_outside.wakeForUploads(m_delayed.front().at);
}

void SessionCore::sendDueBlocks() {
  while (!m_delayed.empty() && m_delayed.front().at <= m_clock.now()) {
    const DelayedBlock due = m_delayed.front();
    m_delayed.pop_front();
    if (const auto peer = due.peer.lock()) peer->sendBlock(due.request);
  }
  if (!m_delayed.empty()) m_outside.wakeForUploads(m_delayed.front().at);
}

bool SessionCore::readBlock(const PeerConn::Request& request, std::span<std::byte> into) {
  return m_meta && m_storage.read(request.piece * m_meta->pieceLength + request.begin, into);
}

bool SessionCore::hasRange(std::int64_t abs, std::int64_t length) const {
  if (!m_meta || length < 1 || abs < 0) return false;
  if (length > std::numeric_limits<std::int64_t>::max() - abs) return false;
  return m_scheduler.hasAll({abs / m_meta->pieceLength, (abs + length - 1) / m_meta->pieceLength});
}

SessionSnapshot SessionCore::makeSnapshot() const {
  SessionSnapshot snapshot;
  snapshot.meta = m_meta;
  snapshot.title = m_config.title;
  snapshot.name = m_meta ? m_meta->name : m_config.title;
  snapshot.peers = livePeers();
  snapshot.knownPeers = static_cast<std::int64_t>(m_knownAddrs.size());
  snapshot.trackerSeeders = m_trackerSeeders;
  snapshot.downRate = m_downRate;
  snapshot.upRate = m_upRate;
  snapshot.downloaded = m_scheduler.downloaded();
  snapshot.uploaded = m_uploaded;
  snapshot.streamProgress = m_scheduler.streamProgress();
  snapshot.streamReady = m_scheduler.streamReady();
  snapshot.secondsSinceProgress = secondsBetween(m_scheduler.lastProgress(), m_clock.now());
  snapshot.complete = m_scheduler.complete();
  snapshot.announced = m_announced;
  return snapshot;
}

} // namespace vellum
