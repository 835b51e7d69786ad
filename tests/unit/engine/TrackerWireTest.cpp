#include "engine/TrackerWire.h"
#include "Frames.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

using test::bytesOf;

ByteVector hex(const char* text) { return toVector(asBytes(QByteArray::fromHex(text))); }

AnnounceRequest request() {
  AnnounceRequest out;
  out.infoHash.fill(std::byte{0xAB});
  out.peerId.fill(std::byte{'z'});
  return out;
}

TEST(TrackerWire, UdpRequestsByteByByte) {
  EXPECT_EQ(toHex(udpConnectRequest(0x01020304)),
            QStringLiteral("00000417271019800000000001020304"));
  const auto announce = udpAnnounceRequest(0x1122334455667788, 0x0A0B0C0D, request(), 0xCAFEBABE);
  EXPECT_EQ(toHex(announce), QStringLiteral("1122334455667788"
                                            "000000010a0b0c0d") +
                                 QStringLiteral("ab").repeated(20) +
                                 QStringLiteral("7a").repeated(20) +
                                 QStringLiteral("0000000000000000"
                                                "0000000000000001"
                                                "0000000000000000"
                                                "0000000200000000cafebabeffffffff1ae1"));
}

TEST(TrackerWire, UdpRepliesMustAnswerTheirTransaction) {
  const std::uint32_t id = 0x01020304;
  EXPECT_EQ(parseUdpConnect(hex("0000000001020304a1a2a3a4a5a6a7a8"), id), 0xA1A2A3A4A5A6A7A8U);
  EXPECT_TRUE(parseUdpConnect(hex("0000000001020304a1a2a3a4a5a6a7a8ff"), id));
  for (const char* bad : {"", "0000000001020304a1a2a3a4a5a6a7", // 15 bytes
                          "0000000001020305a1a2a3a4a5a6a7a8", "0000000301020304a1a2a3a4a5a6a7a8"})
    EXPECT_FALSE(parseUdpConnect(hex(bad), id)) << bad;

  const auto empty = parseUdpAnnounce(hex("0000000101020304000007080000000500000009"), id);
  ASSERT_TRUE(empty);
  EXPECT_EQ(*empty, (TrackerResult{{}, 9, 5}));
  const auto peers = parseUdpAnnounce(
      hex("00000001010203040000070800000005000000097f0000011ae10a000002000000"), id);
  ASSERT_TRUE(peers);
  EXPECT_EQ(peers->peers, (std::vector<PeerAddr>{{QStringLiteral("127.0.0.1"), 6881},
                                                 {QStringLiteral("10.0.0.2"), 0}}));
  for (const char* bad : {"00000001010203040000070800000005000000",   // 19 bytes
                          "0000000301020304000007080000000500000009", // an error reply
                          "0000000101020305000007080000000500000009"})
    EXPECT_FALSE(parseUdpAnnounce(hex(bad), id)) << bad;
}

TEST(TrackerWire, CompactListsKeepPortZeroAndDropARest) {
  EXPECT_EQ(
      parseCompact(hex("01020304000005060708ffff09")),
      (std::vector<PeerAddr>{{QStringLiteral("1.2.3.4"), 0}, {QStringLiteral("5.6.7.8"), 65535}}));
}

TEST(TrackerWire, HttpAnnounceEscapesEveryByte) {
  const QString tail = QStringLiteral("info_hash=") + QStringLiteral("%AB").repeated(20) +
                       QStringLiteral("&peer_id=") + QStringLiteral("%7A").repeated(20) +
                       QStringLiteral("&port=6881&uploaded=0&downloaded=0&left=1&compact=1"
                                      "&numwant=80&event=started");
  EXPECT_EQ(httpAnnounceUrl(QStringLiteral("http://t/announce"), request()),
            QStringLiteral("http://t/announce?") + tail);
  EXPECT_EQ(httpAnnounceUrl(QStringLiteral("http://t/a?passkey=x"), request()),
            QStringLiteral("http://t/a?passkey=x&") + tail);
}

TEST(TrackerWire, HttpRepliesAreDictionariesWithCompactPeersOrNone) {
  struct Case {
    const char* body;
    std::optional<TrackerResult> expected;
  };
  const PeerAddr peer{QStringLiteral("65.66.67.68"), 0x4546};
  const Case cases[] = {
      {"d5:peers0:e", TrackerResult{}},
      {"d5:peers6:ABCDEFe", TrackerResult{{peer}, {}, {}}},
      {"d8:completei7e10:incompletei2e5:peers6:ABCDEFe", TrackerResult{{peer}, 7, 2}},
      {"d8:complete1:7e", TrackerResult{}},
      {"d5:peersld2:ip9:127.0.0.14:porti1eeee", TrackerResult{}},
      {"d14:failure reason2:noe", TrackerResult{}},
      {"le", std::nullopt},
      {"<html>", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& [body, expected] : cases)
    EXPECT_EQ(parseHttpAnnounce(bytesOf(body)), expected) << body;
}

} // namespace
} // namespace vellum
