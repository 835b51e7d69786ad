// The world of a session core without sockets: dialled peers are links that a test plays.
#pragma once
#include "engine/SessionCore.h"
#include "support/ManualClock.h"
#include "world/SeededTorrent.h"
#include <QTemporaryDir>

namespace vellum::test {

// The peer protocol from the other side: frames to feed in, and what was sent as text.

inline ByteVector bytesOf(std::string_view text) { return toVector(asBytes(text)); }

inline void append(ByteVector& to, ByteSpan bytes) {
  to.insert(to.end(), bytes.begin(), bytes.end());
}

inline ByteVector frame(int id, ByteSpan body = {}) {
  ByteVector out = toVector(be32(static_cast<std::uint32_t>(body.size() + 1)));
  out.push_back(std::byte(id));
  append(out, body);
  return out;
}

inline ByteVector numbers(std::initializer_list<std::uint32_t> values) {
  ByteVector out;
  for (const auto value : values) append(out, be32(value));
  return out;
}

inline ByteVector handshake(const Hash20& infoHash, bool extensions = true) {
  ByteVector out = bytesOf("\x13"
                           "BitTorrent protocol");
  out.resize(28);
  if (extensions) out[25] = std::byte{0x10};
  append(out, infoHash);
  out.resize(68, std::byte{1});
  return out;
}

inline ByteVector pieceFrame(std::uint32_t piece, std::uint32_t begin, ByteSpan data) {
  ByteVector body = numbers({piece, begin});
  append(body, data);
  return frame(7, body);
}

inline ByteVector extended(int id, std::string_view text, ByteSpan raw = {}) {
  ByteVector body{std::byte(id)};
  append(body, asBytes(text));
  append(body, raw);
  return frame(20, body);
}

// What a peer with this much metadata offers, under an id of its own.
inline ByteVector metadataOffer(std::int64_t size, int id = 3) {
  return extended(0, "d1:md11:ut_metadatai" + std::to_string(id) + "ee13:metadata_sizei" +
                         std::to_string(size) + "ee");
}

struct Message {
  int id = 0;
  ByteVector body;
  std::uint32_t number(std::size_t index) const { return rd32(body, index * 4); }
  // Its name and its numbers; of a long rest the length, of a short one the bytes.
  std::string text() const {
    static constexpr const char* kNames[] = {"choke", "unchoke",  "interested", "not interested",
                                             "have",  "bitfield", "request",    "piece"};
    const std::size_t count = id == 4 ? 1 : id == 6 ? 3 : id == 7 ? 2 : 0;
    std::string out = id < 8 ? kNames[id] : "id " + std::to_string(id);
    for (std::size_t i = 0; i < count; ++i) out += ' ' + std::to_string(number(i));
    const ByteSpan rest = ByteSpan(body).subspan(4 * count);
    if (id == 20)
      return "extended " + std::to_string(int(rest[0])) + ' ' +
             toByteArray(rest.subspan(1)).toStdString();
    if (rest.empty()) return out;
    return out + (rest.size() > 20 ? " +" + std::to_string(rest.size())
                                   : ' ' + toHex(rest).toStdString());
  }
};

// Keeps what a peer sends.
class RecordingLink final : public PeerLink {
public:
  void send(ByteSpan bytes) override {
    append(out, bytes);
    if (out.size() > 64 * std::size_t{kMiB}) throw std::length_error("it talks without end");
  }
  std::size_t unsent() const override { return waiting; }
  void close() override { ++closed; }

  // The frames sent since the last call, the handshake passed over.
  std::vector<Message> take() {
    std::size_t at = !out.empty() && out[0] == std::byte{19} ? 68 : 0;
    std::vector<Message> messages;
    while (at + 5 <= out.size() && at + 4 + rd32(out, at) <= out.size()) {
      const ByteSpan frame = ByteSpan(out).subspan(at + 4, rd32(out, at));
      messages.push_back({std::to_integer<int>(frame[0]), toVector(frame.subspan(1))});
      at += 4 + frame.size();
    }
    if (at != out.size()) throw std::runtime_error("the rest is no frame");
    out.clear();
    return messages;
  }
  std::string said() {
    std::string log;
    for (const auto& message : take()) log += (log.empty() ? "" : ", ") + message.text();
    return log;
  }

  ByteVector out;
  std::size_t waiting = 0; // bytes that the other side has not read yet
  int closed = 0;
};

inline void feed(PeerConn& peer, ByteSpan bytes) {
  while (!bytes.empty() && !peer.isClosed()) {
    const auto room = peer.receiveRoom();
    const std::size_t size = std::min({room.size(), bytes.size(), FrameBuffer::kReadSize});
    std::copy_n(bytes.begin(), size, room.begin());
    peer.received(size);
    bytes = bytes.subspan(size);
  }
}

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
