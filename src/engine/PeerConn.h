// One outgoing connection to a peer: handshake (BEP 3), frames, messages, extended handshake
// (BEP 10). Which piece to fetch and whether to answer a request is its session's business.
#pragma once
#include "engine/FrameBuffer.h"
#include "engine/PeerLink.h"
#include "engine/PieceScheduler.h"
#include <deque>
#include <memory>

namespace vellum {

// Lives on its session's strand; knows no socket: bytes come in through received(), and leave
// through its link. Once closed it does nothing any more.
class PeerConn final : public PieceScheduler::Peer, public std::enable_shared_from_this<PeerConn> {
public:
  // A part of a piece that a peer asked for.
  struct Request {
    std::uint32_t piece = 0;
    std::uint32_t begin = 0;
    std::uint32_t length = 0; // bytes
  };

  // What it asks of its session, all on the strand.
  class Session {
  public:
    virtual ~Session() = default;
    virtual void pump(PeerConn& peer) = 0;
    virtual void receiveBlock(PeerConn& peer, std::uint32_t piece, std::uint32_t begin,
                              ByteSpan data) = 0;
    virtual void serve(PeerConn& peer, const Request& request) = 0;
    // The bytes of a served request; false if they are not to be had.
    virtual bool readBlock(const Request& request, std::span<std::byte> into) = 0;
    virtual void countUploaded(std::int64_t bytes) = 0;
    // Nothing when there is nothing to show.
    virtual std::optional<ByteVector> haveBitfieldBytes() = 0;
    virtual void requestMetadata(PeerConn& peer) = 0;
    virtual void receiveMetadataPiece(std::int64_t piece, ByteSpan data) = 0;
    // Blocks in flight at this peer become free (it choked us, or it is gone).
    virtual void releaseRequests(PeerConn& peer) = 0;
    virtual void peerClosed(PeerConn& peer) = 0;
    virtual bool uploadEnabled() const = 0;
    // 0 while unknown.
    virtual std::int64_t pieceCount() const = 0;
  };

  static constexpr std::uint32_t kHaveLimit = 0x100000;   // larger indexes are not recorded
  static constexpr std::size_t kUnsentLimit = 0x40000;    // bytes; above it blocks wait unread
  static constexpr std::size_t kMostWaitingBlocks = 2048; // more requests than that are dropped
  // Bytes; a peer that provokes more than that and does not read it is dropped.
  static constexpr std::size_t kMostUnsent = 0x100000;

  // The session outlives the peer.
  PeerConn(Session& session, const Hash20& infoHash, const Hash20& peerId);

  void attach(std::shared_ptr<PeerLink> link) { m_link = std::move(link); }
  // The link's events.
  void connected();
  std::span<std::byte> receiveRoom() { return m_buffer.prepare(); }
  void received(std::size_t size);
  void writable();
  void handshakeTimedOut();
  void close();

  // Sends one framed message.
  void msg(std::uint8_t id, ByteSpan payload = {});
  // Sends a block as soon as the link has room for it.
  void sendBlock(const Request& request);
  // Sends a message of the metadata exchange under the id that the peer gave; an id that is no
  // byte closes the peer.
  void sendMetadataMessage(int type, std::int64_t piece);

  bool isClosed() const { return m_closed; }
  bool isInterested() const { return m_peerInterested; }
  std::int64_t utMetadata() const { return m_utMetadata; }
  std::int64_t metadataSize() const { return m_metadataSize; }
  // An id that is no byte cannot be sent.
  bool canBeAskedForMetadata() const { return m_utMetadata >= 0 && m_utMetadata <= 255; }
  // How often it was asked for metadata since it last sent some.
  int unansweredMetadata() const { return m_unansweredMetadata; }

  bool isHandshaken() const override { return m_handshaken && !m_closed; }
  bool isChoked() const override { return m_choked; }
  bool hasPiece(std::int64_t piece) const override;
  InflightSet& inflight() override { return m_inflight; }
  void declareInterest() override;
  void sendRequest(std::int64_t piece, std::int64_t begin, std::int64_t length) override;
  void sendHave(std::int64_t piece) override;

private:
  bool takeHandshake();
  // False when there is no whole frame left.
  bool handleNext();
  void handle(const FrameBuffer::Frame& frame);
  void onChoke();
  void onInterested();
  void onHave(ByteSpan body);
  void onBitfield(ByteSpan body);
  void onRequest(ByteSpan body);
  void onPiece(ByteSpan body);
  void onExtended(ByteSpan body);
  void onExtendedHandshake(ByteSpan payload);
  void onMetadataMessage(ByteSpan payload);
  std::size_t usefulBitfieldBytes() const;
  void send(ByteSpan bytes);

  Session& m_session;
  Hash20 m_infoHash;
  Hash20 m_peerId;
  std::shared_ptr<PeerLink> m_link;
  FrameBuffer m_buffer;
  bool m_handshaken = false;
  bool m_closed = false;
  bool m_choked = true;
  bool m_wantsPump = false; // at the end of this turn
  bool m_peerInterested = false;
  bool m_sentInterested = false;
  bool m_unchokedThem = false;
  ByteVector m_bits; // piece 0 in the top bit of the first byte; may be shorter than the torrent
  InflightSet m_inflight;
  std::int64_t m_utMetadata = 0; // the peer's id for metadata messages; 0: none
  std::int64_t m_metadataSize = 0;
  int m_unansweredMetadata = 0;
  std::deque<Request> m_waitingBlocks;
};

} // namespace vellum
