#include "PlayerWorld.h"
#include "base/IoPool.h"
#include "streaming/LocalStreamServer.h"
#include "world/MemorySource.h"
#include <asio/use_future.hpp>

namespace vellum::test {

using namespace world;

using namespace std::chrono_literals;

// The film as a torrent of which nothing is there yet, behind the server.
struct StreamedFilm : PlayerWorld {
  StreamedFilm() {
    const QByteArray film = filmBytes();
    const auto bytes =
        std::as_bytes(std::span(film.constData(), static_cast<std::size_t>(film.size())));
    size = film.size();
    const QString name = QStringLiteral("film.mkv");
    source =
        std::make_shared<MemorySource>(pool.makeStrand(), ByteVector(bytes.begin(), bytes.end()),
                                       std::vector<TorrentFileEntry>{{name, size}});
    url = asio::co_spawn(pool.io(), server.url(source, 0, name), asio::use_future)
              .get()
              .value_or(QUrl());
  }
  ~StreamedFilm() override { player.reset(); }

  bool waits() {
    return turnUntil([this] { return player->isPlaying() && player->isBuffering(); });
  }

  IoPool pool;
  LocalStreamServer server{pool};
  std::shared_ptr<MemorySource> source;
  std::int64_t size = 0;
  QUrl url;
};

TEST_F(StreamedFilm, WaitsForItsPiecesAndSeeksAmongThem) {
  player->load(url, 0);
  ASSERT_TRUE(source->waitForQuestions(3));
  EXPECT_TRUE(waits());
  EXPECT_EQ(player->duration(), 0);
  source->arrive(0, size / 2);
  ASSERT_TRUE(turnUntil([this] { return isMoving(); }));
  ASSERT_TRUE(waits()) << "at the end of what is there";
  EXPECT_GT(player->currentTime(), 0.5);
  source->arriveAll();
  ASSERT_TRUE(turnUntil([this] { return ends > 0; }));
  EXPECT_NEAR(player->currentTime(), kLength, 0.1);
  EXPECT_NEAR(standsAfter([this] { player->seek(0.52); }), 0.52, kFrame);
}

TEST_F(StreamedFilm, FailsWhenTheStreamBreaksOff) {
  source->arrive(0, size / 2);
  play(url);
  ASSERT_TRUE(waits());
  source->stop();
  ASSERT_TRUE(fails());
  EXPECT_TRUE(player->error().contains(QStringLiteral("ends prematurely")))
      << player->error().toStdString();
  EXPECT_EQ(ends, 0);
  EXPECT_GT(player->currentTime(), 0.5); // where a retry goes on
}

// Whatever it is in the middle of: opening, playing, starved, seeking into what is not there.
TEST_F(StreamedFilm, GoesAtOnceInTheMiddleOfAnything) {
  const std::function<void()> middles[] = {[this] { player->load(url, 0); },
                                           [this] {
                                             player->load(url, 0);
                                             ASSERT_TRUE(source->waitForQuestions(2));
                                           },
                                           [this] {
                                             source->arrive(0, size / 2);
                                             play(url);
                                           },
                                           [this] {
                                             play(url);
                                             ASSERT_TRUE(waits());
                                           },
                                           [this] {
                                             play(url);
                                             player->seek(2.5);
                                             ASSERT_TRUE(waits());
                                           },
                                           [this] {
                                             player->load(url, 0);
                                             player->stop();
                                           }};
  for (const auto& middle : middles) {
    middle();
    EXPECT_LT(secondsOf([this] { player.reset(); }), 2);
    turnUntil([] { return false; }, 0s);
    makePlayer();
    view();
    times.clear();
  }
}

} // namespace vellum::test
