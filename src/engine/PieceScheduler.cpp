#include "engine/PieceScheduler.h"
#include <algorithm>

namespace vellum {

namespace {
// Pieces of more blocks than this do not occur; a buffer for one would be somebody's joke.
constexpr std::int64_t kMostBlocks = 1 << 17;
} // namespace

PieceScheduler::PieceScheduler(const Clock& clock, PieceStore& disk, ForEachPeer forEachPeer)
    : m_clock(clock), m_disk(disk), m_forEachPeer(std::move(forEachPeer)),
      m_lastProgress(clock.now()) {}

void PieceScheduler::setMeta(std::shared_ptr<const TorrentMeta> meta) {
  m_meta = std::move(meta);
  m_have = HaveMap(m_meta->pieceCount());
  m_wanted.assign(m_meta->hashes.size(), false);
}

std::int64_t PieceScheduler::pieceLength(std::int64_t piece) const {
  // A surplus of hashes leaves pieces with nothing in them.
  const std::int64_t rest = m_meta->total - piece * m_meta->pieceLength;
  return std::clamp<std::int64_t>(rest, 0, m_meta->pieceLength);
}

PieceOrder PieceScheduler::piecesOf(const std::vector<int>& files) const {
  PieceOrder pieces;
  for (const int file : files) {
    if (file < 0 || static_cast<std::size_t>(file) >= m_meta->files.size()) continue;
    const auto index = static_cast<std::size_t>(file);
    const std::int64_t size = m_meta->files[index].size;
    const std::int64_t offset = m_meta->offsets[index];
    if (size > 0)
      pieces.push_back({offset / m_meta->pieceLength, (offset + size - 1) / m_meta->pieceLength});
  }
  return pieces;
}

void PieceScheduler::want(const PieceRun& run) {
  for (std::int64_t piece = run.first; piece <= run.last; ++piece) {
    if (m_wanted[static_cast<std::size_t>(piece)]) continue;
    m_wanted[static_cast<std::size_t>(piece)] = true;
    if (!m_have.has(piece)) ++m_wantedMissing;
  }
}

void PieceScheduler::select(std::int64_t file, const std::vector<int>& subtitles) {
  if (!m_meta || file < 0 || static_cast<std::size_t>(file) >= m_meta->files.size()) return;
  m_streamFile = file;
  m_wanted.assign(m_meta->hashes.size(), false);
  m_wantedMissing = 0;

  StreamBuffer stream;
  stream.fileOffset = m_meta->offsets[static_cast<std::size_t>(file)];
  stream.fileLength = m_meta->files[static_cast<std::size_t>(file)].size;
  stream.pieceLength = m_meta->pieceLength;
  stream.pieceCount = m_meta->pieceCount();
  stream.extraPieces = piecesOf(subtitles);
  m_order = stream.priorityOrder();
  m_stream = std::move(stream);
  for (const PieceRun& run : m_order) want(run);

  m_lastProgress = m_clock.now();
  m_forEachPeer([this](Peer& peer) {
    peer.declareInterest();
    pump(peer);
  });
}

void PieceScheduler::setPlayhead(std::int64_t pos) {
  if (!m_stream || m_stream->isTailProbe(pos)) return;
  const std::int64_t playhead = m_stream->clamped(pos);
  if (playhead == m_stream->playhead) return;
  m_stream->playhead = playhead;
  m_order = m_stream->priorityOrder();
  pumpAll();
}

void PieceScheduler::pumpAll() {
  m_forEachPeer([this](Peer& peer) { pump(peer); });
}

bool PieceScheduler::hasAll(const PieceRun& run) const {
  if (run.first < 0 || run.last >= m_have.size()) return false;
  return m_have.firstMissing(run.first) > run.last;
}

double PieceScheduler::streamProgress() const {
  if (!m_stream) return 0.0;
  return m_stream->progress([this](std::int64_t piece) { return m_have.has(piece); });
}

bool PieceScheduler::streamReady() const {
  if (!m_stream) return false;
  const PieceRun window = m_stream->windowPieces();
  const PieceRun tail = m_stream->tailPieces();
  return (window.empty() || hasAll(window)) && (tail.empty() || hasAll(tail));
}

void PieceScheduler::pump(Peer& peer) {
  if (!peer.isHandshaken() || peer.isChoked() || peer.inflight().isFull()) return;
  const TimePoint now = m_clock.now();
  for (const PieceRun& run : m_order) {
    for (std::int64_t piece = m_have.firstMissing(run.first); piece <= run.last;
         piece = m_have.firstMissing(piece + 1))
      if (peer.hasPiece(piece) && !requestBlocks(peer, piece, now)) return;
  }
}

bool PieceScheduler::requestBlocks(Peer& peer, std::int64_t piece, TimePoint now) {
  const auto found = m_pieces.find(piece);
  const PieceBuf* const buffer = found != m_pieces.end() ? found->second.get() : nullptr;
  const std::int64_t length = pieceLength(piece);
  const std::int64_t blocks = blockCount(length);
  for (std::int64_t block = buffer != nullptr ? buffer->firstMissingBlock() : 0; block < blocks;
       ++block) {
    if (buffer != nullptr && buffer->has(block)) continue;
    if (peer.inflight().isFull()) return false;
    const BlockKey key = blockKey(piece, block);
    const auto asked = m_requests.find(key);
    if (asked && secondsBetween(*asked, now) < kRequestAgain) continue;
    m_requests.set(key, now);
    peer.inflight().insert(key);
    const std::int64_t begin = block * kBlockSize;
    peer.sendRequest(piece, begin, std::min(kBlockSize, length - begin));
  }
  return true;
}

bool PieceScheduler::isBlock(std::uint32_t piece, std::uint32_t begin, std::size_t length) const {
  if (!m_meta || piece >= m_meta->hashes.size() || m_have.has(piece)) return false;
  const std::int64_t whole = pieceLength(piece);
  if (begin % kBlockSize != 0 || begin >= whole || blockCount(whole) > kMostBlocks) return false;
  return static_cast<std::int64_t>(length) == std::min<std::int64_t>(kBlockSize, whole - begin);
}

void PieceScheduler::receiveBlock(Peer& peer, std::uint32_t piece, std::uint32_t begin,
                                  ByteSpan data) {
  if (!isBlock(piece, begin, data.size())) return;
  const std::int64_t block = begin / kBlockSize;
  const BlockKey key = blockKey(piece, block);
  m_requests.erase(key);
  peer.inflight().erase(key);

  PieceBuf* const buffer = assemble(piece);
  if (buffer->has(block)) {
    pump(peer);
    return;
  }
  const TimePoint now = m_clock.now();
  if (!buffer->store(block, data, m_disk)) {
    // In memory it will fare better the next time.
    m_diskTakesSpills = false;
    forget(piece);
    pump(peer);
    return;
  }
  m_downloaded += static_cast<std::int64_t>(data.size());
  m_lastProgress = now;
  if (buffer->isComplete()) finish(piece);
  pump(peer);
}

PieceBuf* PieceScheduler::assemble(std::int64_t piece) {
  if (const auto found = m_pieces.find(piece); found != m_pieces.end()) return found->second.get();
  const std::int64_t length = pieceLength(piece);
  makeRoom(length);
  ByteVector memory;
  if (length <= kAssemblyBudget || !m_diskTakesSpills) {
    memory = std::move(m_spare);
    m_spare.clear();
    memory.resize(static_cast<std::size_t>(length));
    m_assemblyBytes += length;
    m_inMemory.push_back(piece);
  } else {
    m_spilled.push_back(piece);
  }
  auto buffer = std::make_unique<PieceBuf>(piece * m_meta->pieceLength, length, std::move(memory));
  return (m_pieces[piece] = std::move(buffer)).get();
}

void PieceScheduler::makeRoom(std::int64_t bytes) {
  // A piece that goes to disk anyway needs no room.
  const std::int64_t room = bytes > kAssemblyBudget ? 0 : bytes;
  while (m_diskTakesSpills && !m_inMemory.empty() && m_assemblyBytes + room > kAssemblyBudget)
    spillOldest();
  while (m_spilled.size() > kMostSpilled) {
    const auto oldest = m_pieces.find(m_spilled.front());
    if (oldest != m_pieces.end() && !oldest->second->inMemory()) m_pieces.erase(oldest);
    m_spilled.pop_front();
  }
}

void PieceScheduler::spillOldest() {
  const std::int64_t oldest = m_inMemory.front();
  m_inMemory.pop_front();
  const auto found = m_pieces.find(oldest);
  m_assemblyBytes -= found->second->length();
  if (found->second->spill(m_disk)) {
    m_spilled.push_back(oldest);
  } else {
    m_diskTakesSpills = false;
    m_pieces.erase(found);
  }
}

void PieceScheduler::forget(std::int64_t piece) {
  const auto found = m_pieces.find(piece);
  if (found->second->inMemory()) {
    m_assemblyBytes -= found->second->length();
    m_spare = found->second->takeMemory();
    std::erase(m_inMemory, piece);
  }
  m_pieces.erase(found);
}

void PieceScheduler::finish(std::int64_t piece) {
  PieceBuf& buffer = *m_pieces.at(piece);
  const auto digest = buffer.digest(m_disk);
  const bool right = digest == m_meta->hashes[static_cast<std::size_t>(piece)];
  // A failed write is no reason to fetch the piece again: there would be no end to it.
  if (right && buffer.inMemory()) m_disk.write(piece * m_meta->pieceLength, buffer.bytes());
  forget(piece);
  if (!right) return;
  m_have.set(piece);
  if (m_wanted[static_cast<std::size_t>(piece)]) --m_wantedMissing;
  m_forEachPeer([piece](Peer& peer) {
    if (peer.isHandshaken()) peer.sendHave(piece);
  });
}

bool PieceScheduler::release(Peer& peer) {
  const bool any = peer.inflight().size() > 0;
  for (const BlockKey key : peer.inflight().keys()) m_requests.erase(key);
  peer.inflight().clear();
  return any;
}

void PieceScheduler::sweep() {
  for (const BlockKey key : m_requests.olderThan(kForgetRequest, m_clock.now())) {
    m_requests.erase(key);
    m_forEachPeer([key](Peer& peer) { peer.inflight().erase(key); });
  }
}

} // namespace vellum
