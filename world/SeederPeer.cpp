#include "world/SeederPeer.h"
#include <QByteArray>
#include <algorithm>
#include <asio/write.hpp>
#include <cstring>

namespace vellum::world {

namespace {

constexpr std::size_t kHandshakeSize = 68;
constexpr std::size_t kMaxFrame = 1024 * 1024;
constexpr std::size_t kMaxBlock = 128 * 1024;
constexpr std::size_t kMetadataPiece = 16 * 1024;
constexpr std::size_t kReceiveSize = 64 * 1024;
constexpr std::size_t kMaxBuffers = 64; // of one system call
constexpr std::uint8_t kOurMetadataId = 3;

enum MessageId : std::uint8_t {
  kChoke = 0,
  kUnchoke = 1,
  kInterested = 2,
  kBitfield = 5,
  kRequest = 6,
  kPiece = 7,
  kExtended = 20
};

void append(ByteVector& out, ByteSpan bytes) { out.insert(out.end(), bytes.begin(), bytes.end()); }
void append(ByteVector& out, const QByteArray& bytes) { append(out, asBytes(bytes)); }

// The length prefix and the id of a message with `size` bytes behind the id.
ByteVector messageHead(std::uint8_t id, std::size_t size) {
  ByteVector head;
  head.reserve(16);
  append(head, be32(std::uint32_t(size + 1)));
  head.push_back(std::byte(id));
  return head;
}

ByteVector message(std::uint8_t id, ByteSpan body = {}) {
  auto bytes = messageHead(id, body.size());
  append(bytes, body);
  return bytes;
}

// The integer right behind `key` in bencoded text. Good enough for what clients send, in tests.
std::optional<std::int64_t> integerAfter(const QByteArray& text, const char* key) {
  const auto at = text.indexOf(key);
  if (at < 0) return std::nullopt;
  const auto from = at + qsizetype(std::strlen(key));
  bool ok = false;
  const auto value = text.mid(from, text.indexOf('e', from) - from).toLongLong(&ok);
  return ok ? std::optional<std::int64_t>(value) : std::nullopt;
}

} // namespace

SeederPeer::SeederPeer(LoopbackSeeder& seeder, asio::ip::tcp::socket socket)
    : m_seeder(seeder), m_socket(std::move(socket)), m_due(m_socket.get_executor()),
      m_in(kReceiveSize) {}

void SeederPeer::start() {
  m_socket.set_option(asio::ip::tcp::no_delay(true));
  m_socket.non_blocking(true);
  receive();
}

void SeederPeer::close() {
  asio::error_code ignored;
  m_socket.close(ignored);
  m_due.cancel();
  m_out.clear();
}

// This connection has ended by itself.
void SeederPeer::lose() {
  close();
  m_seeder.m_peers.erase(shared_from_this());
}

void SeederPeer::receive() {
  if (m_inSize == m_in.size()) m_in.resize(m_in.size() * 2);
  m_socket.async_read_some(
      asio::buffer(m_in.data() + m_inSize, m_in.size() - m_inSize),
      [this, self = shared_from_this()](asio::error_code error, std::size_t size) {
        m_inSize += size;
        if (!m_socket.is_open()) return;
        if (error || !consume()) return lose();
        flush();
        if (m_socket.is_open()) receive();
      });
}

// Handles what is complete in m_in and moves the rest to its front; false when it is no protocol.
bool SeederPeer::consume() {
  auto rest = ByteSpan(m_in).first(m_inSize);
  if (!m_greeted) {
    if (rest.size() < kHandshakeSize) return true;
    if (!handshake(rest.first(kHandshakeSize))) return false;
    rest = rest.subspan(kHandshakeSize);
  }
  while (rest.size() >= 4 && m_socket.is_open()) {
    const std::size_t length = rd32(rest, 0);
    if (length > kMaxFrame) return false;
    if (rest.size() - 4 < length) break;
    if (length > 0) frame(rest.subspan(4, length));
    rest = rest.subspan(4 + length);
  }
  std::memmove(m_in.data(), rest.data(), rest.size());
  m_inSize = rest.size();
  return true;
}

bool SeederPeer::handshake(ByteSpan bytes) {
  const auto& torrent = m_seeder.m_torrent;
  if (bytes[0] != std::byte(19) || !std::ranges::equal(bytes.subspan(28, 20), torrent.infoHash))
    return false;
  m_greeted = true;
  ByteVector out;
  append(out, QByteArray("\x13"
                         "BitTorrent protocol") +
                  QByteArray(5, '\0') + '\x10' + QByteArray(2, '\0'));
  append(out, torrent.infoHash);
  append(out, QByteArray("-LS0001-").leftJustified(20, '0'));
  if ((bytes[25] & std::byte(0x10)) != std::byte(0)) {
    const auto metadata = m_seeder.m_options.servesMetadata
                              ? "d1:md11:ut_metadatai" + QByteArray::number(kOurMetadataId) +
                                    "ee13:metadata_sizei" +
                                    QByteArray::number(torrent.infoRaw.size()) + "ee"
                              : QByteArray("d1:mdee");
    append(out, message(kExtended, asBytes('\0' + metadata)));
  }
  ByteVector bits(std::size_t((torrent.pieceCount() + 7) / 8), std::byte(0xff));
  if (const auto spare = bits.size() * 8 - std::size_t(torrent.pieceCount()); spare > 0)
    bits.back() = std::byte(0xff << spare);
  append(out, message(kBitfield, bits));
  send(std::move(out));
  return true;
}

void SeederPeer::frame(ByteSpan bytes) {
  const auto body = bytes.subspan(1);
  switch (std::uint8_t(bytes[0])) {
  case kInterested:
    if (!m_seeder.m_options.choke && !std::exchange(m_unchoked, true)) send(message(kUnchoke));
    break;
  case kRequest:
    if (body.size() == 12 && m_unchoked) block(rd32(body, 0), rd32(body, 4), rd32(body, 8));
    break;
  case kExtended: extended(body); break;
  default: break;
  }
}

void SeederPeer::block(std::uint64_t piece, std::uint64_t begin, std::uint64_t length) {
  auto& seeder = m_seeder;
  const auto payload = seeder.m_torrent.payload->bytes();
  const auto pieceLength = std::uint64_t(seeder.m_torrent.pieceLength);
  const auto from = piece * pieceLength + begin;
  if (length > kMaxBlock || begin + length > pieceLength || from + length > payload.size()) return;
  const auto& options = seeder.m_options;
  if (options.stallAfter && seeder.m_payloadSent + std::int64_t(length) > *options.stallAfter)
    return;
  if (options.closeAfter && seeder.m_payloadSent + std::int64_t(length) > *options.closeAfter)
    return seeder.shutDown();
  seeder.m_payloadSent += std::int64_t(length);

  auto head = messageHead(kPiece, 8 + length);
  append(head, be32(std::uint32_t(piece)));
  append(head, be32(std::uint32_t(begin)));
  const auto body = payload.subspan(from, length);
  if (options.corruptPiece == std::int64_t(piece) && length > 0 && seeder.m_corruptLeft > 0) {
    --seeder.m_corruptLeft;
    append(head, body);
    head.back() ^= std::byte(0xff);
    return send(std::move(head));
  }
  send(std::move(head), body);
}

void SeederPeer::extended(ByteSpan bytes) {
  if (bytes.empty() || !m_seeder.m_options.servesMetadata) return;
  const auto text = toByteArray(bytes.subspan(1));
  if (bytes[0] == std::byte(0))
    m_theirMetadataId = std::uint8_t(integerAfter(text, "11:ut_metadatai").value_or(0));
  else if (bytes[0] == std::byte(kOurMetadataId) && integerAfter(text, "8:msg_typei") == 0)
    sendMetadata(integerAfter(text, "5:piecei").value_or(-1));
}

void SeederPeer::sendMetadata(std::int64_t piece) {
  const auto raw = asBytes(m_seeder.m_torrent.infoRaw);
  const auto pieces = std::int64_t((raw.size() + kMetadataPiece - 1) / kMetadataPiece);
  if (piece < 0 || piece >= pieces) return;
  auto part = raw.subspan(std::size_t(piece) * kMetadataPiece);
  part = part.first(std::min(part.size(), kMetadataPiece));
  const QByteArray body = char(m_theirMetadataId) + QByteArray("d8:msg_typei1e5:piecei") +
                          QByteArray::number(qint64(piece)) + "e10:total_sizei" +
                          QByteArray::number(qint64(raw.size())) + "ee" + toByteArray(part);
  send(message(kExtended, asBytes(body)));
}

void SeederPeer::send(ByteVector head, ByteSpan body) {
  const auto size = head.size() + body.size();
  m_out.push_back({m_seeder.m_link.arrival(TimePoint::clock::now(), size), std::move(head), body});
}

// What is due, as one system call takes it.
std::vector<asio::const_buffer> SeederPeer::dueBuffers(TimePoint now) const {
  std::vector<asio::const_buffer> buffers;
  buffers.reserve(kMaxBuffers);
  std::size_t gone = m_outSent;
  for (const auto& chunk : m_out) {
    if (chunk.due > now || buffers.size() + 2 > kMaxBuffers) break;
    for (const auto part : {ByteSpan(chunk.head), chunk.body}) {
      const auto skipped = std::min(gone, part.size());
      gone -= skipped;
      if (skipped < part.size())
        buffers.push_back(asio::buffer(part.data() + skipped, part.size() - skipped));
    }
  }
  return buffers;
}

// Sends what is due, as far as the socket takes it, and sees to it that the rest follows.
void SeederPeer::flush() {
  if (m_flushing) return;
  const auto goOn = [this, self = shared_from_this()](asio::error_code error) {
    m_flushing = false;
    if (!error) flush();
  };
  while (!m_out.empty() && m_socket.is_open()) {
    const auto now = TimePoint::clock::now();
    asio::error_code error;
    if (m_out.front().due > now) {
      m_flushing = true;
      m_due.expires_at(m_out.front().due);
      return m_due.async_wait(goOn);
    }
    sent(m_socket.write_some(dueBuffers(now), error));
    if (error == asio::error::would_block) {
      m_flushing = true;
      return m_socket.async_wait(asio::ip::tcp::socket::wait_write, goOn);
    }
    if (error) return; // shows on the receiving side
  }
}

void SeederPeer::sent(std::size_t bytes) {
  m_outSent += bytes;
  while (!m_out.empty() && m_outSent >= m_out.front().size()) {
    m_outSent -= m_out.front().size();
    m_out.pop_front();
  }
}

} // namespace vellum::world
