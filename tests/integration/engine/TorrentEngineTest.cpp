// The owner of the sessions, with real ones.
#include "SessionWorld.h"

namespace vellum::test {
namespace {

struct TorrentEngineTest : SessionWorld, TorrentEngine::Surroundings {
  QString streamsDirectory() override { return folder.filePath(QStringLiteral("streams")); }
  bool stopSeedingOnClose() const override { return stopsOnClose; }
  bool keepAfterPlayback() const override { return keeps; }
  std::function<std::int64_t()> uploadLimit() const override {
    return [this] { return limit.load(); };
  }
  void cacheChanged() override { ++cacheChanges; }
  void unregister(const QString& key) override {
    ended.append(key);
    folderAtEnd = QDir(folderOf(key)).exists();
  }

  QString folderOf(const QString& key) { return streamsDirectory() + u'/' + key; }
  std::shared_ptr<TorrentSession> acquire(char digit, const QString& title) {
    Hash20 hash{};
    hash.fill(std::byte(digit));
    return engine->acquire(hash, {}, title, nullptr);
  }
  // What is listed, a star behind what is streamed.
  QString titles() const {
    QString list;
    for (const auto& entry : engine->entries())
      list += entry.title + (entry.streaming ? u'*' : u' ');
    return list;
  }

  bool stopsOnClose = false, keeps = false, folderAtEnd = false;
  QStringList ended;
  std::atomic<std::int64_t> limit = 0;
  int cacheChanges = 0, changes = 0;
  std::optional<TorrentEngine> engine{std::in_place, environment, *this};
  const QMetaObject::Connection listening =
      QObject::connect(&*engine, &TorrentEngine::entriesChanged, [this] { ++changes; });
};

TEST_F(TorrentEngineTest, OneSessionPerTorrentSharedBetweenPlays) {
  const auto session = engine->acquire(torrent.infoHash, {}, QString(), nullptr);
  LoopbackSeeder seeder(torrent);
  session->addPeers({loopback(seeder.port())});
  ASSERT_TRUE(finishes(*session));
  // The list follows the session: first its title, then its numbers.
  pass(1);
  EXPECT_TRUE(turnUntil([&] { return engine->entries().front().snap.complete; }));
  EXPECT_EQ(titles(), QStringLiteral("Film*"));
  EXPECT_EQ(engine->entries().front().id, session->key());

  EXPECT_EQ(
      engine->acquire(torrent.infoHash, {QStringLiteral("x")}, QStringLiteral("y"), torrent.meta),
      session);
  engine->release(session);
  EXPECT_EQ(titles(), QStringLiteral("Film ")); // it seeds on
  EXPECT_EQ(engine->acquire(torrent.infoHash, {}, {}, nullptr), session);
  EXPECT_EQ(titles(), QStringLiteral("Film*"));
  EXPECT_TRUE(holdsThePayload(*session));

  engine->stop(session->key());
  EXPECT_EQ(ended, QStringList{session->key()});
  EXPECT_FALSE(folderAtEnd);
  EXPECT_TRUE(session->isStopped());
  const auto fresh = engine->acquire(torrent.infoHash, {}, QStringLiteral("Again"), torrent.meta);
  EXPECT_NE(fresh, session);
  EXPECT_FALSE(fresh->isStopped() || fresh->hasRange(0, 1));
  EXPECT_FALSE(engine->entries().front().snap.complete); // nothing is left of the old one

  // A session that was stopped behind the engine's back is replaced, too.
  fresh->stop(false);
  EXPECT_NE(engine->acquire(torrent.infoHash, {}, {}, nullptr), fresh);
}

TEST_F(TorrentEngineTest, UploadsGiveEveryByteAndKeepToTheLimitOfTheSettings) {
  LoopbackSeeder seeder(torrent);
  const auto session = engine->acquire(torrent.infoHash, {}, QString(), torrent.meta);
  session->addPeers({loopback(seeder.port())});
  ASSERT_TRUE(finishes(*session));
  PlayedPeer leecher;
  session->addPeers({loopback(leecher.port())});
  leecher.leech(torrent.infoHash);
  constexpr std::uint32_t kHalf = kPiece / 2, kBlocks = 1000; // more than the line takes at once
  ByteVector requests;
  for (std::uint32_t i = 0; i < kBlocks; ++i)
    append(requests, frame(6, numbers({i % 32, kHalf, kHalf})));
  leecher.say(requests);
  for (std::uint32_t i = 0; i < kBlocks; ++i) {
    ByteVector body = numbers({i % 32, kHalf});
    append(body, torrent.block(i % 32, kHalf, kHalf));
    ASSERT_TRUE(leecher.hear(7).body == body) << i;
  }
  EXPECT_EQ(session->snapshot().uploaded, std::int64_t{kHalf} * kBlocks);
  limit = 40'000;
  const double seconds = secondsFor([&] {
    for (std::uint32_t i = 0; i < 4; ++i) leecher.say(frame(6, numbers({i, 0, 10'000})));
    for (std::uint32_t i = 0; i < 4; ++i) EXPECT_EQ(leecher.hear(7).number(0), i);
  });
  EXPECT_TRUE(seconds > 0.74 && seconds < 5) << seconds << " s: three quarters of the budget";
}

TEST_F(TorrentEngineTest, SettingsSayWhatEndsWithPlaybackAndWhatStaysOnDisk) {
  const auto c = acquire(3, QStringLiteral("c")), a = acquire(1, QStringLiteral("a")),
             b = acquire(2, QStringLiteral("b"));
  EXPECT_EQ(titles(), QStringLiteral("a*b*c*"));
  ASSERT_TRUE(turnUntil([&] { return QDir(folderOf(c->key())).exists(); }));
  changes = 0;
  engine->release(b);
  EXPECT_EQ(titles(), QStringLiteral("a*b c*"));
  EXPECT_TRUE(ended.isEmpty() && changes == 1);

  stopsOnClose = true;
  keeps = true;
  engine->release(c);
  EXPECT_TRUE(folderAtEnd);
  keeps = false;
  engine->release(a);
  EXPECT_FALSE(folderAtEnd);
  engine->release(a); // twice does no harm
  engine->stop(QStringLiteral("unknown"));
  EXPECT_EQ(ended, QStringList({c->key(), a->key()}));
  EXPECT_TRUE(changes == 3 && cacheChanges == 2) << changes << ' ' << cacheChanges;
  EXPECT_EQ(titles(), QStringLiteral("b "));

  engine.reset();
  EXPECT_EQ(ended.last(), b->key());
  EXPECT_TRUE(b->isStopped());
  EXPECT_EQ(QDir(streamsDirectory()).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
            QStringList{c->key()});
}

} // namespace
} // namespace vellum::test
