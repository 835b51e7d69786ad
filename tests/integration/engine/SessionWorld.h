// What a real session needs around it: a main loop that turns, a pool, a network client, a folder,
// and a torrent whose payload is known.
#pragma once
#include "engine/TorrentEngine.h"
#include "net/HttpClient.h"
#include "streaming/ExtractFile.h"
#include "support/RunFlow.h"
#include "unit/engine/SwarmWorld.h"
#include "world/LoopbackSeeder.h"
#include "world/LoopbackTracker.h"
#include "world/MainThread.h"
#include <QDir>
#include <asio/ip/tcp.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;
using namespace std::chrono_literals;

// A listening counterpart on 127.0.0.1 that the test plays itself, word by word. What fails, or
// takes longer than ten seconds, throws.
class PlayedPeer {
public:
  std::uint16_t port() const { return m_acceptor.local_endpoint().port(); }

  void accept() {
    wait([&](auto done) { m_acceptor.async_accept(m_socket, done); });
  }
  // Answers the other side's handshake.
  void greet(const Hash20& infoHash) {
    accept();
    read(68);
    say(handshake(infoHash));
  }
  // Goes on to where it may ask for blocks.
  void leech(const Hash20& infoHash) {
    greet(infoHash);
    say(frame(2));
    hear(1);
  }
  void say(ByteSpan bytes) {
    wait([&](auto done) {
      asio::async_write(m_socket, asio::buffer(bytes.data(), bytes.size()), done);
    });
  }
  ByteVector read(std::size_t size) {
    ByteVector bytes(size);
    wait([&](auto done) { asio::async_read(m_socket, asio::buffer(bytes), done); });
    return bytes;
  }
  // The next message of this kind; others are passed over.
  Message hear(int id) {
    for (;;) {
      const ByteVector message = read(rd32(read(4), 0));
      if (message.at(0) == std::byte(id)) return {id, {message.begin() + 1, message.end()}};
    }
  }
  // Whatever the other side still says, it closes.
  bool isDropped() {
    try {
      for (;;) read(1);
    } catch (const asio::system_error&) {
      return true;
    }
  }

private:
  template <class Start>
  void wait(Start start) {
    std::optional<asio::error_code> ended;
    start([&](asio::error_code error, auto...) { ended = error; });
    m_io.restart();
    m_io.run_for(std::chrono::seconds(10));
    if (!ended) throw std::runtime_error("nothing happened for ten seconds");
    if (*ended) throw asio::system_error(*ended);
  }

  asio::io_context m_io;
  asio::ip::tcp::acceptor m_acceptor{m_io, {asio::ip::address_v4::loopback(), 0}};
  asio::ip::tcp::socket m_socket{m_io};
};

// That everything ends when the session is gone is a part of every test: the pool waits for it.
struct SessionWorld : testing::Test, world::MainThread {
  static constexpr std::int64_t kPiece = 64 * kKiB;
  static constexpr std::size_t kFilm = 3'000'001; // bytes

  std::shared_ptr<TorrentSession> makeSession(const QStringList& trackers, bool knowsMeta) {
    return std::make_shared<TorrentSession>(environment, torrent.infoHash, trackers, QString(),
                                            directory, knowsMeta ? torrent.meta : nullptr);
  }

  // Puts the clock forward, for good; what is due then happens.
  void pass(double seconds);

  template <class F>
  static double secondsFor(F f) {
    const auto start = std::chrono::steady_clock::now();
    f();
    return secondsBetween(start, std::chrono::steady_clock::now());
  }
  static PeerAddr loopback(std::uint16_t port) { return {QStringLiteral("127.0.0.1"), port}; }

  // Selects the film and its subtitle as soon as the files are known, and waits for all of both.
  static bool finishes(TorrentSession& session) {
    if (!turnUntil([&] { return session.snapshot().hasMetadata(); })) return false;
    session.select(0, {1});
    return turnUntil([&] { return session.snapshot().complete; });
  }
  bool holdsThePayload(TorrentSession& session) const {
    const auto read = session.read(0, torrent.meta->total + 10);
    return session.hasRange(0, torrent.meta->total) && read &&
           std::ranges::equal(*read, torrent.bytes());
  }

  SystemClock clock;
  SystemRandom random;
  QTemporaryDir folder;
  const QString directory = folder.filePath(QStringLiteral("streams/one"));
  const MadeTorrent torrent = makeTorrent({kFilm, 5'000}, kPiece); // and its subtitle
  std::optional<IoPool> pool{2};
  HttpClient http{main};
  SessionEnvironment environment{*pool, main, clock, random, http.fetcher(), {}};
};

} // namespace vellum::test
