// The rules with numbers of a stream's way to its picture. Pure.
#pragma once
#include "base/Clock.h"
#include "engine/PeerAddr.h"
#include "engine/SessionSnapshot.h"
#include "playback/StreamFailure.h"
#include <optional>

namespace vellum {

inline constexpr std::int64_t kFreeAtStart = 314572800; // bytes of disk before anything starts
inline constexpr std::int64_t kFreeMargin = 209715200;  // bytes beside what the files need
inline constexpr double kMetadataLimit = 60.0;          // seconds
inline constexpr double kStallLimit = 45.0;             // seconds
inline constexpr double kStalledNotice = 20.0;          // seconds of buffering without peers
inline constexpr double kWaitingNotice = 15.0;          // seconds of buffering without a block
inline constexpr std::chrono::seconds kTorrentFetchTimeout{25};

// The peers named in a link ("x.pe=host:port"). An item without a usable port is passed over.
std::vector<PeerAddr> directPeers(const QString& magnet);

// Both give a failure when there is less than is needed.
std::optional<StreamFailure> checkFreeAtStart(std::int64_t freeBytes);
std::optional<StreamFailure> checkFreeFor(std::int64_t neededBytes, std::int64_t freeBytes);

// The stall rule before playback: no peer now, and neither a peer nor a block for more than
// kStallLimit. A value; fed with one snapshot a round.
class StallWatch {
public:
  explicit StallWatch(TimePoint now) : m_lastPeerSeen(now) {}
  bool hasStalled(const SessionSnapshot& snapshot, TimePoint now) {
    if (snapshot.peers > 0) m_lastPeerSeen = now;
    return snapshot.peers == 0 && secondsBetween(m_lastPeerSeen, now) > kStallLimit &&
           snapshot.secondsSinceProgress > kStallLimit;
  }

private:
  TimePoint m_lastPeerSeen;
};

// What a stream that plays tells its viewer while the player waits. A value; fed once a second.
class NoticeRule {
public:
  std::optional<QString> notice(bool isBuffering, const SessionSnapshot& snapshot, TimePoint now);

private:
  std::optional<TimePoint> m_stalledSince; // buffering with no peer
};

} // namespace vellum
