#include "engine/PeerConn.h"
#include "formats/Bencode.h"
#include <algorithm>
#include <utility>

namespace vellum {

namespace {

constexpr std::size_t kHandshakeSize = 68;
constexpr std::byte kProtocolLength{19};
constexpr std::string_view kProtocol = "BitTorrent protocol";
constexpr std::size_t kExtensionByte = 25; // of the handshake
constexpr std::byte kExtensionBit{0x10};
constexpr std::string_view kExtendedHandshake = "d1:md11:ut_metadatai1ee13:metadata_sizei0ee";
constexpr std::byte kOurMetadataId{1};
constexpr int kMetadataData = 1;
constexpr int kMetadataRequest = 0;
constexpr int kMetadataReject = 2;

enum Id : std::uint8_t {
  Choke = 0,
  Unchoke = 1,
  Interested = 2,
  NotInterested = 3,
  Have = 4,
  Bitfield = 5,
  RequestBlock = 6,
  Piece = 7,
  Extended = 20,
};

std::int64_t integerAt(const Bencode* dict, const char* key) {
  const Bencode* value = dict != nullptr ? dict->find(QLatin1String(key)) : nullptr;
  return value != nullptr ? value->integer().value_or(0) : 0;
}

} // namespace

PeerConn::PeerConn(Session& session, const Hash20& infoHash, const Hash20& peerId)
    : m_session(session), m_infoHash(infoHash), m_peerId(peerId) {}

void PeerConn::send(ByteSpan bytes) {
  if (!m_closed && m_link) m_link->send(bytes);
}

void PeerConn::connected() {
  std::array<std::byte, kHandshakeSize> message{};
  message[0] = kProtocolLength;
  std::copy_n(asBytes(kProtocol).begin(), kProtocol.size(), message.begin() + 1);
  message[kExtensionByte] = kExtensionBit;
  std::copy(m_infoHash.begin(), m_infoHash.end(), message.begin() + 28);
  std::copy(m_peerId.begin(), m_peerId.end(), message.begin() + 48);
  send(message);
}

void PeerConn::handshakeTimedOut() {
  if (!m_handshaken) close();
}

void PeerConn::received(std::size_t size) {
  m_buffer.commit(size);
  if (m_closed || (!m_handshaken && !takeHandshake())) return;
  while (!m_closed && handleNext()) {
  }
  // Once for all that was received: a flood of tiny messages must not cost a walk each.
  if (std::exchange(m_wantsPump, false) && !m_closed) m_session.pump(*this);
}

bool PeerConn::handleNext() {
  FrameBuffer::Frame frame;
  const auto state = m_buffer.next(frame, usefulBitfieldBytes());
  if (state == FrameBuffer::State::TooLong) close();
  if (state != FrameBuffer::State::Ready) return false;
  handle(frame);
  if (m_link && m_link->unsent() > kMostUnsent) close();
  return true;
}

// Only the length byte and the info hash are looked at.
bool PeerConn::takeHandshake() {
  const auto bytes = m_buffer.take(kHandshakeSize);
  if (!bytes) return false;
  const auto hash = bytes->subspan(28, m_infoHash.size());
  if (bytes->front() != kProtocolLength ||
      !std::equal(hash.begin(), hash.end(), m_infoHash.begin())) {
    close();
    return false;
  }
  m_handshaken = true;
  if (((*bytes)[kExtensionByte] & kExtensionBit) != std::byte{0}) {
    ByteVector payload{std::byte{0}};
    const auto text = asBytes(kExtendedHandshake);
    payload.insert(payload.end(), text.begin(), text.end());
    msg(Extended, payload);
  }
  if (const auto bits = m_session.haveBitfieldBytes()) msg(Bitfield, *bits);
  declareInterest();
  return true;
}

void PeerConn::msg(std::uint8_t id, ByteSpan payload) {
  std::array<std::byte, 5> head{};
  putBe32(head, static_cast<std::uint32_t>(payload.size() + 1));
  head[4] = std::byte{id};
  send(head);
  if (!payload.empty()) send(payload);
}

void PeerConn::declareInterest() {
  if (m_sentInterested || !m_handshaken) return;
  m_sentInterested = true;
  msg(Interested);
}

void PeerConn::sendRequest(std::int64_t piece, std::int64_t begin, std::int64_t length) {
  std::array<std::byte, 17> frame{};
  const std::span all(frame);
  putBe32(all, 13);
  frame[4] = std::byte{RequestBlock};
  putBe32(all.subspan(5), static_cast<std::uint32_t>(piece));
  putBe32(all.subspan(9), static_cast<std::uint32_t>(begin));
  putBe32(all.subspan(13), static_cast<std::uint32_t>(length));
  send(frame);
}

void PeerConn::sendHave(std::int64_t piece) { msg(Have, be32(static_cast<std::uint32_t>(piece))); }

bool PeerConn::hasPiece(std::int64_t piece) const {
  const auto byte = static_cast<std::size_t>(piece / 8);
  return byte < m_bits.size() && (m_bits[byte] & std::byte(0x80 >> (piece % 8))) != std::byte{0};
}

// Before the metadata is known its own size limit bounds the number of pieces.
std::size_t PeerConn::usefulBitfieldBytes() const {
  return std::max<std::size_t>(kHaveLimit / 8,
                               static_cast<std::size_t>((m_session.pieceCount() + 7) / 8));
}

void PeerConn::handle(const FrameBuffer::Frame& frame) {
  switch (frame.id) {
  case Choke: return onChoke();
  case Unchoke:
    m_choked = false;
    m_wantsPump = true;
    return;
  case Interested: return onInterested();
  case NotInterested: m_peerInterested = false; return;
  case Have: return frame.isWhole() ? onHave(frame.body) : void();
  case Bitfield: return onBitfield(frame.body);
  case RequestBlock: return frame.isWhole() ? onRequest(frame.body) : void();
  case Piece: return frame.isWhole() ? onPiece(frame.body) : void();
  case Extended: return frame.isWhole() ? onExtended(frame.body) : void();
  default: return;
  }
}

void PeerConn::onChoke() {
  m_choked = true;
  m_session.releaseRequests(*this);
}

void PeerConn::onInterested() {
  m_peerInterested = true;
  if (!m_session.uploadEnabled() || m_unchokedThem) return;
  m_unchokedThem = true;
  msg(Unchoke);
}

void PeerConn::onHave(ByteSpan body) {
  if (body.size() != 4) return;
  const std::uint32_t piece = rd32(body, 0);
  if (piece < kHaveLimit) {
    if (m_bits.size() <= piece / 8) m_bits.resize(piece / 8 + 1);
    m_bits[piece / 8] |= std::byte(0x80 >> (piece % 8));
  }
  m_wantsPump = true;
}

void PeerConn::onBitfield(ByteSpan body) {
  m_bits = toVector(body.first(std::min(body.size(), usefulBitfieldBytes())));
  m_wantsPump = true;
}

void PeerConn::onRequest(ByteSpan body) {
  if (body.size() != 12 || !m_unchokedThem) return;
  m_session.serve(*this, {rd32(body, 0), rd32(body, 4), rd32(body, 8)});
}

void PeerConn::onPiece(ByteSpan body) {
  if (body.size() <= 8) return;
  m_session.receiveBlock(*this, rd32(body, 0), rd32(body, 4), body.subspan(8));
}

void PeerConn::onExtended(ByteSpan body) {
  if (body.empty()) return;
  if (body.front() == std::byte{0}) onExtendedHandshake(body.subspan(1));
  if (body.front() == kOurMetadataId) onMetadataMessage(body.subspan(1));
}

void PeerConn::onExtendedHandshake(ByteSpan payload) {
  const auto root = BencodeParser(payload).parse();
  if (!root || root->dict() == nullptr) return;
  m_utMetadata = integerAt(root->find(QStringLiteral("m")), "ut_metadata");
  m_metadataSize = integerAt(&*root, "metadata_size");
  m_session.requestMetadata(*this);
}

void PeerConn::onMetadataMessage(ByteSpan payload) {
  BencodeParser parser(payload);
  const auto root = parser.parse();
  if (!root || root->dict() == nullptr) return;
  const Bencode* type = root->find(QStringLiteral("msg_type"));
  const Bencode* piece = root->find(QStringLiteral("piece"));
  if (type == nullptr || piece == nullptr || !type->integer() || !piece->integer()) return;
  if (*type->integer() == kMetadataData) {
    m_unansweredMetadata = 0;
    m_session.receiveMetadataPiece(*piece->integer(), payload.subspan(parser.pos()));
    m_session.requestMetadata(*this);
  } else if (*type->integer() == kMetadataRequest) {
    sendMetadataMessage(kMetadataReject, *piece->integer());
  }
}

void PeerConn::sendMetadataMessage(int type, std::int64_t piece) {
  if (!canBeAskedForMetadata()) return close();
  if (type == kMetadataRequest) ++m_unansweredMetadata;
  const std::string text =
      "d8:msg_typei" + std::to_string(type) + "e5:piecei" + std::to_string(piece) + "ee";
  ByteVector payload{std::byte(m_utMetadata)};
  const auto bytes = asBytes(text);
  payload.insert(payload.end(), bytes.begin(), bytes.end());
  msg(Extended, payload);
}

void PeerConn::sendBlock(const Request& request) {
  if (m_closed || m_waitingBlocks.size() >= kMostWaitingBlocks) return;
  m_waitingBlocks.push_back(request);
  writable();
}

// Blocks are read when the link has room for them, not when they are asked for: a peer that asks
// and never reads costs twelve bytes a request.
void PeerConn::writable() {
  ByteVector frame;
  while (!m_closed && !m_waitingBlocks.empty() && m_link->unsent() < kUnsentLimit) {
    const Request request = m_waitingBlocks.front();
    m_waitingBlocks.pop_front();
    frame.resize(13 + request.length);
    const std::span all(frame);
    if (!m_session.readBlock(request, all.subspan(13))) continue;
    putBe32(all, 9 + request.length);
    frame[4] = std::byte{Piece};
    putBe32(all.subspan(5), request.piece);
    putBe32(all.subspan(9), request.begin);
    send(frame);
    m_session.countUploaded(request.length);
  }
}

void PeerConn::close() {
  if (m_closed) return;
  m_closed = true;
  m_waitingBlocks.clear();
  if (m_link) m_link->close();
  m_session.peerClosed(*this);
}

} // namespace vellum
