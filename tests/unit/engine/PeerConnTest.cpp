#include "Frames.h"
#include "world/Payload.h"
#include <gtest/gtest.h>
#include <random>

namespace vellum::test {
namespace {

// Notes what the peer asks of its session. The bytes of every block count up from 0.
struct ToldSession final : PeerConn::Session {
  void pump(PeerConn&) override { note(heard, "pump"); }
  void receiveBlock(PeerConn&, std::uint32_t piece, std::uint32_t begin, ByteSpan data) override {
    for (const auto number : {std::size_t{piece}, std::size_t{begin}, data.size()})
      note(heard, "block " + std::to_string(number));
  }
  void serve(PeerConn& peer, const PeerConn::Request& request) override { peer.sendBlock(request); }
  bool readBlock(const PeerConn::Request&, std::span<std::byte> into) override {
    for (std::size_t i = 0; i < into.size(); ++i) into[i] = std::byte(i);
    return ++reads != unreadable;
  }
  void countUploaded(std::int64_t bytes) override { uploaded += bytes; }
  std::optional<ByteVector> haveBitfieldBytes() override { return bits; }
  void requestMetadata(PeerConn&) override { note(heard, "ask"); }
  void receiveMetadataPiece(std::int64_t piece, ByteSpan data) override {
    note(heard, "metadata " + std::to_string(piece) + ' ' + toByteArray(data).toStdString());
  }
  void releaseRequests(PeerConn&) override { note(heard, "release"); }
  void peerClosed(PeerConn&) override { note(heard, "closed"); }
  bool uploadEnabled() const override { return true; }
  std::int64_t pieceCount() const override { return pieces; }

  std::string heard;
  std::optional<ByteVector> bits;
  int reads = 0, unreadable = 0;
  std::int64_t uploaded = 0, pieces = 0;
};

struct PeerConnTest : testing::Test {
  const Hash20 hash{std::byte{'h'}, std::byte{1}}, id{std::byte{'p'}, std::byte{2}};
  ToldSession session;
  std::shared_ptr<PeerConn> peer = std::make_shared<PeerConn>(session, hash, id);
  std::shared_ptr<RecordingLink> link = std::make_shared<RecordingLink>();

  PeerConnTest() {
    peer->attach(link);
    peer->connected();
  }
  void shakeHands() {
    feed(*peer, handshake(hash));
    link->take();
  }
  // What comes of these bytes: what the session is asked, and behind it what the peer is told.
  std::string on(const ByteVector& bytes) {
    feed(*peer, bytes);
    if (const auto said = link->said(); !said.empty()) note(session.heard, said);
    return std::exchange(session.heard, {});
  }
};

TEST_F(PeerConnTest, BothHandshakesAndWhatFollowsThem) {
  EXPECT_EQ(toHex(link->out), toHex(bytesOf("\x13"
                                            "BitTorrent protocol")) +
                                  QStringLiteral("0000000000100000") + toHex(hash) + toHex(id));
  peer->declareInterest();
  EXPECT_EQ(link->out.size(), 68U) << "nothing before their handshake";
  session.bits = ByteVector{std::byte{0x80}};
  feed(*peer, ByteSpan(handshake(hash)).first(67));
  EXPECT_FALSE(peer->isHandshaken());
  EXPECT_EQ(on({std::byte{1}}),
            "extended 0 d1:md11:ut_metadatai1ee13:metadata_sizei0ee, bitfield 80, interested");
  peer->declareInterest();
  peer->handshakeTimedOut();
  EXPECT_EQ(on({}), "") << "interest is said once, and the time-out is over";
}

TEST_F(PeerConnTest, HandshakesAreJudgedInTimeByLengthByteAndHashAlone) {
  ByteVector theirs = handshake(hash, false);
  std::fill(theirs.begin() + 1, theirs.begin() + 20, std::byte{'x'});
  EXPECT_EQ(on(theirs), "interested") << "no extension bit, no extended handshake";
  for (const int spoiled : {-1, 0, 28, 47}) {
    PeerConn other(session, hash, id); // without a link, as until its dialling has returned
    ByteVector bytes = handshake(hash);
    if (spoiled >= 0) bytes[static_cast<std::size_t>(spoiled)] ^= std::byte{0xFF};
    feed(other, bytes);
    EXPECT_EQ(other.isClosed(), spoiled >= 0) << spoiled;
  }
  const auto mute = std::make_shared<PeerConn>(session, hash, id);
  mute->attach(link);
  on({});
  mute->handshakeTimedOut();
  mute->close();
  mute->sendHave(1);
  EXPECT_EQ(on({}), "closed") << "once, and nothing is said on a closed line";
  EXPECT_EQ(link->closed, 1);
}

TEST_F(PeerConnTest, WhatEachMessageBringsAboutAndAtWhichLength) {
  shakeHands();
  ByteVector flood, last = frame(1);
  for (std::uint32_t i = 0; i < 10'000; ++i) append(flood, frame(4, numbers({i})));
  append(last, frame(3));
  append(last, be32(4'194'305));
  append(last, frame(0));
  EXPECT_EQ(on(frame(1)), "pump");
  EXPECT_EQ(on(frame(0)), "release");
  EXPECT_EQ(on(frame(6, numbers({0, 0, 5}))), "") << "it was never unchoked";
  EXPECT_EQ(on(frame(2)) + on(frame(2)), "unchoke");
  EXPECT_EQ(on(frame(6, numbers({5, 16384, 3}))), "piece 5 16384 000102");
  EXPECT_EQ(on(frame(5)), "pump");
  EXPECT_EQ(on(pieceFrame(3, 0x4000, ByteVector(1))), "block 3, block 16384, block 1");
  EXPECT_EQ(on(flood), "pump, pump") << "once for each 64 KiB that are read";
  // Of a wrong length or an unknown kind; a cancel is one of them.
  for (const auto& [id, length] : {std::pair{4, 3},
                                   {4, 5},
                                   {6, 11},
                                   {6, 13},
                                   {7, 8},
                                   {7, 40'000},
                                   {8, 12},
                                   {20, 0},
                                   {99, 100'000}})
    EXPECT_EQ(on(frame(id, ByteVector(static_cast<std::size_t>(length)))), "")
        << id << ' ' << length;
  EXPECT_EQ(session.uploaded, 3);
  EXPECT_TRUE(peer->isChoked() && peer->isInterested());
  EXPECT_EQ(on(last), "closed") << "no pump and nothing else behind a frame that is too long";
  EXPECT_FALSE(peer->isChoked() || peer->isInterested());
}

TEST_F(PeerConnTest, HavesAndBitfieldsGrowWithinBounds) {
  shakeHands();
  const auto pieces = [&] {
    std::vector<std::int64_t> out;
    for (std::int64_t piece = 0; piece < 1'048'600; ++piece)
      if (peer->hasPiece(piece)) out.push_back(piece);
    return out;
  };
  for (const std::uint32_t piece : {0U, 8U, 72U, 1'048'575U, 1'048'576U, 0xFFFFFFFFU})
    EXPECT_EQ(on(frame(4, numbers({piece}))), "pump");
  EXPECT_EQ(pieces(), (std::vector<std::int64_t>{0, 8, 72, 1'048'575}));
  const ByteVector endless = frame(5, ByteVector(1'000'000, std::byte{0xFF}));
  on(endless);
  EXPECT_EQ(pieces().size(), 1'048'576U) << "what can matter before the metadata is there";
  on(frame(5));
  EXPECT_TRUE(pieces().empty());
  session.pieces = 1'048'584;
  on(endless);
  EXPECT_EQ(pieces().size(), 1'048'584U);
}

TEST_F(PeerConnTest, WhoDoesNotReadGetsNoBlocksAndIsDroppedAtAMebibyte) {
  shakeHands();
  on(frame(2));
  link->waiting = PeerConn::kUnsentLimit;
  for (int i = 0; i < 2050; ++i) on(frame(6, numbers({0, 0, 1})));
  EXPECT_EQ(session.reads, 0);
  --link->waiting;
  session.unreadable = 5; // what was asked for behind it comes all the same
  peer->writable();
  EXPECT_EQ(link->take().size(), 2047U) << "of 2048 requests that may wait";
  EXPECT_EQ(session.uploaded, 2047);

  const ByteVector provocation = extended(1, "d8:msg_typei0e5:piecei0ee");
  link->waiting = PeerConn::kMostUnsent;
  EXPECT_EQ(on(provocation), "extended 0 d8:msg_typei2e5:piecei0ee");
  ++link->waiting;
  EXPECT_TRUE(on(provocation).starts_with("closed"));
}

TEST_F(PeerConnTest, ExtensionsMayBeTakenBackAndMetadataGoesByThem) {
  shakeHands();
  const auto message = [](const char* header) { return extended(1, header, bytesOf("e5:x")); };
  const struct {
    ByteVector bytes;
    std::string outcome;
    std::int64_t id, size;
  } steps[] = {
      {extended(0, "not bencode"), "", 0, 0},
      {metadataOffer(31235), "ask", 3, 31235},
      {extended(0, "le"), "", 3, 31235},
      {extended(9, "de"), "", 3, 31235},
      {frame(20, ByteVector(300'000, std::byte{'l'})), "", 3, 31235},
      {message("d8:msg_typei0e5:piecei7ee"), "extended 3 d8:msg_typei2e5:piecei7ee", 3, 31235},
      {message("d8:msg_typei1e5:piecei2e10:total_sizei9ee"), "metadata 2 e5:x, ask", 3, 31235},
      {extended(0, "d1:md11:ut_metadata1:7e13:metadata_size1:7e"), "ask", 0, 0},
      {metadataOffer(-5, 255), "ask", 255, -5},
      {extended(0, "de"), "ask", 0, 0},
  };
  for (const auto& [bytes, outcome, theirId, size] : steps) {
    EXPECT_EQ(on(bytes), outcome);
    EXPECT_EQ(peer->utMetadata(), theirId);
    EXPECT_EQ(peer->metadataSize(), size);
  }
  for (const char* ignored : {"le", "d8:msg_typei1ee", "d5:piecei0ee", "d8:msg_type1:15:piecei0ee",
                              "d8:msg_typei1e5:piece1:0e", "d8:msg_typei2e5:piecei0ee"})
    EXPECT_EQ(on(message(ignored)), "") << ignored;
  peer->sendMetadataMessage(0, 4);
  EXPECT_EQ(on({}), "extended 0 d8:msg_typei0e5:piecei4ee");
  EXPECT_EQ(peer->unansweredMetadata(), 1);
  on(message("d8:msg_typei1e5:piecei2ee"));
  EXPECT_EQ(peer->unansweredMetadata(), 0);
  for (const int noByte : {-1, 256}) {
    PeerConn other(session, hash, id);
    feed(other, handshake(hash));
    feed(other, metadataOffer(9, noByte));
    EXPECT_FALSE(other.isClosed()) << noByte;
    feed(other, message("d8:msg_typei0e5:piecei0ee"));
    EXPECT_TRUE(other.isClosed()) << noByte << " cannot be the id of an answer";
  }
}

TEST(FrameBuffer, GivesEveryFrameOfAnySplitAndOfALongOneWhatMatters) {
  constexpr std::size_t kBitfieldBytes = 40'000;
  struct Sent {
    int id;
    std::size_t size, kept; // with the id
    std::size_t start = 0;  // in the stream
  };
  for (unsigned seed = 1; seed <= 10; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::vector<Sent> sent{{7, 32'768, 32'768}, {7, 32'769, 1},      {5, 32'768, 32'768},
                           {5, 40'001, 40'001}, {5, 40'002, 40'001}, {20, 262'144, 262'144},
                           {20, 262'145, 1},    {9, 4'194'304, 1}};
    for (std::size_t size = 1; size < 60; ++size) sent.push_back({2, size, size});
    std::shuffle(sent.begin(), sent.end(), random);
    ByteVector stream;
    for (auto& [id, size, kept, start] : sent) {
      if (random() % 4 == 0) append(stream, be32(0)); // a keep-alive
      start = stream.size();
      append(stream, frame(id, world::pseudoRandomBytes(size - 1, start)));
    }
    const std::size_t frames = stream.size();
    stream.resize(frames + 8 * FrameBuffer::kReadSize); // more keep-alives

    FrameBuffer buffer;
    FrameBuffer::Frame got;
    std::size_t next = 0;
    for (std::size_t at = 0, size = 0; at < stream.size(); at += size) {
      size = 1 + random() % FrameBuffer::kReadSize;
      // Often a read ends at the edge of a frame, or a few bytes behind it.
      if (next < sent.size() && sent[next].start + 6 > at && random() % 2 == 0)
        size = std::min(size, sent[next].start + 6 - at - random() % 6);
      size = std::clamp<std::size_t>(size, 1, (at < frames ? frames : stream.size()) - at);
      const auto room = buffer.prepare();
      ASSERT_GE(room.size(), FrameBuffer::kReadSize);
      std::copy_n(stream.begin() + static_cast<std::ptrdiff_t>(at), size, room.begin());
      buffer.commit(size);
      while (buffer.next(got, kBitfieldBytes) == FrameBuffer::State::Ready) {
        ASSERT_LT(next, sent.size());
        ASSERT_EQ(got.id, sent[next].id);
        ASSERT_EQ(got.bodySize, sent[next].size - 1);
        ASSERT_TRUE(std::ranges::equal(
            got.body, ByteSpan(stream).subspan(sent[next].start + 5, sent[next].kept - 1)));
        ++next;
      }
      if (at + size == frames) EXPECT_EQ(next, sent.size());
    }
    EXPECT_LE(buffer.prepare().size(), 0x40000U) << "a long message does not cost memory for good";
  }
}

} // namespace
} // namespace vellum::test
