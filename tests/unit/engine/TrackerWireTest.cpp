#include "engine/Tracker.h"
#include "support/RunFlow.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

using test::runFlow;

const PeerAddr kPeer{QStringLiteral("65.66.67.68"), 0x4546};

ByteVector hex(const char* text) { return toVector(asBytes(QByteArray::fromHex(text))); }

AnnounceRequest request() {
  AnnounceRequest out;
  out.infoHash.fill(std::byte{0x0B});
  out.peerId.fill(std::byte{'z'});
  return out;
}

TEST(TrackerWire, UdpRequestsByteByByte) {
  EXPECT_EQ(toHex(udpConnectRequest(0x01020304)),
            QStringLiteral("00000417271019800000000001020304"));
  const auto announce = udpAnnounceRequest(0x1122334455667788, 0x0A0B0C0D, request(), 0xCAFEBABE);
  const auto of = [](const char* bytes) { return QString::fromLatin1(bytes).remove(u' '); };
  EXPECT_EQ(toHex(announce), of("1122334455667788 00000001 0a0b0c0d") + of("0b").repeated(20) +
                                 of("7a").repeated(20) +
                                 of("0000000000000000 0000000000000001 0000000000000000") +
                                 of("00000002 00000000 cafebabe ffffffff 1ae1"));
}

TEST(TrackerWire, UdpAnswersMustBeWholeAndOfTheirTransaction) {
  const ByteVector connected = hex("00000000 00000007 0102030405060708");
  const ByteVector announced = hex("00000001 00000007 00000708 00000002 00000003 41424344 4546");
  EXPECT_EQ(parseUdpConnect(connected, 7), 0x0102030405060708U);
  EXPECT_EQ(parseUdpAnnounce(announced, 7), (TrackerResult{{kPeer}, 3, 2}));
  EXPECT_EQ(parseUdpAnnounce(ByteSpan(announced).first(20), 7), (TrackerResult{{}, 3, 2}));
  EXPECT_FALSE(parseUdpAnnounce(ByteSpan(announced).first(19), 7));
  EXPECT_FALSE(parseUdpConnect(ByteSpan(connected).first(15), 7));
  EXPECT_FALSE(parseUdpConnect(connected, 8) || parseUdpAnnounce(announced, 8));
  EXPECT_FALSE(parseUdpConnect(announced, 7) || parseUdpAnnounce(ByteVector(26), 0));
}

TEST(TrackerWire, HttpAnnounceEscapesEveryByte) {
  const QString tail = QStringLiteral("info_hash=") + QStringLiteral("%0B").repeated(20) +
                       QStringLiteral("&peer_id=") + QStringLiteral("%7A").repeated(20) +
                       QStringLiteral("&port=6881&uploaded=0&downloaded=0&left=1&compact=1"
                                      "&numwant=80&event=started");
  EXPECT_EQ(httpAnnounceUrl(QStringLiteral("http://t/announce"), request()),
            QStringLiteral("http://t/announce?") + tail);
  EXPECT_EQ(httpAnnounceUrl(QStringLiteral("http://t/a?passkey=x"), request()),
            QStringLiteral("http://t/a?passkey=x&") + tail);
}

TEST(TrackerWire, HttpRepliesAreDictionariesWithCompactPeersOrNone) {
  const std::pair<const char*, std::optional<TrackerResult>> cases[] = {
      {"d8:completei7e10:incompletei2e5:peers6:ABCDEFe", TrackerResult{{kPeer}, 7, 2}},
      {"d5:peers17:ABCDEFabcd00ABCDEe",
       TrackerResult{{kPeer, {QStringLiteral("97.98.99.100"), 0x3030}}, {}, {}}},
      {"d8:complete1:7e", TrackerResult{}},
      {"d5:peersld2:ip9:127.0.0.14:porti1eeee", TrackerResult{}},
      {"le", std::nullopt},
      {"<html>", std::nullopt}};
  for (const auto& [body, expected] : cases)
    EXPECT_EQ(parseHttpAnnounce(asBytes(std::string_view(body))), expected) << body;
}

TEST(Tracker, IsAskedByItsSchemeAndOverHttpHasEightSeconds) {
  SystemRandom random;
  QStringList hosts;
  const FetchData fetch = [&](QUrl url, std::chrono::milliseconds limit) -> Flow<QByteArray> {
    EXPECT_EQ(limit, std::chrono::seconds(8));
    hosts.append(url.host());
    if (url.host() == QStringLiteral("mute")) throw std::runtime_error("no answer");
    co_return "d5:peers6:ABCDEFe";
  };
  for (const char* url : {"http://a/x", "HTTPS://b/x", "http://mute/x", "ftp://c/x", "udp://", "",
                          "http://d:99999/x", "no address %zz at all"}) {
    const auto result = runFlow(Tracker::announce(QString::fromUtf8(url), {}, random, fetch));
    EXPECT_EQ(result ? result->peers.size() : 0, hosts.size() < 3 ? 1U : 0U) << url;
  }
  EXPECT_EQ(hosts.join(u' '), QStringLiteral("a b mute"));
}

} // namespace
} // namespace vellum
