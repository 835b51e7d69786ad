// One connection of a LoopbackSeeder: BEP 3 wire, BEP 10 handshake, BEP 9 metadata.
#pragma once
#include "base/Bytes.h"
#include "base/Clock.h"
#include "world/LoopbackSeeder.h"
#include <asio/buffer.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <deque>
#include <memory>
#include <vector>

namespace vellum::world {

// Lives on its seeder's thread. What is to be sent waits in a queue until it is due, and leaves
// in as few system calls as possible, payload straight from the mapped file.
class SeederPeer final : public std::enable_shared_from_this<SeederPeer> {
public:
  SeederPeer(LoopbackSeeder& seeder, asio::ip::tcp::socket socket);
  void start();
  void close();

private:
  struct Chunk {
    TimePoint due;
    ByteVector head; // owned
    ByteSpan body;   // of the torrent's payload
    std::size_t size() const { return head.size() + body.size(); }
  };

  void receive();
  bool consume();
  bool handshake(ByteSpan bytes);
  void frame(ByteSpan message);
  void block(std::uint64_t piece, std::uint64_t begin, std::uint64_t length);
  void extended(ByteSpan message);
  void sendMetadata(std::int64_t piece);
  void send(ByteVector head, ByteSpan body = {});
  std::vector<asio::const_buffer> dueBuffers(TimePoint now) const;
  void flush();
  void sent(std::size_t bytes);
  void lose();

  LoopbackSeeder& m_seeder;
  asio::ip::tcp::socket m_socket;
  asio::steady_timer m_due;
  ByteVector m_in;
  std::size_t m_inSize = 0;
  std::deque<Chunk> m_out;
  std::size_t m_outSent = 0; // bytes of the first chunk that are gone
  bool m_flushing = false;   // a write or a wait is under way
  bool m_greeted = false;
  bool m_unchoked = false;
  std::uint8_t m_theirMetadataId = 0;
};

} // namespace vellum::world
