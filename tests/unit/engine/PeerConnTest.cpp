#include "SwarmWorld.h"
#include <QFile>
#include <gtest/gtest.h>
#include <random>

namespace vellum::test {
namespace {

struct PeerConnTest : testing::Test, SwarmWorld {};

TEST_F(PeerConnTest, HandshakesAreJudgedInTimeByLengthByteAndHashAlone) {
  begin(makeTorrent({kBlock}, kBlock));
  auto& end = dialNext();
  EXPECT_EQ(toHex(end.link->out), toHex(bytesOf("\x13"
                                                "BitTorrent protocol")) +
                                      QStringLiteral("0000000000100000") + toHex(payload.infoHash) +
                                      toHex(kPeerId));
  end.peer->declareInterest();
  EXPECT_EQ(end.link->out.size(), 68U) << "nothing before their handshake";
  const ByteVector greeting = handshake(payload.infoHash);
  EXPECT_EQ(end.on(ByteSpan(greeting).first(67)), "");
  EXPECT_EQ(end.on(ByteSpan(greeting).last(1)),
            "extended 0 d1:md11:ut_metadatai1ee13:metadata_sizei0ee, interested");
  end.peer->declareInterest();
  end.peer->handshakeTimedOut();
  EXPECT_EQ(end.on({}), "") << "interest is said once, and the time-out is over";
  EXPECT_EQ(end.link->closed, 0);

  ByteVector other = handshake(payload.infoHash, false);
  std::fill(other.begin() + 1, other.begin() + 20, std::byte{'x'});
  EXPECT_EQ(dialNext().on(other), "interested") << "no extension bit, no extended handshake";
  for (const std::size_t spoiled : {0, 28, 47}) {
    ByteVector bytes = greeting;
    bytes[spoiled] ^= std::byte{0xFF};
    EXPECT_EQ(dialNext().on(bytes), "") << spoiled;
    EXPECT_EQ(dialled.back().link->closed, 1) << spoiled;
  }
  auto& mute = dialNext();
  mute.peer->handshakeTimedOut();
  mute.peer->close();
  mute.peer->sendHave(1);
  EXPECT_EQ(mute.on({}), "") << "nothing is said on a closed line";
  EXPECT_EQ(mute.link->closed, 1);
}

TEST_F(PeerConnTest, WhatEachMessageBringsAboutAndAtWhichLength) {
  begin(makeTorrent({2 * kBlock + 1}, 2 * kBlock));
  know();
  auto& end = join(false);
  EXPECT_EQ(end.on(frame(1)), "");
  // Of a wrong length or an unknown kind; a cancel is one of them.
  for (const auto& ignored :
       {frame(4, ByteVector(3)), frame(4, numbers({0, 0})), frame(7, ByteVector(8)),
        frame(7, ByteVector(40'000)), frame(8, numbers({0, 0, 1})), frame(20),
        frame(99, ByteVector(100'000))})
    EXPECT_EQ(end.on(ignored), "") << ignored.size();
  const std::string first = "request 0 0 16384, request 0 16384 16384", second = "request 1 0 1";
  EXPECT_EQ(end.on(frame(4, numbers({1}))), second);
  EXPECT_EQ(end.on(frame(5, ByteVector(1, std::byte{0xFF}))), first);
  EXPECT_EQ(end.on(frame(0)), "");
  EXPECT_EQ(end.on(frame(1)), first + ", " + second) << "who choked has dropped what was asked";

  EXPECT_EQ(end.on(pieceFrame(1, 0, payload.block(1, 0, 1))), "have 1");
  const ByteVector request = frame(6, numbers({1, 0, 1}));
  EXPECT_EQ(end.on(request), "") << "it was never unchoked";
  EXPECT_EQ(end.on(frame(2)) + end.on(frame(2)), "unchoke");
  EXPECT_TRUE(end.peer->isInterested());
  EXPECT_EQ(end.on(frame(6, ByteVector(11))) + end.on(frame(6, numbers({1, 0, 1, 0}))), "");
  const std::string block = toHex(payload.block(1, 0, 1)).toStdString();
  EXPECT_EQ(end.on(frame(3)) + end.on(request), "piece 1 0 " + block) << "it stays unchoked";
  EXPECT_FALSE(end.peer->isInterested());

  ByteVector last = frame(0);
  append(last, be32(4'194'305));
  append(last, frame(1));
  EXPECT_EQ(end.on(last), "");
  EXPECT_EQ(end.link->closed, 1);
  EXPECT_TRUE(end.peer->isChoked()) << "nothing is heard behind a frame that is too long";
}

TEST_F(PeerConnTest, HavesAndBitfieldsGrowWithinBounds) {
  begin({});
  auto& end = join(false);
  const auto pieces = [&] {
    std::vector<std::int64_t> out;
    for (std::int64_t piece = 0; piece < 1'048'600; ++piece)
      if (end.peer->hasPiece(piece)) out.push_back(piece);
    return out;
  };
  for (const std::uint32_t piece : {0U, 8U, 72U, 1'048'575U, 1'048'576U, 0xFFFFFFFFU})
    end.on(frame(4, numbers({piece})));
  EXPECT_EQ(pieces(), (std::vector<std::int64_t>{0, 8, 72, 1'048'575}));
  const ByteVector endless = frame(5, ByteVector(1'000'000, std::byte{0xFF}));
  end.on(endless);
  EXPECT_EQ(pieces().size(), 1'048'576U) << "what can matter before the metadata is there";
  end.on(frame(5));
  EXPECT_TRUE(pieces().empty());
  TorrentMeta meta{{}, 1, std::vector<Hash20>(1'048'584), {}, {}, 0};
  core->setMeta(std::make_shared<const TorrentMeta>(std::move(meta)), false);
  end.on(endless);
  EXPECT_EQ(pieces().size(), 1'048'584U);
}

TEST_F(PeerConnTest, WhoDoesNotReadGetsNoBlocksAndIsDroppedAtAMebibyte) {
  begin(makeTorrent({2 * kBlock}, kBlock));
  auto& end = join();
  know();
  for (const int piece : {0, 1}) deliver(end, piece, 0);
  end.on(frame(2));
  QFile::resize(directory + QStringLiteral("/payload.dat"), kBlock); // the second piece is lost
  end.link->waiting = PeerConn::kUnsentLimit;
  for (int i = 0; i < 2050; ++i) EXPECT_EQ(end.on(frame(6, numbers({i == 5 ? 1U : 0U, 0, 1}))), "");
  --end.link->waiting;
  end.peer->writable();
  EXPECT_EQ(end.link->take().size(), 2047U) << "of 2048 requests that may wait";
  EXPECT_EQ(core->makeSnapshot().uploaded, 2047);

  const ByteVector provocation = extended(1, "d8:msg_typei0e5:piecei0ee");
  for (const int above : {0, 1}) {
    end.link->waiting = PeerConn::kMostUnsent + static_cast<std::size_t>(above);
    EXPECT_EQ(end.on(provocation), "extended 0 d8:msg_typei2e5:piecei0ee");
    EXPECT_EQ(end.link->closed, above);
  }
}

TEST_F(PeerConnTest, ExtensionsMayBeTakenBackAndMetadataGoesByThem) {
  begin(makeTorrent({kBlock}, kBlock));
  auto& end = join(false);
  const auto message = [](const char* header) { return extended(1, header, bytesOf("e5:x")); };
  const ByteVector request = message("d8:msg_typei0e5:piecei7ee");
  EXPECT_EQ(end.on(metadataOffer(31235)), "extended 3 d8:msg_typei0e5:piecei0ee");
  clock.advance(9); // it would be asked again
  for (const auto& ignored :
       {extended(0, "not bencode"), extended(0, "le"), extended(9, "de"),
        frame(20, ByteVector(300'000, std::byte{'l'})), message("le"), message("d8:msg_typei1ee"),
        message("d5:piecei0ee"), message("d8:msg_type1:15:piecei0ee"),
        message("d8:msg_typei1e5:piece1:0e"), message("d8:msg_typei2e5:piecei0ee")})
    EXPECT_EQ(end.on(ignored), "") << toByteArray(ignored).left(60).toStdString();
  EXPECT_EQ(end.on(request), "extended 3 d8:msg_typei2e5:piecei7ee");
  EXPECT_EQ(end.on(message("d8:msg_typei1e5:piecei2ee")), "extended 3 d8:msg_typei0e5:piecei0ee");
  EXPECT_EQ(end.on(extended(0, "d1:md11:ut_metadata1:7e13:metadata_size1:7e")), "");
  EXPECT_EQ(end.on(request), "extended 0 d8:msg_typei2e5:piecei7ee") << "taken back";
  end.on(metadataOffer(-5, 255));
  EXPECT_EQ(end.on(request).substr(0, 12), "extended 255");

  core->setMeta(payload.meta, false);
  for (const int noByte : {-1, 256}) {
    auto& other = join(false);
    other.on(metadataOffer(9, noByte));
    EXPECT_EQ(other.link->closed, 0) << noByte;
    EXPECT_EQ(other.on(request), "");
    EXPECT_EQ(other.link->closed, 1) << noByte << " cannot be the id of an answer";
  }
}

TEST(FrameBuffer, GivesEveryFrameOfAnySplitAndOfALongOneWhatMatters) {
  const std::tuple<int, std::size_t, std::size_t> kinds[] = {
      // id, size, and how much is kept
      {2, 1, 1},           {7, 32'768, 32'768}, {7, 32'769, 1},         {5, 40'001, 40'001},
      {5, 40'002, 40'001}, {9, 4'194'304, 1},   {20, 262'144, 262'144}, {20, 262'145, 1}};
  std::mt19937 random(3);
  ByteVector stream;
  std::vector<ByteVector> sent, got;
  for (int i = 0; i < 200; ++i) {
    const auto& [id, size, kept] = kinds[random() % std::size(kinds)];
    const ByteVector whole = frame(id, world::pseudoRandomBytes(size - 1, stream.size()));
    sent.emplace_back(whole.begin() + 4, whole.begin() + 4 + static_cast<std::ptrdiff_t>(kept));
    append(stream, whole);
    append(stream, be32(0)); // a keep-alive
  }
  stream.resize(stream.size() + 8 * FrameBuffer::kReadSize); // more of them

  FrameBuffer buffer;
  for (ByteSpan rest = stream; !rest.empty();) {
    const std::size_t most = random() % 2 == 0 ? 8 : FrameBuffer::kReadSize;
    const auto part = rest.first(std::min(rest.size(), 1 + random() % most));
    const auto room = buffer.prepare();
    ASSERT_GE(room.size(), FrameBuffer::kReadSize);
    std::ranges::copy(part, room.begin());
    buffer.commit(part.size());
    rest = rest.subspan(part.size());
    FrameBuffer::Frame next;
    while (buffer.next(next, 40'000) == FrameBuffer::State::Ready) {
      got.push_back({std::byte{next.id}});
      append(got.back(), next.body);
    }
  }
  const auto right = std::ranges::mismatch(got, sent).in1 - got.begin();
  EXPECT_TRUE(got == sent) << right << " frames of " << got.size() << " are right";
  EXPECT_LE(buffer.prepare().size(), 0x40000U) << "a long message does not cost memory for good";
}

} // namespace
} // namespace vellum::test
