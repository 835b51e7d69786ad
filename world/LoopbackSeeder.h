// A fast BitTorrent seeder on 127.0.0.1 with a choice of line quality and of misbehaviour.
#pragma once
#include "world/LinkModel.h"
#include "world/LoopbackThread.h"
#include "world/SeededTorrent.h"
#include <asio/ip/tcp.hpp>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>

namespace vellum::world {

class SeederPeer;

struct SeederOptions {
  double uploadRate = 0;             // bytes of payload a second over all connections; 0 = no limit
  std::chrono::milliseconds delay{}; // before everything that the seeder sends: a round trip
  // Of payload over all connections: after that many the seeder sends no more, but stays ...
  std::optional<std::int64_t> stallAfter;
  // ... or is gone: connections are closed and new ones refused.
  std::optional<std::int64_t> closeAfter;
  std::optional<std::int64_t> corruptPiece; // a block of this piece is sent with a wrong byte ...
  int corruptBlocks = 1;                    // ... that many times, then the right ones
  bool choke = false;                       // never unchokes
  bool servesMetadata = true;               // ut_metadata (BEP 9)
};

// Runs on a thread of its own; public operations from any thread. Has the whole payload; unchokes
// whoever is interested.
class LoopbackSeeder {
public:
  explicit LoopbackSeeder(SeededTorrent torrent, SeederOptions options = {});
  ~LoopbackSeeder();

  std::uint16_t port() const { return m_port; }
  // As if its process were killed.
  void kill();
  std::int64_t payloadSent() const { return m_payloadSent; }
  int connections() const { return m_connections; } // accepted so far

private:
  friend class SeederPeer;

  void accept();
  void shutDown();

  const SeededTorrent m_torrent;
  const SeederOptions m_options;
  LoopbackThread m_thread;
  asio::ip::tcp::acceptor m_acceptor;
  std::set<std::shared_ptr<SeederPeer>> m_peers; // on the thread, as the two below
  LinkModel m_link;
  int m_corruptLeft;
  std::uint16_t m_port = 0;
  std::atomic<std::int64_t> m_payloadSent = 0; // handed to the line
  std::atomic<int> m_connections = 0;
};

} // namespace vellum::world
