// How fast a LoopbackSeeder feeds the simplest client there is, so that no measurement of ours
// takes the seeder's limit for the program's. Prints MB/s.
#include "world/LoopbackSeeder.h"
#include <asio/read.hpp>
#include <asio/write.hpp>
#include <cstdio>
#include <vector>

using namespace vellum;
using namespace vellum::world;

namespace {

constexpr std::size_t kBlock = 16 * 1024, kPipeline = 10, kSize = std::size_t(256 * kMiB);
constexpr int kRounds = 8;
constexpr std::uint8_t kRequest = 6;

void appendRequest(ByteVector& out, std::size_t at) {
  const auto append = [&](std::size_t value) {
    const auto bytes = be32(std::uint32_t(value));
    out.insert(out.end(), bytes.begin(), bytes.end());
  };
  append(13);
  out.push_back(std::byte(kRequest));
  append(at / std::size_t(kMiB));
  append(at % std::size_t(kMiB));
  append(kBlock);
}

} // namespace

int main() {
  const auto torrent = SeededTorrent::make(
      QStringLiteral("Speed"), {{QStringLiteral("film.mp4"), pseudoRandomBytes(kSize, 1)}}, kMiB);
  const LoopbackSeeder seeder(torrent);
  asio::io_context io;
  asio::ip::tcp::socket socket(io);
  socket.connect({asio::ip::address_v4::loopback(), seeder.port()});
  socket.set_option(asio::ip::tcp::no_delay(true));
  const QByteArray hello = QByteArray("\x13"
                                      "BitTorrent protocol") +
                           QByteArray(8, '\0') + toByteArray(torrent.infoHash) +
                           QByteArray(20, 'x') + QByteArray("\0\0\0\1\2", 5);
  asio::write(socket, asio::buffer(hello.constData(), std::size_t(hello.size())));
  const auto bitfield = std::size_t(4 + 1 + (torrent.pieceCount() + 7) / 8);
  ByteVector in(68 + bitfield + 5);
  asio::read(socket, asio::buffer(in));

  const std::size_t blocks = kRounds * kSize / kBlock;
  std::size_t asked = 0, got = 0, unread = 0;
  in.resize(kPipeline * (kBlock + 13));
  const auto began = TimePoint::clock::now();
  while (got < blocks) {
    ByteVector out;
    for (; asked < std::min(blocks, got + kPipeline); ++asked)
      appendRequest(out, asked * kBlock % kSize);
    asio::write(socket, asio::buffer(out));
    unread += socket.read_some(asio::buffer(in));
    got += unread / (kBlock + 13);
    unread %= kBlock + 13;
  }
  const auto took = secondsBetween(began, TimePoint::clock::now());
  std::printf("%.0f MB/s\n", double(blocks * kBlock) / 1e6 / took);
}
