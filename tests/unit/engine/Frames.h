// The peer protocol from the other side: frames to feed in, and what was sent taken apart.
#pragma once
#include "engine/PeerConn.h"
#include <string>
#include <vector>

namespace vellum::test {

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

// Keeps what a peer sends.
class RecordingLink final : public PeerLink {
public:
  void send(ByteSpan bytes) override { append(out, bytes); }
  std::size_t unsent() const override { return stuck ? out.size() : 0; }
  void close() override { ++closed; }

  struct Message {
    int id = 0;
    ByteVector body;
    std::uint32_t number(std::size_t index) const { return rd32(body, index * 4); }
  };
  // The frames sent since the last call, the handshake passed over.
  std::vector<Message> take() {
    std::size_t at = sawHandshake ? 0 : 68;
    sawHandshake = true;
    std::vector<Message> messages;
    while (at + 5 <= out.size()) {
      const std::size_t size = rd32(out, at);
      const auto body = ByteSpan(out).subspan(at + 5, size - 1);
      messages.push_back({std::to_integer<int>(out[at + 4]), toVector(body)});
      at += 4 + size;
    }
    out.clear();
    return messages;
  }

  ByteVector out;
  bool sawHandshake = false;
  bool stuck = false; // the peer reads nothing
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

} // namespace vellum::test
