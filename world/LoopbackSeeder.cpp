#include "world/LoopbackSeeder.h"
#include "world/SeederPeer.h"

namespace vellum::world {

using asio::ip::tcp;

LoopbackSeeder::LoopbackSeeder(SeededTorrent torrent, SeederOptions options)
    : m_torrent(std::move(torrent)), m_options(options),
      m_acceptor(m_thread.io(), tcp::endpoint(asio::ip::address_v4::loopback(), 0)),
      m_link(options.uploadRate, options.delay), m_corruptLeft(options.corruptBlocks),
      m_port(m_acceptor.local_endpoint().port()) {
  m_thread.run([this] { accept(); });
}

LoopbackSeeder::~LoopbackSeeder() {
  kill();
  m_thread.join();
}

void LoopbackSeeder::kill() {
  m_thread.run([this] { shutDown(); });
}

void LoopbackSeeder::accept() {
  m_acceptor.async_accept([this](asio::error_code error, tcp::socket socket) {
    if (error) return;
    ++m_connections;
    const auto peer = std::make_shared<SeederPeer>(*this, std::move(socket));
    m_peers.insert(peer);
    peer->start();
    accept();
  });
}

void LoopbackSeeder::shutDown() {
  asio::error_code ignored;
  m_acceptor.close(ignored);
  for (const auto peers = std::move(m_peers); const auto& peer : peers) peer->close();
  m_peers.clear();
}

} // namespace vellum::world
