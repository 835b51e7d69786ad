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
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;
using namespace std::chrono_literals;

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
