// The peer protocol from the other side: frames to feed in, and what was sent as text.
#pragma once
#include "engine/PeerConn.h"
#include <stdexcept>
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

} // namespace vellum::test
