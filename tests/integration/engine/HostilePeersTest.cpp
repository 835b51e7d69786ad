// A session among peers that break every rule, and one good seeder that comes last.
#include "ScriptedPeer.h"
#include "SessionWorld.h"
#include <list>

namespace vellum::test {
namespace {

using Socket = ScriptedPeer::Socket;
constexpr auto say = ScriptedPeer::say;

// After the handshake a peer says all of `frames`, and stays.
ScriptedPeer::Script saying(const Hash20& hash, const std::vector<ByteVector>& frames) {
  return [=](Socket& socket) -> Flow<> {
    co_await ScriptedPeer::greet(socket, hash);
    for (const auto& bytes : frames) co_await say(socket, bytes);
  };
}

// Says something before and instead of a handshake.
ScriptedPeer::Script barking(const ByteVector& bytes) {
  return [=](Socket& socket) -> Flow<> { co_await say(socket, bytes); };
}

// Has everything, and answers the first `count` requests with bytes that are not the payload's.
ScriptedPeer::Script lying(const Hash20& hash, int count) {
  return [=](Socket& socket) -> Flow<> {
    co_await ScriptedPeer::greet(socket, hash);
    co_await say(socket, frame(5, ByteVector(1'000'000, std::byte{0xff}))); // far too long
    co_await say(socket, frame(1));
    for (int left = count; left > 0;) {
      const auto message = co_await ScriptedPeer::hear(socket);
      if (message.id != 6) continue;
      --left;
      const ByteVector wrong(message.number(2), std::byte{'x'});
      co_await say(socket, pieceFrame(message.number(0), message.number(1), wrong));
    }
    throw asio::system_error(asio::error::eof); // gone, with requests in flight
  };
}

// Advertises a size of metadata that is right, and answers each request for it with rubbish.
ScriptedPeer::Script forging(const Hash20& hash, std::size_t size) {
  return [=](Socket& socket) -> Flow<> {
    co_await ScriptedPeer::greet(socket, hash);
    const std::string text =
        "d1:md11:ut_metadatai7ee13:metadata_sizei" + std::to_string(size) + "ee";
    co_await say(socket, extended(0, text));
    for (int i = 0; i < 3;) {
      const auto message = co_await ScriptedPeer::hear(socket);
      if (message.id != 20 || message.body.front() != std::byte{7}) continue;
      ++i;
      co_await say(socket, extended(1, "d8:msg_typei1e5:piecei0ee", ByteVector(size)));
    }
    throw asio::system_error(asio::error::eof);
  };
}

ByteVector sized(std::string_view size, int id = 1) {
  return extended(0, "d1:md11:ut_metadatai" + std::to_string(id) + "ee13:metadata_size" +
                         std::string(size) + "e");
}

ByteVector metadata(std::string_view piece, std::size_t size) {
  return extended(1, "d8:msg_typei1e5:piecei" + std::string(piece) + "ee", ByteVector(size));
}

ByteVector lengthOnly(std::uint32_t length) { return toVector(be32(length)); }

struct HostilePeersTest : SessionWorld {
  // What happens to whom: the first lot is dropped by the session, the second is not.
  std::vector<ScriptedPeer::Script> dropped() const {
    Hash20 other{};
    ByteVector noise = pseudoRandomBytes(200'000, 3);
    noise.front() = std::byte{'G'};
    const Hash20& hash = torrent.infoHash;
    return {
        barking(noise), barking(handshake(other)),
        barking(bytesOf(std::string("HTTP/1.1 400 Bad Request\r\n\r\n") + std::string(99, ' '))),
        saying(hash, {lengthOnly(4'194'305)}),
        saying(hash, {frame(0), frame(1), lengthOnly(0xffffffff), ByteVector(100'000)})};
  }
  std::vector<ScriptedPeer::Script> tolerated() const {
    const Hash20& hash = torrent.infoHash;
    const ByteVector some(100'000, std::byte{1});
    ByteVector halfHandshake = handshake(hash);
    halfHandshake.pop_back();
    std::vector<ByteVector> pieces, requests, haves, messages;
    for (const std::uint32_t index : {0U, 1U, 46U, 0x7fffffffU, 0xffffffffU})
      for (const std::uint32_t begin : {0U, 1U, 16384U, 65535U, 0xffffffffU, 0xffffc000U})
        for (const std::size_t size : {0U, 1U, 16383U, 16385U, 100'000U})
          pieces.push_back(pieceFrame(index, begin, ByteSpan(some).first(size)));
    requests.push_back(frame(2));
    for (int i = 0; i < 5'000; ++i)
      requests.push_back(frame(6, numbers({0xffffffff, 0xffffffff, 0xffffffff})));
    for (const std::uint32_t index : {0U, 46U, 47U, 0xfffffU, 0x100000U, 0xffffffffU})
      haves.push_back(frame(4, numbers({index})));
    haves.push_back(frame(4, numbers({1, 2})));
    for (int id = 0; id < 256; ++id) {
      messages.push_back(frame(id));
      messages.push_back(frame(id == 20 ? 21 : id, ByteSpan(some).first(300)));
    }
    messages.push_back(frame(0)); // what it was asked for is free again
    return {
        barking(halfHandshake),
        saying(hash, {lengthOnly(1'000), ByteVector(3)}),
        saying(hash, {frame(99, ByteVector(4'194'303)), frame(1)}),
        saying(hash, pieces),
        saying(hash, requests),
        saying(hash, haves),
        saying(hash, messages),
        saying(hash, {sized("i0e"), sized("i-1e"), sized("i8388608e"), sized("4:1234"),
                      sized("i9223372036854775807e"), metadata("-1", 5), metadata("99999999", 5),
                      metadata("0", 200'000), extended(0, "de")}), // and takes back what it offered
        saying(hash, {extended(0, std::string(100'000, 'l')),
                      extended(0, "d1:m" + std::string(100'000, 'd')), extended(0, "d1:m1:xe"),
                      frame(20, ByteVector(1'000'000))})};
  }

  void survives(bool knowsMeta, const std::vector<ScriptedPeer::Script>& extra,
                bool extraAreDropped) {
    std::list<ScriptedPeer> bad, tiresome;
    for (auto& script : dropped()) bad.emplace_back(script);
    for (auto& script : tolerated()) tiresome.emplace_back(script);
    for (const auto& script : extra) (extraAreDropped ? bad : tiresome).emplace_back(script);
    const auto session = makeSession({}, knowsMeta);
    session->start();
    session->select(0, {1});
    std::vector<PeerAddr> addresses;
    for (const auto* peers : {&bad, &tiresome})
      for (const auto& peer : *peers) addresses.push_back(loopback(peer.port()));
    session->addPeers(addresses);
    const auto allDropped = [&] {
      return std::ranges::all_of(bad, [](const auto& peer) { return peer.drops() == 1; });
    };
    const auto allSaid = [&] {
      return std::ranges::all_of(tiresome, [](const auto& peer) { return peer.ended() == 1; });
    };
    EXPECT_TRUE(turnUntil(allDropped));
    EXPECT_TRUE(turnUntil(allSaid));
    EXPECT_FALSE(session->snapshot().complete);

    LoopbackSeeder good(torrent);
    session->addPeers({loopback(good.port())});
    ASSERT_TRUE(finishes(*session));
    EXPECT_TRUE(holdsThePayload(*session));
    for (const auto& peer : tiresome) EXPECT_EQ(peer.dials(), 1); // never a second time
    session->stop(true);
    EXPECT_TRUE(turnUntil([&] {
      return std::ranges::all_of(tiresome, [](const auto& peer) { return peer.drops() == 1; });
    })) << "a stopped session keeps no connection";
  }
};

TEST_F(HostilePeersTest, AreSurvivedByASessionThatKnowsItsFiles) {
  // A lie about the metadata is no lie to whoever has it.
  survives(true,
           {lying(torrent.infoHash, 60), lying(torrent.infoHash, 5),
            saying(torrent.infoHash, {sized("i1e"), sized("i1e", 300), metadata("0", 1)})},
           false);
}

TEST_F(HostilePeersTest, AreSurvivedByASessionThatKnowsNothing) {
  survives(false, {forging(torrent.infoHash, static_cast<std::size_t>(torrent.infoRaw.size()))},
           false);
}

TEST_F(HostilePeersTest, AnIdThatIsNoByteEndsThePeerThatShallBeAsked) {
  const auto size = "i" + std::to_string(torrent.infoRaw.size()) + "e";
  survives(false, {saying(torrent.infoHash, {sized(size, 300)})}, true);
}

TEST_F(HostilePeersTest, WhoAsksAndNeverReadsIsDropped) {
  const auto session = makeSession({}, true);
  session->start();
  const auto flood = [hash = torrent.infoHash](Socket& socket) -> Flow<> {
    co_await ScriptedPeer::greet(socket, hash);
    ByteVector many;
    for (int i = 0; i < 5'000; ++i) {
      append(many, extended(0, "d1:md11:ut_metadatai3eee"));
      append(many, extended(1, "d8:msg_typei0e5:piecei123456789ee"));
    }
    for (;;) co_await say(socket, many); // until the other side has had enough
  };
  ScriptedPeer peer(flood);
  session->addPeers({loopback(peer.port())});
  EXPECT_TRUE(turnUntil([&] { return peer.ended() == 1; }));
}

} // namespace
} // namespace vellum::test
