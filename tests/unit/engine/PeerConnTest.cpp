#include "Frames.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

using namespace test;

// Notes what the peer asks of its session.
class RecordingSession final : public PeerConn::Session {
public:
  void pump(PeerConn&) override { ++pumps; }
  void receiveBlock(PeerConn&, std::uint32_t piece, std::uint32_t begin, ByteSpan data) override {
    blocks.push_back({piece, begin, static_cast<std::uint32_t>(data.size())});
  }
  void serve(PeerConn& peer, const PeerConn::Request& request) override { peer.sendBlock(request); }
  bool readBlock(const PeerConn::Request&, std::span<std::byte>) override { return ++reads > 0; }
  void countUploaded(std::int64_t bytes) override { uploaded += bytes; }
  std::optional<ByteVector> haveBitfieldBytes() override { return bits; }
  void requestMetadata(PeerConn&) override { ++metadataRequests; }
  void receiveMetadataPiece(std::int64_t piece, ByteSpan data) override {
    metadata.emplace_back(piece, data.size());
  }
  void releaseRequests(PeerConn& peer) override { peer.inflight().clear(); }
  void peerClosed(PeerConn&) override { ++closes; }
  bool uploadEnabled() const override { return true; }
  std::int64_t pieceCount() const override { return 0; }

  int pumps = 0, reads = 0, metadataRequests = 0, closes = 0;
  std::int64_t uploaded = 0;
  std::optional<ByteVector> bits;
  std::vector<PeerConn::Request> blocks;
  std::vector<std::pair<std::int64_t, std::size_t>> metadata;
};

struct PeerConnTest : testing::Test {
  Hash20 hash = [] {
    Hash20 h;
    h.fill(std::byte{7});
    return h;
  }();
  Hash20 id = [] {
    Hash20 h;
    h.fill(std::byte{'p'});
    return h;
  }();
  RecordingSession session;
  std::shared_ptr<PeerConn> peer = std::make_shared<PeerConn>(session, hash, id);
  std::shared_ptr<RecordingLink> link = std::make_shared<RecordingLink>();

  PeerConnTest() {
    peer->attach(link);
    peer->connected();
  }
  void shakeHands(bool extensions = true) {
    feed(*peer, handshake(hash, extensions));
    link->take();
  }
};

TEST_F(PeerConnTest, OurHandshakeOffersTheExtensionProtocolAlone) {
  EXPECT_EQ(toHex(link->out), toHex(bytesOf("\x13"
                                            "BitTorrent protocol")) +
                                  QStringLiteral("0000000000100000") + toHex(hash) + toHex(id));
}

TEST_F(PeerConnTest, AfterTheirHandshakeComeExtensionsBitfieldAndInterest) {
  session.bits = ByteVector{std::byte{0x80}};
  feed(*peer, handshake(hash));
  const auto sent = link->take();
  ASSERT_EQ(sent.size(), 3U);
  EXPECT_EQ(sent[0].id, 20);
  EXPECT_EQ(sent[0].body,
            bytesOf(std::string("\0d1:md11:ut_metadatai1ee13:metadata_sizei0ee", 44)));
  EXPECT_EQ(sent[1].id, 5);
  EXPECT_EQ(sent[2].id, 2);
}

TEST_F(PeerConnTest, HandshakesAreJudgedByLengthByteAndHashAlone) {
  ByteVector otherProtocol = handshake(hash, false);
  std::fill(otherProtocol.begin() + 1, otherProtocol.begin() + 20, std::byte{'x'});
  feed(*peer, ByteSpan(otherProtocol).first(67));
  EXPECT_FALSE(peer->isHandshaken());
  feed(*peer, ByteSpan(otherProtocol).subspan(67));
  EXPECT_TRUE(peer->isHandshaken());
  const auto sent = link->take();
  ASSERT_EQ(sent.size(), 1U) << "no extension bit, no extended handshake";
  EXPECT_EQ(sent[0].id, 2);

  for (const std::size_t spoiled : {std::size_t{0}, std::size_t{28}, std::size_t{47}}) {
    PeerConn other(session, hash, id);
    ByteVector bytes = handshake(hash);
    bytes[spoiled] ^= std::byte{0xFF};
    feed(other, bytes);
    EXPECT_TRUE(other.isClosed()) << spoiled;
  }
}

TEST_F(PeerConnTest, AHandshakeThatNeverComesEndsThePeerOnce) {
  feed(*peer, ByteSpan(handshake(hash)).first(67));
  peer->handshakeTimedOut();
  peer->close();
  EXPECT_EQ(link->closed, 1);
  EXPECT_EQ(session.closes, 1);
}

TEST_F(PeerConnTest, AHandshakeInTimeIsNotTimedOut) {
  shakeHands();
  peer->handshakeTimedOut();
  EXPECT_FALSE(peer->isClosed());
}

TEST_F(PeerConnTest, FramesSurviveEverySplit) {
  ByteVector stream = handshake(hash);
  append(stream, frame(5, ByteVector{std::byte{0x40}}));
  append(stream, be32(0)); // a keep-alive
  append(stream, frame(1));
  append(stream, frame(99, ByteVector(100'000))); // unknown and long
  append(stream, pieceFrame(3, 0x4000, ByteVector(16384)));
  append(stream, frame(4, numbers({9})));
  for (const std::size_t step :
       {std::size_t{1}, std::size_t{3}, std::size_t{16387}, stream.size()}) {
    session.blocks.clear();
    PeerConn other(session, hash, id);
    for (std::size_t at = 0; at < stream.size(); at += step)
      feed(other, ByteSpan(stream).subspan(at, std::min(step, stream.size() - at)));
    EXPECT_FALSE(other.isClosed());
    EXPECT_FALSE(other.isChoked());
    EXPECT_TRUE(other.hasPiece(1));
    EXPECT_FALSE(other.hasPiece(0));
    EXPECT_TRUE(other.hasPiece(9));
    ASSERT_EQ(session.blocks.size(), 1U) << step;
    EXPECT_EQ(session.blocks[0].length, 16384U);
  }
}

TEST_F(PeerConnTest, AFrameMayBeFourMebibytesAndNoLonger) {
  shakeHands();
  ByteVector longest = toVector(be32(4'194'304));
  longest.resize(4 + 4'194'304, std::byte{77});
  feed(*peer, longest);
  feed(*peer, frame(1));
  EXPECT_FALSE(peer->isClosed());
  EXPECT_FALSE(peer->isChoked()) << "what follows a long frame is read";
  feed(*peer, be32(4'194'305));
  EXPECT_TRUE(peer->isClosed());
}

TEST_F(PeerConnTest, HavesAndBitfieldsGrowWithinBounds) {
  shakeHands();
  feed(*peer, frame(4, numbers({1'048'575})));
  EXPECT_TRUE(peer->hasPiece(1'048'575));
  EXPECT_EQ(session.pumps, 1);
  feed(*peer, frame(4, numbers({1'048'576})));
  EXPECT_FALSE(peer->hasPiece(1'048'576));
  EXPECT_EQ(session.pumps, 2) << "not recorded, yet it pumps";
  feed(*peer, frame(4, ByteVector(3)));
  EXPECT_EQ(session.pumps, 2) << "a have of another length does not";
  feed(*peer, frame(5, ByteVector(1'000'000, std::byte{0xFF})));
  EXPECT_TRUE(peer->hasPiece(1'048'575));
  EXPECT_FALSE(peer->hasPiece(1'048'576)) << "only what can matter is kept of a long bitfield";
  feed(*peer, frame(5));
  EXPECT_FALSE(peer->hasPiece(0));
}

TEST_F(PeerConnTest, AFloodOfTinyMessagesCostsOnePumpARead) {
  shakeHands();
  ByteVector flood;
  for (std::uint32_t i = 0; i < 5'000; ++i) {
    append(flood, frame(1));
    append(flood, frame(4, numbers({i})));
  }
  feed(*peer, flood);
  EXPECT_TRUE(peer->hasPiece(4'999));
  EXPECT_EQ(session.pumps, 2) << "for " << flood.size() << " bytes, 65536 at a time";
}

TEST_F(PeerConnTest, RequestsCountOnceUnchokedAndAtTheirExactLength) {
  shakeHands();
  feed(*peer, frame(6, numbers({0, 0, 16384})));
  EXPECT_TRUE(link->take().empty()) << "never unchoked";
  feed(*peer, frame(2));
  feed(*peer, frame(2));
  auto sent = link->take();
  ASSERT_EQ(sent.size(), 1U) << "one unchoke for two interested";
  EXPECT_EQ(sent[0].id, 1);
  feed(*peer, frame(3));
  EXPECT_FALSE(peer->isInterested());
  feed(*peer, frame(6, numbers({0, 0})));
  feed(*peer, frame(6, numbers({5, 16384, 100})));
  feed(*peer, frame(8, numbers({5, 16384, 100}))); // a cancel changes nothing
  sent = link->take();
  ASSERT_EQ(sent.size(), 1U);
  EXPECT_EQ(sent[0].id, 7);
  EXPECT_EQ(sent[0].number(0), 5U);
  EXPECT_EQ(sent[0].number(1), 16384U);
  EXPECT_EQ(sent[0].body.size(), 108U);
  EXPECT_EQ(session.uploaded, 100);
}

TEST_F(PeerConnTest, APeerThatAsksAndNeverReadsCostsNoMemory) {
  shakeHands();
  feed(*peer, frame(2));
  link->stuck = true;
  for (int i = 0; i < 100'000; ++i) feed(*peer, frame(6, numbers({0, 0, 32768})));
  EXPECT_LE(link->out.size(), PeerConn::kUnsentLimit + 40'000);
  link->stuck = false;
  peer->writable();
  EXPECT_GE(session.reads, static_cast<int>(PeerConn::kMostWaitingBlocks));
  EXPECT_LT(session.reads, 3000);
}

TEST_F(PeerConnTest, APeerThatProvokesAnswersAndNeverReadsIsDropped) {
  shakeHands();
  link->stuck = true;
  const ByteVector provocation = extended(1, "d8:msg_typei0e5:piecei0ee");
  int sent = 0;
  while (sent < 100'000 && !peer->isClosed() && ++sent) feed(*peer, provocation);
  EXPECT_TRUE(peer->isClosed());
  EXPECT_GT(link->out.size(), PeerConn::kMostUnsent);
  EXPECT_LT(link->out.size(), PeerConn::kMostUnsent + 100);
}

TEST_F(PeerConnTest, MalformedPiecesAndExtensionsAreIgnored) {
  shakeHands();
  feed(*peer, frame(7, ByteVector(8)));
  feed(*peer, frame(7, ByteVector(40'000)));
  feed(*peer, frame(20));
  feed(*peer, extended(0, "not bencode"));
  feed(*peer, extended(0, "le"));
  feed(*peer, extended(1, "d8:msg_typei1ee"));
  feed(*peer, extended(1, "d8:msg_type1:15:piecei0ee"));
  feed(*peer, extended(9, "d8:msg_typei1e5:piecei0ee"));
  feed(*peer, frame(20, ByteVector(300'000, std::byte{'l'})));
  EXPECT_FALSE(peer->isClosed());
  EXPECT_TRUE(session.blocks.empty());
  EXPECT_TRUE(session.metadata.empty());
  EXPECT_EQ(session.metadataRequests, 0);
}

TEST_F(PeerConnTest, TheExtendedHandshakeMayComeAgainAndTakeBackWhatItSaid) {
  shakeHands();
  feed(*peer, extended(0, "d1:md11:ut_metadatai3ee13:metadata_sizei31235ee"));
  EXPECT_EQ(peer->utMetadata(), 3);
  EXPECT_EQ(peer->metadataSize(), 31235);
  peer->sendMetadataMessage(0, 4);
  feed(*peer, extended(1, "d8:msg_typei0e5:piecei7ee"));
  const auto sent = link->take();
  ASSERT_EQ(sent.size(), 2U);
  EXPECT_EQ(sent[0].body, bytesOf("\x03"
                                  "d8:msg_typei0e5:piecei4ee"));
  EXPECT_EQ(sent[1].body, bytesOf("\x03"
                                  "d8:msg_typei2e5:piecei7ee"));
  feed(*peer, extended(0, "de"));
  EXPECT_EQ(peer->utMetadata(), 0);
  EXPECT_EQ(peer->metadataSize(), 0);
  EXPECT_EQ(session.metadataRequests, 2);
}

TEST_F(PeerConnTest, MetadataDataCarriesWhatFollowsItsHeader) {
  shakeHands();
  feed(*peer, extended(1, "d8:msg_typei1e5:piecei2e10:total_sizei9ee", bytesOf("e5:xyz")));
  feed(*peer, extended(1, "d8:msg_typei1e5:piecei0ee"));
  feed(*peer, extended(1, "d8:msg_typei2e5:piecei0ee"));
  EXPECT_EQ(session.metadata, (std::vector<std::pair<std::int64_t, std::size_t>>{{2, 6}, {0, 0}}));
}

TEST_F(PeerConnTest, AMetadataIdThatIsNoByteEndsThePeer) {
  for (const char* id : {"300", "256", "-1"}) {
    auto other = std::make_shared<PeerConn>(session, hash, this->id);
    other->attach(link);
    feed(*other, handshake(hash));
    feed(*other, extended(0, std::string("d1:md11:ut_metadatai") + id + "eee"));
    EXPECT_FALSE(other->isClosed()) << id;
    feed(*other, extended(1, "d8:msg_typei0e5:piecei0ee"));
    EXPECT_TRUE(other->isClosed()) << id;
  }
}

} // namespace
} // namespace vellum
