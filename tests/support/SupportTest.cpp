// The counterparts that other tests lean on, seen by a client of a few lines.
#include "base/Sha1.h"
#include "support/CatalogSearch.h"
#include "support/HttpReader.h"
#include "support/LoopbackIndexers.h"
#include "support/LoopbackSeeder.h"
#include "support/LoopbackTracker.h"
#include "support/TestTorrent.h"
#include <QFile>
#include <QTemporaryDir>
#include <asio/connect.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>
#include <gtest/gtest.h>

namespace vellum::test {
namespace {

using asio::ip::tcp;
using asio::ip::udp;

constexpr std::int64_t kPieceLength = 256 * kKiB;
constexpr std::uint32_t kBlock = 16 * 1024;

TestTorrent twoFiles() {
  return TestTorrent::make(QStringLiteral("Film"),
                           {{QStringLiteral("film.mp4"), pseudoRandomBytes(700'001, 1)},
                            {QStringLiteral("Subs/en.srt"), pseudoRandomBytes(99, 2)}},
                           kPieceLength);
}

// A blocking leecher.
class Leecher {
public:
  Leecher(std::uint16_t port, const Hash20& hash) : m_socket(m_io) {
    m_socket.connect({asio::ip::address_v4::loopback(), port});
    m_socket.set_option(tcp::no_delay(true));
    QByteArray hello("\x13"
                     "BitTorrent protocol");
    hello += QByteArray(5, '\0') + '\x10' + QByteArray(2, '\0') + toByteArray(hash) +
             QByteArray(20, 'x');
    write(hello);
    std::array<std::byte, 68> theirs;
    asio::read(m_socket, asio::buffer(theirs));
  }
  void write(const QByteArray& bytes) {
    asio::write(m_socket, asio::buffer(bytes.constData(), std::size_t(bytes.size())));
  }
  // Interested, and waits to be unchoked.
  void join() {
    write(QByteArray("\0\0\0\1\2", 5));
    next(1);
  }
  void request(std::uint32_t piece, std::uint32_t begin, std::uint32_t length) {
    QByteArray frame("\0\0\0\x0d\6", 5);
    for (const auto value : {piece, begin, length}) frame += toByteArray(be32(value));
    write(frame);
  }
  // The next message; throws at the end of the stream.
  ByteVector next() {
    std::array<std::byte, 4> length;
    asio::read(m_socket, asio::buffer(length));
    ByteVector message(rd32(length, 0));
    asio::read(m_socket, asio::buffer(message));
    return message;
  }
  ByteVector next(std::uint8_t id) {
    for (;;)
      if (auto message = next(); message.at(0) == std::byte(id)) return message;
  }

private:
  asio::io_context m_io;
  tcp::socket m_socket;
};

TEST(TestTorrent, HasTheInfoDictionaryOfBep3) {
  const auto torrent = twoFiles();
  EXPECT_TRUE(torrent.infoRaw.startsWith(
      "d5:filesld6:lengthi700001e4:pathl8:film.mp4eed6:lengthi99e4:pathl4:Subs6:en.srteee"
      "4:name4:Film12:piece lengthi262144e6:pieces60:"));
  EXPECT_EQ(toHex(Sha1::of(asBytes(torrent.infoRaw))), toHex(torrent.infoHash));
  EXPECT_EQ(torrent.pieceCount(), 3);
  EXPECT_TRUE(std::ranges::equal(torrent.fileBytes(1), pseudoRandomBytes(99, 2)));
  EXPECT_TRUE(torrent.magnet({QStringLiteral("udp://127.0.0.1:1/announce")})
                  .endsWith(QStringLiteral("&dn=Film&tr=udp%3A%2F%2F127.0.0.1%3A1%2Fannounce")));
}

TEST(LinkModel, AddsSerialisationAndDelay) {
  LinkModel link(1000, std::chrono::milliseconds(40));
  const TimePoint start{};
  const auto at = [&](double seconds) {
    return start + std::chrono::duration_cast<TimePoint::duration>(Seconds(seconds));
  };
  EXPECT_EQ(link.arrival(start, 500), at(0.54));
  EXPECT_EQ(link.arrival(at(0.1), 500), at(1.04)); // behind the first
  EXPECT_EQ(link.arrival(at(5), 100), at(5.14));   // an idle line saves nothing up
}

TEST(LoopbackSeeder, ServesMetadataAndEveryBlock) {
  const auto torrent = twoFiles();
  const LoopbackSeeder seeder(torrent);
  Leecher leecher(seeder.port(), torrent.infoHash);
  EXPECT_EQ(toByteArray(leecher.next(5)).mid(1), QByteArray("\xe0"));
  leecher.write(QByteArray("\0\0\0\x1a\x14\0d1:md11:ut_metadatai7eee", 30));
  leecher.write(QByteArray("\0\0\0\x1b\x14\3d8:msg_typei0e5:piecei0ee", 31));
  const auto metadata = toByteArray(leecher.next(20));
  EXPECT_EQ(metadata.at(1), '\7');
  EXPECT_TRUE(metadata.endsWith("ee" + torrent.infoRaw));

  leecher.join();
  ByteVector got;
  const auto size = torrent.payload->bytes().size();
  for (std::size_t at = 0; at < size; at += kBlock) {
    const auto piece = std::uint32_t(at / std::size_t(kPieceLength));
    leecher.request(piece, std::uint32_t(at % std::size_t(kPieceLength)),
                    std::uint32_t(std::min<std::size_t>(kBlock, size - at)));
    const auto block = leecher.next(7);
    got.insert(got.end(), block.begin() + 9, block.end());
  }
  EXPECT_TRUE(std::ranges::equal(got, torrent.payload->bytes()));
  EXPECT_EQ(seeder.payloadSent(), std::int64_t(size));
}

TEST(LoopbackSeeder, MisbehavesAsTold) {
  const auto torrent = twoFiles();
  const auto right = torrent.payload->bytes().first(kBlock);
  const auto isRight = [&](const ByteVector& block) {
    return std::ranges::equal(ByteSpan(block).subspan(9), right);
  };
  {
    LoopbackSeeder seeder(torrent, {.corruptPiece = 0});
    Leecher leecher(seeder.port(), torrent.infoHash);
    leecher.join();
    leecher.request(0, 0, kBlock);
    EXPECT_FALSE(isRight(leecher.next(7)));
    leecher.request(0, 0, kBlock);
    EXPECT_TRUE(isRight(leecher.next(7)));
    seeder.kill();
    EXPECT_THROW(leecher.next(), asio::system_error);
    EXPECT_THROW(Leecher(seeder.port(), torrent.infoHash), asio::system_error);
  }
  {
    LoopbackSeeder seeder(torrent, {.closeAfter = kBlock});
    Leecher leecher(seeder.port(), torrent.infoHash);
    leecher.join();
    leecher.request(0, 0, kBlock);
    EXPECT_TRUE(isRight(leecher.next(7)));
    leecher.request(0, 0, kBlock);
    EXPECT_THROW(leecher.next(7), asio::system_error);
  }
  {
    LoopbackSeeder seeder(torrent, {.stallAfter = kBlock});
    Leecher leecher(seeder.port(), torrent.infoHash);
    leecher.join();
    leecher.request(0, 0, kBlock);
    EXPECT_TRUE(isRight(leecher.next(7)));
    leecher.request(0, 0, kBlock);
    leecher.write(QByteArray("\0\0\0\x1b\x14\3d8:msg_typei0e5:piecei0ee", 31));
    EXPECT_EQ(leecher.next()[0], std::byte(20)); // alive, but not a block
  }
  EXPECT_THROW(Leecher(LoopbackSeeder(torrent).port(), Hash20{}), asio::system_error);
}

TEST(LoopbackSeeder, KeepsToRateAndDelay) {
  const auto torrent = twoFiles();
  const LoopbackSeeder seeder(torrent, {.uploadRate = 1e6, .delay = std::chrono::milliseconds(20)});
  Leecher leecher(seeder.port(), torrent.infoHash);
  leecher.join();
  const auto began = TimePoint::clock::now();
  for (std::uint32_t i = 0; i < 10; ++i) leecher.request(0, i * kBlock, kBlock);
  for (int i = 0; i < 10; ++i) leecher.next(7);
  const auto took = secondsBetween(began, TimePoint::clock::now());
  EXPECT_GE(took, 0.02 + 10 * kBlock / 1e6);
  EXPECT_LT(took, 1.0);
}

TEST(LoopbackTracker, AnswersUdpByteByByte) {
  LoopbackTracker tracker;
  tracker.setPeers({0x1234, 80});
  asio::io_context io;
  udp::socket socket(io, udp::endpoint(asio::ip::address_v4::loopback(), 0));
  const auto url = QUrl(tracker.udpUrl());
  const auto exchange = [&](const QByteArray& request) {
    socket.send_to(asio::buffer(request.constData(), std::size_t(request.size())),
                   {asio::ip::address_v4::loopback(), std::uint16_t(url.port())});
    std::array<std::byte, 1500> in;
    return toByteArray(ByteSpan(in).first(socket.receive(asio::buffer(in))));
  };
  const auto connected = exchange(QByteArray::fromHex("000004172710198000000000deadbeef"));
  ASSERT_EQ(connected.left(8).toHex(), "00000000deadbeef");
  const auto announce = connected.mid(8) + QByteArray::fromHex("0000000101020304") +
                        QByteArray(80, '\0') + QByteArray(2, '\1');
  EXPECT_EQ(exchange(announce).toHex(), "0000000101020304"
                                        "00000708"
                                        "00000000"
                                        "00000002"
                                        "7f0000011234"
                                        "7f0000010050");
  EXPECT_EQ(exchange(QByteArray(8, '\0') + announce.mid(8)).toHex(), "0000000301020304");
  EXPECT_EQ(tracker.udpAnnounces(), 1);
}

TEST(LoopbackIndexers, ServesRangesOfTheFilm) {
  const QTemporaryDir folder;
  const auto name = QStringLiteral("film.mp4");
  QFile film(folder.filePath(name));
  ASSERT_TRUE(film.open(QIODevice::WriteOnly) && film.write("0123456789") == 10 && film.flush());
  const LoopbackIndexers server({.film = folder.path().toStdString()});
  struct Case {
    const char* headers;
    int status;
    const char* body;
  };
  for (const auto& [headers, status, body] :
       {Case{"", 200, "0123456789"}, Case{"Range: bytes=2-4\r\n", 206, "234"},
        Case{"range: bytes=8-99\r\n", 206, "89"}, Case{"Range: bytes=-3\r\n", 206, "789"},
        Case{"Range: bytes=10-\r\n", 416, ""}, Case{"Range: bytes=4-2\r\n", 200, "0123456789"},
        Case{"Range: bytes=1-2,4-5\r\n", 200, "0123456789"},
        Case{"Range: bytes=5-\r\nIf-Range: \"film-a\"\r\n", 206, "56789"},
        Case{"Range: bytes=5-\r\nIf-Range: \"old\"\r\n", 200, "0123456789"}}) {
    const QUrl url(server.catalog() + QStringLiteral("/download/VellumDemoFilm/") + name);
    HttpReader reader(url);
    reader.get(url, headers);
    const auto head = reader.readHead();
    EXPECT_TRUE(head.starts_with("HTTP/1.1 " + std::to_string(status))) << headers << head;
    EXPECT_EQ(reader.readAll(), body) << headers;
  }
}

TEST(LoopbackIndexers, FiltersSortsAndPagesTheCatalog) {
  const auto items = inventedItems({});
  const auto search = [&](const char* query) {
    const auto page = searchCatalog(items, QUrlQuery(QString::fromLatin1(query)));
    std::string found = std::to_string(page.found) + ':';
    for (const CatalogItem* item : page.items) found += ' ' + item->title.toStdString();
    return found;
  };
  EXPECT_EQ(search("q=subject:(mouse)&sort[]=year desc"), "1: Barnaby Mouse Goes Fishing");
  EXPECT_EQ(search("q=(title:(moon) OR description:(space)) AND mediatype:(movies)"),
            "2: Invaders of the Ninth Moon Moonbeam Mail");
  EXPECT_EQ(search("q=collection:(prelinger)&sort[]=year asc&rows=2&page=2"),
            "4: Your Friend the Switchboard Safety at the Crossing");
  EXPECT_EQ(search("q=title:(ferry)"), "1: A Ferry to Nowhere");
  EXPECT_EQ(search("q=title:(ferry) AND -access-restricted-item:true"), "0:");
  EXPECT_EQ(search("q=colour:(red)"), "0:");
}

} // namespace
} // namespace vellum::test
