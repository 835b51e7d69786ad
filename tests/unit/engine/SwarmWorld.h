// The world of a session core without sockets: dialled peers are links that a test plays.
#pragma once
#include "Frames.h"
#include "engine/SessionCore.h"
#include "support/ManualClock.h"
#include "world/SeededTorrent.h"
#include <QTemporaryDir>

namespace vellum::test {

inline constexpr std::int64_t kBlock = kBlockSize;
inline constexpr Hash20 kPeerId{std::byte{'p'}, std::byte{2}};

// A torrent as a session core sees it: its metadata beside its bytes.
struct MadeTorrent : world::SeededTorrent {
  std::shared_ptr<const TorrentMeta> meta;

  ByteSpan bytes() const { return payload->bytes(); }
  ByteSpan block(std::int64_t piece, std::int64_t begin, std::int64_t length) const {
    return bytes().subspan(static_cast<std::size_t>(piece * pieceLength + begin),
                           static_cast<std::size_t>(length));
  }
};

// With files of these sizes.
inline MadeTorrent makeTorrent(const std::vector<std::size_t>& sizes, std::int64_t pieceLength) {
  std::vector<world::TestFile> files;
  for (const auto size : sizes)
    files.push_back({QString::number(size), world::pseudoRandomBytes(size, files.size() + 1)});
  MadeTorrent made{world::SeededTorrent::make(QStringLiteral("Film"), files, pieceLength), {}};
  made.meta = std::make_shared<const TorrentMeta>(*TorrentMeta::parse(asBytes(made.infoRaw)));
  return made;
}

class SwarmWorld : public SessionCore::Outside {
public:
  struct Dialled {
    PeerAddr address;
    std::shared_ptr<PeerConn> peer;
    std::shared_ptr<RecordingLink> link;

    // What the session says to these bytes.
    std::string on(ByteSpan bytes) const {
      feed(*peer, bytes);
      return link->said();
    }
    // The blocks asked for since the last call, each as "piece.block", with the length of a short
    // one; whatever else was said is left out.
    std::string asked() const {
      std::string out;
      for (const auto& message : link->take())
        if (message.id == 6)
          out += (out.empty() ? "" : " ") + std::to_string(message.number(0)) + '.' +
                 std::to_string(message.number(1) / kBlock) +
                 (message.number(2) == kBlock ? "" : '+' + std::to_string(message.number(2)));
      return out;
    }
  };

  // A session that has started, in the folder of the one before.
  void begin(MadeTorrent torrent, QStringList trackers = {}, QString title = {}) {
    payload = std::move(torrent);
    core.reset();
    dialled.clear();
    announces.clear();
    core = std::make_unique<SessionCore>(SessionCore::Config{payload.infoHash, kPeerId,
                                                             std::move(trackers), std::move(title),
                                                             directory},
                                         clock, *this);
    core->start();
  }
  // It knows its files and fetches the first one.
  void know(const std::vector<int>& subtitles = {}) {
    core->setMeta(payload.meta, false);
    core->select(0, subtitles);
  }
  // One more peer, which has yet to say its handshake.
  Dialled& dialNext() {
    core->addPeers({{QStringLiteral("10.0.0.1"), static_cast<std::uint16_t>(++m_joined)}});
    dialled.back().peer->connected();
    return dialled.back();
  }
  // The same, greeted; with everything, and unchoking, or without.
  Dialled& join(bool seeds = true) {
    Dialled& end = dialNext();
    feed(*end.peer, handshake(payload.infoHash));
    end.link->take();
    if (seeds) feed(*end.peer, frame(5, ByteVector(2000, std::byte{0xFF})));
    if (seeds) feed(*end.peer, frame(1));
    return end;
  }
  void deliver(const Dialled& from, std::int64_t piece, std::int64_t begin,
               std::int64_t length = kBlock) const {
    feed(*from.peer,
         pieceFrame(static_cast<std::uint32_t>(piece), static_cast<std::uint32_t>(begin),
                    payload.block(piece, begin, length)));
  }
  void tick(double seconds = 1) {
    clock.advance(seconds);
    core->tick();
  }
  bool holdsThePayload() {
    ByteVector onDisk(payload.bytes().size());
    return core->storage().read(0, onDisk) && std::ranges::equal(onDisk, payload.bytes());
  }

  std::shared_ptr<PeerLink> dial(const PeerAddr& address, std::shared_ptr<PeerConn> peer) override {
    auto link = std::make_shared<RecordingLink>();
    dialled.push_back({address, std::move(peer), link});
    return link;
  }
  void announce(const QStringList& trackers) override { announces.push_back(trackers); }
  void wakeForUploads(TimePoint at) override { wakeAt = secondsBetween(clock.now(), at); }
  void metadataArrived() override { ++metadataArrivals; }
  void milestone() override { ++milestones; }

  ManualClock clock;
  MadeTorrent payload;
  std::deque<Dialled> dialled;
  std::vector<QStringList> announces;
  double wakeAt = 0; // seconds from the moment of the wish
  int metadataArrivals = 0;
  int milestones = 0;
  QTemporaryDir folder;
  QString directory = folder.filePath(QStringLiteral("session"));
  std::unique_ptr<SessionCore> core;

private:
  int m_joined = 0;
};

} // namespace vellum::test
