// One running torrent without its sockets: all of its state, and every rule that acts upon it.
#pragma once
#include "base/Random.h"
#include "engine/MetadataExchange.h"
#include "engine/PeerAddr.h"
#include "engine/PeerConn.h"
#include "engine/SessionSnapshot.h"
#include "engine/SessionStorage.h"
#include "engine/TrackerWire.h"
#include "engine/UploadLimiter.h"
#include <deque>
#include <unordered_set>

namespace vellum {

// Lives on its session's strand and takes the time from a clock, so that a test can play a whole
// swarm through it. Announces, connections and timers are made by its Outside.
class SessionCore final : public PeerConn::Session {
public:
  // What it asks of the world.
  class Outside {
  public:
    virtual ~Outside() = default;
    // Starts connecting the peer; its events follow.
    virtual std::shared_ptr<PeerLink> dial(const PeerAddr& address,
                                           std::shared_ptr<PeerConn> peer) = 0;
    // One announce to each; onTrackerResult() for every answer, onAnnounceDone() at the end.
    virtual void announce(const QStringList& trackers) = 0;
    // sendDueBlocks() is to be called at this time.
    virtual void wakeForUploads(TimePoint at) = 0;
    virtual void metadataArrived() = 0;
    // The stream became ready, or what is wanted became complete.
    virtual void milestone() = 0;
  };

  struct Config {
    Hash20 infoHash{};
    Hash20 peerId{};
    QStringList trackers; // already with the defaults behind them
    QString title;
    QString directory;
  };

  static constexpr std::size_t kMostPeers = 45;
  static constexpr int kMostTrackers = 8;
  static constexpr double kAnnounceAlone = 25.0; // seconds between announces with no live peer
  static constexpr double kAnnounceWithPeers = 120.0;
  static constexpr std::int64_t kLargestServed = 32768;   // bytes of one request
  static constexpr std::size_t kMostDelayedBlocks = 4096; // requests beyond are dropped

  // `clock` and `outside` outlive it.
  SessionCore(Config config, const Clock& clock, Outside& outside);

  // "-VL0100-" and 12 characters from '0' to 'z'.
  static Hash20 makePeerId(Random& random);
  // The trackers given, and behind them each default that is not among them.
  static QStringList withDefaults(QStringList trackers, const QStringList& defaults);

  void start();
  void stop(); // final
  void tick(); // once a second
  void setMeta(std::shared_ptr<const TorrentMeta> meta, bool notify);
  void addPeers(const std::vector<PeerAddr>& addresses);
  void select(std::int64_t file, const std::vector<int>& subtitles);
  void setPlayhead(std::int64_t pos);
  void onTrackerResult(const TrackerResult& result);
  void onAnnounceDone() { m_announcing = false; }
  void sendDueBlocks();

  SessionSnapshot makeSnapshot() const;
  bool isStopped() const { return m_stopped; }
  const QString& title() const { return m_config.title; }
  const std::shared_ptr<const TorrentMeta>& meta() const { return m_meta; }
  PieceScheduler& scheduler() { return m_scheduler; }
  SessionStorage& storage() { return m_storage; }
  const std::vector<std::shared_ptr<PeerConn>>& peers() const { return m_peers; }
  std::size_t waitingAddresses() const { return m_pendingAddrs.size(); }
  // True when every piece that the bytes touch is had.
  bool hasRange(std::int64_t abs, std::int64_t length) const;
  // Bytes per second, read anew for each request; below 1: no limit.
  void setUploadLimit(std::function<std::int64_t()> limit) { m_uploadLimit = std::move(limit); }

  void pump(PeerConn& peer) override;
  void receiveBlock(PeerConn& peer, std::uint32_t piece, std::uint32_t begin,
                    ByteSpan data) override;
  void serve(PeerConn& peer, const PeerConn::Request& request) override;
  bool readBlock(const PeerConn::Request& request, std::span<std::byte> into) override;
  void countUploaded(std::int64_t bytes) override { m_uploaded += bytes; }
  std::optional<ByteVector> haveBitfieldBytes() override;
  void requestMetadata(PeerConn& peer) override;
  void receiveMetadataPiece(std::int64_t piece, ByteSpan data) override;
  void releaseRequests(PeerConn& peer) override { m_scheduler.release(peer); }
  void peerClosed(PeerConn& peer) override;
  bool uploadEnabled() const override { return true; }
  std::int64_t pieceCount() const override { return m_meta ? m_meta->pieceCount() : 0; }

private:
  struct DelayedBlock {
    TimePoint at;
    std::weak_ptr<PeerConn> peer;
    PeerConn::Request request;
  };

  void queueAddresses(const std::vector<PeerAddr>& addresses);
  void connectMore();
  void announceIfNeeded();
  void updateRates();
  void askForMetadata();
  void tellMilestones();
  std::int64_t livePeers() const;
  bool mayServe(const PeerConn::Request& request);

  Config m_config;
  const Clock& m_clock;
  Outside& m_outside;
  SessionStorage m_storage;
  PieceScheduler m_scheduler;
  MetadataExchange m_metadata;
  UploadLimiter m_uploads;
  std::function<std::int64_t()> m_uploadLimit = [] { return std::int64_t{0}; };
  std::deque<DelayedBlock> m_delayed; // in the order of their times
  std::shared_ptr<const TorrentMeta> m_meta;
  std::vector<std::shared_ptr<PeerConn>> m_peers;
  std::deque<PeerAddr> m_pendingAddrs;
  std::unordered_set<PeerAddr> m_knownAddrs; // an address is dialled once per session
  bool m_stopped = false;
  bool m_announcing = false;
  bool m_announced = false;
  std::optional<TimePoint> m_lastAnnounce;
  std::optional<std::int64_t> m_trackerSeeders;
  std::int64_t m_uploaded = 0;
  std::int64_t m_lastDown = 0;
  std::int64_t m_lastUp = 0;
  double m_downRate = 0;
  double m_upRate = 0;
  bool m_toldReady = false;
  bool m_toldComplete = false;
};

} // namespace vellum
