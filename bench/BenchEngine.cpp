// Micro benchmarks of the data path: frames, scheduling, hashing.
#include "base/Sha1.h"
#include "engine/FrameBuffer.h"
#include "engine/PieceScheduler.h"
#include <algorithm>
#include <benchmark/benchmark.h>

namespace vellum {
namespace {

void framesOfSixteenKiB(benchmark::State& state) {
  ByteVector frame = toVector(be32(9 + 16384));
  frame.push_back(std::byte{7});
  frame.resize(4 + 9 + 16384);
  ByteVector stream;
  for (int i = 0; i < 64; ++i) stream.insert(stream.end(), frame.begin(), frame.end());
  FrameBuffer buffer;
  for (auto _ : state) {
    for (std::size_t at = 0; at < stream.size();) {
      const auto room = buffer.prepare();
      const std::size_t size = std::min(FrameBuffer::kReadSize, stream.size() - at);
      std::copy_n(stream.begin() + static_cast<std::ptrdiff_t>(at), size, room.begin());
      buffer.commit(size);
      at += size;
      FrameBuffer::Frame next;
      while (buffer.next(next, 0) == FrameBuffer::State::Ready)
        benchmark::DoNotOptimize(next.body.data());
    }
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * stream.size()));
}
BENCHMARK(framesOfSixteenKiB);

void sha1OfAPiece(benchmark::State& state) {
  const ByteVector piece(1 << 20, std::byte{42});
  for (auto _ : state) benchmark::DoNotOptimize(Sha1::of(piece));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * piece.size()));
}
BENCHMARK(sha1OfAPiece);

struct NoDisk final : PieceStore {
  bool write(std::int64_t, ByteSpan) override { return true; }
  bool read(std::int64_t, std::span<std::byte>) override { return true; }
};

struct Seeder final : PieceScheduler::Peer {
  bool isHandshaken() const override { return true; }
  bool isChoked() const override { return false; }
  bool hasPiece(std::int64_t) const override { return true; }
  InflightSet& inflight() override { return set; }
  void declareInterest() override {}
  void sendRequest(std::int64_t piece, std::int64_t, std::int64_t) override { lastPiece = piece; }
  void sendHave(std::int64_t) override {}
  InflightSet set;
  std::int64_t lastPiece = 0;
};

// 100,000 pieces of one block each; every piece hashes alike, so that any block completes one.
struct Torrent {
  static constexpr std::int64_t kPieces = 100'000;
  explicit Torrent(std::size_t peerCount) : peers(peerCount) {
    auto meta = std::make_shared<TorrentMeta>();
    meta->pieceLength = kBlockSize;
    meta->total = kPieces * kBlockSize;
    meta->hashes.assign(kPieces, Sha1::of(block));
    meta->files = {{QStringLiteral("a.mkv"), meta->total}};
    meta->offsets = {0};
    scheduler.setMeta(meta);
  }
  void deliver(Seeder& peer, std::int64_t piece) {
    scheduler.receiveBlock(peer, static_cast<std::uint32_t>(piece), 0, block);
  }

  ByteVector block = ByteVector(kBlockSize, std::byte{1});
  SystemClock clock;
  NoDisk disk;
  std::vector<Seeder> peers;
  PieceScheduler scheduler{clock, disk,
                           [this](const std::function<void(PieceScheduler::Peer&)>& visit) {
                             for (auto& peer : peers) visit(peer);
                           }};
};

// A pump that fills an empty pipeline (ten requests), behind the given number of pieces that are
// had and with the pipelines of all other peers full; then the ten are given back.
void pump(benchmark::State& state, std::size_t peerCount, std::int64_t had) {
  Torrent torrent(peerCount);
  for (std::int64_t piece = 0; piece < had; ++piece) torrent.deliver(torrent.peers[0], piece);
  torrent.scheduler.select(0, {});
  Seeder& peer = torrent.peers.back();
  for (auto _ : state) {
    torrent.scheduler.release(peer);
    torrent.scheduler.pump(peer);
    benchmark::DoNotOptimize(peer.lastPiece);
  }
}
// What it costs to pass over 99,000 pieces is the difference between the lines of a pair.
BENCHMARK_CAPTURE(pump, one_peer_nothing_had, 1, 0);
BENCHMARK_CAPTURE(pump, one_peer_99000_had, 1, 99'000);
BENCHMARK_CAPTURE(pump, peers_45_nothing_had, 45, 0);
BENCHMARK_CAPTURE(pump, peers_45_99000_had, 45, 99'000);

} // namespace
} // namespace vellum

BENCHMARK_MAIN();
