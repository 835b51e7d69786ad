#include "support/ManualClock.h"
#include "ui/catalog/PosterLoader.h"
#include "world/MainThread.h"
#include <QBuffer>
#include <QtEndian>
#include <gtest/gtest.h>
#include <mutex>

namespace vellum::ui {

using namespace world;
namespace {

QByteArray encoded(QSize size, const char* format) {
  QImage image(size, QImage::Format_RGB32);
  for (int y = 0; y < size.height(); ++y)
    for (int x = 0; x < size.width(); ++x) image.setPixel(x, y, QRgb(x * 7919 + y * 104729));
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  EXPECT_TRUE(image.save(&buffer, format));
  return bytes;
}

// A JPEG that says it is of that size.
QByteArray boasting(quint16 width, quint16 height) {
  QByteArray bytes = encoded({8, 8}, "jpeg");
  const qsizetype frame = bytes.indexOf("\xff\xc0"); // marker, length, depth, height, width
  qToBigEndian(height, bytes.data() + frame + 5);
  qToBigEndian(width, bytes.data() + frame + 7);
  return bytes;
}

TEST(PosterDecoderTest, BoundsWhatStrangersSend) {
  const QByteArray good = encoded({300, 450}, "png");
  struct Case {
    const char* name;
    QByteArray bytes;
    QSize size; // of the picture, for a frame of 100 by 150
  };
  for (const Case& c : {
           Case{"png", good, {100, 150}},
           Case{"jpeg", encoded({600, 450}, "jpeg"), {200, 150}},
           Case{"small", encoded({60, 40}, "png"), {60, 40}},
           Case{"long", encoded({4000, 20}, "png"), {1200, 6}},
           Case{"thin", encoded({1, 3000}, "png"), {1, 1200}},
           Case{"enough", boasting(4000, 4000), {150, 150}},
           Case{"huge", boasting(4001, 4000), {}},
           Case{"hugest", boasting(65500, 65500), {}},
           Case{"hollow", good.first(33), {}},
           Case{"drawing", R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"/>)", {}},
           Case{"uncompressed", encoded({9, 9}, "bmp"), {}},
           Case{"words", "<html>404</html>", {}},
           Case{"nothing", "", {}},
       }) {
    const test::ManualClock clock;
    const QImage image = PosterDecoder::decode(c.bytes, 100, clock);
    EXPECT_EQ(image.size().width(), c.size.isEmpty() ? 0 : c.size.width()) << c.name;
    EXPECT_EQ(image.size().height(), c.size.isEmpty() ? 0 : c.size.height()) << c.name;
  }
}

TEST(PosterDecoderTest, GivesUpOnAPictureThatTakesTooLong) {
  struct HastyClock final : Clock {
    TimePoint now() const override { return time += std::chrono::milliseconds(500); }
    mutable TimePoint time{};
  };
  const QByteArray bytes = encoded({600, 900}, "png"); // many times a second's reads
  EXPECT_FALSE(PosterDecoder::decode(bytes, 600, test::ManualClock()).isNull());
  const HastyClock clock;
  EXPECT_TRUE(PosterDecoder::decode(bytes, 600, clock).isNull());
  EXPECT_LT(clock.time, TimePoint() + std::chrono::seconds(10));
}

struct PosterLoaderTest : testing::Test, world::MainThread {
  // Whoever asks waits until it is cancelled.
  static Flow<QByteArray> ask(PosterLoaderTest& self, QUrl url) {
    self.note(QStringLiteral("ask ") + url.toString());
    if (url.toString() == u"now") co_return encoded({8, 8}, "png");
    co_await sleepFor(std::chrono::hours(1));
    co_return QByteArray();
  }
  void note(const QString& event) {
    const std::scoped_lock lock(mutex);
    events += event;
  }
  bool comeTo(int count) {
    return turnUntil([&] {
      const std::scoped_lock lock(mutex);
      return events.size() >= count;
    });
  }
  QString takeEvents() {
    const std::scoped_lock lock(mutex);
    return std::exchange(events, {}).join(u'|');
  }
  PosterLoader::Ticket load(const QString& url) {
    return loader->load(QUrl(url), 100, [this, url](const QImage& image) {
      note(QStringLiteral("%1 %2").arg(url).arg(image.width()));
    });
  }

  const test::ManualClock clock;
  std::mutex mutex; // guards `events`
  QStringList events;
  IoPool pool;
  std::optional<PosterLoader> loader{
      std::in_place, pool,
      [this](const QUrl& url, std::chrono::milliseconds) { return ask(*this, url); }, clock};
};

TEST_F(PosterLoaderTest, AsksForAFewAtATimeTheLatestFirst) {
  std::vector<PosterLoader::Ticket> tickets;
  for (int i = 0; i < 6; ++i) tickets.push_back(load(QString::number(i)));
  ASSERT_TRUE(comeTo(6));
  EXPECT_EQ(takeEvents(), QStringLiteral("ask 0|ask 1|ask 2|ask 3|ask 4|ask 5"));
  for (const char* waiting : {"6", "7", "8"}) tickets.push_back(load(QLatin1String(waiting)));
  PosterLoader::cancel(tickets[8]); // waits
  ASSERT_TRUE(comeTo(1));
  EXPECT_EQ(takeEvents(), QStringLiteral("8 0"));
  PosterLoader::cancel(tickets[2]); // runs
  ASSERT_TRUE(comeTo(2));
  EXPECT_EQ(takeEvents(), QStringLiteral("2 0|ask 7"));
  load(QStringLiteral("now"));
  PosterLoader::cancel(tickets[2]); // has ended
  PosterLoader::cancel(tickets[3]);
  ASSERT_TRUE(comeTo(4));
  EXPECT_EQ(takeEvents(), QStringLiteral("3 0|ask now|now 8|ask 6"));
  loader.reset();
  ASSERT_TRUE(comeTo(6));
  EXPECT_EQ(takeEvents().split(u'|').size(), 6);
  PosterLoader::cancel(tickets[0]); // nobody is there
}

} // namespace
} // namespace vellum::ui
