// Which block of which piece is asked of which peer, and what becomes of the blocks that come back.
#pragma once
#include "engine/HaveMap.h"
#include "engine/InflightSet.h"
#include "engine/PieceBuf.h"
#include "engine/RequestTable.h"
#include "formats/TorrentMeta.h"
#include "streaming/StreamBuffer.h"
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace vellum {

// Lives on its session's strand, knows no socket and no timer.
// A block is missing, requested (in the request table, and in the in-flight set of whoever was
// asked), or stored (in its piece's buffer); a piece is missing, in assembly (in m_pieces) or had.
class PieceScheduler {
public:
  // What it needs of a peer.
  class Peer {
  public:
    virtual ~Peer() = default;
    virtual bool isHandshaken() const = 0;
    virtual bool isChoked() const = 0;
    virtual bool hasPiece(std::int64_t piece) const = 0;
    virtual InflightSet& inflight() = 0;
    // Says once that we are interested; nothing if that was said.
    virtual void declareInterest() = 0;
    virtual void sendRequest(std::int64_t piece, std::int64_t begin, std::int64_t length) = 0;
    virtual void sendHave(std::int64_t piece) = 0;
  };
  // Calls its argument for every peer of the session, in their order.
  using ForEachPeer = std::function<void(const std::function<void(Peer&)>&)>;

  static constexpr double kRequestAgain = 15.0;  // seconds until a block may be asked for again
  static constexpr double kForgetRequest = 20.0; // seconds until a request is forgotten
  // Bytes of pieces in assembly that may be in memory; what exceeds them is spilled.
  static constexpr std::int64_t kAssemblyBudget = 24 * kMiB;
  // Pieces in assembly on disk; the oldest beyond are forgotten.
  static constexpr std::size_t kMostSpilled = 8192;

  // All three outlive the scheduler.
  PieceScheduler(const Clock& clock, PieceStore& disk, ForEachPeer forEachPeer);

  // Once, when the metadata is known. Nothing is wanted until select().
  void setMeta(std::shared_ptr<const TorrentMeta> meta);
  // Makes the file and its subtitles what is wanted; a file index out of range changes nothing.
  void select(std::int64_t file, const std::vector<int>& subtitles);
  // Position in the selected file, in bytes. A probe of the file's tail moves nothing.
  void setPlayhead(std::int64_t pos);

  // Tops up the requests of one peer.
  void pump(Peer& peer);
  // Takes one block; what is not exactly a block of a missing piece is ignored.
  void receiveBlock(Peer& peer, std::uint32_t piece, std::uint32_t begin, ByteSpan data);
  // The blocks that this peer was asked for become free for everybody; false if there were none.
  bool release(Peer& peer);
  // Forgets requests of more than 20 seconds, for all peers at once.
  void sweep();

  const HaveMap& have() const { return m_have; }
  const std::optional<StreamBuffer>& stream() const { return m_stream; }
  std::int64_t streamFile() const { return m_streamFile; }
  PieceOrder order() const { return m_order; }
  std::int64_t downloaded() const { return m_downloaded; }
  TimePoint lastProgress() const { return m_lastProgress; }
  std::size_t piecesInAssembly() const { return m_pieces.size(); }
  std::int64_t assemblyBytes() const { return m_assemblyBytes; }
  // True when a file is selected and all of its pieces are had.
  bool complete() const { return m_stream && !m_wanted.empty() && m_wantedMissing == 0; }
  // True when every piece of the run exists and is had.
  bool hasAll(const PieceRun& run) const;
  double streamProgress() const;
  // The window at the playhead and the tail are had.
  bool streamReady() const;
  std::int64_t pieceLength(std::int64_t piece) const;

private:
  PieceOrder piecesOf(const std::vector<int>& files) const;
  void want(const PieceRun& run);
  // False once the peer's pipeline is full.
  bool requestBlocks(Peer& peer, std::int64_t piece, TimePoint now);
  bool isBlock(std::uint32_t piece, std::uint32_t begin, std::size_t length) const;
  PieceBuf* assemble(std::int64_t piece);
  void makeRoom(std::int64_t bytes);
  void spillOldest();
  void forget(std::int64_t piece);
  void finish(std::int64_t piece);
  void pumpAll();

  const Clock& m_clock;
  PieceStore& m_disk;
  ForEachPeer m_forEachPeer;
  std::shared_ptr<const TorrentMeta> m_meta;
  HaveMap m_have;
  std::vector<bool> m_wanted;
  std::int64_t m_wantedMissing = 0;
  std::optional<StreamBuffer> m_stream;
  std::int64_t m_streamFile = -1;
  PieceOrder m_order; // the stream's priorityOrder; all its pieces are wanted
  std::unordered_map<std::int64_t, std::unique_ptr<PieceBuf>> m_pieces;
  std::deque<std::int64_t> m_inMemory; // pieces whose bytes are in memory, oldest first
  std::deque<std::int64_t> m_spilled;  // pieces that were spilled, oldest first; maybe gone by now
  bool m_diskTakesSpills = true;       // after one failure nothing is spilled any more
  std::int64_t m_assemblyBytes = 0;    // in memory
  ByteVector m_spare;                  // the memory of the last finished piece
  RequestTable m_requests;
  std::int64_t m_downloaded = 0;
  TimePoint m_lastProgress;
};

} // namespace vellum
