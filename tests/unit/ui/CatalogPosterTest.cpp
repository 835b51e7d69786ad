#include "support/ManualClock.h"
#include "ui/catalog/PosterLoader.h"
#include "world/MainThread.h"
#include <QBuffer>
#include <QtEndian>
#include <gtest/gtest.h>

namespace vellum::ui {
namespace {

using test::ManualClock;

QByteArray encoded(QSize size, const char* format) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(Qt::red);
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
  const char* drawing = R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"/>)";
  for (const auto& [name, bytes, size] : // of the picture, for a frame of 100 by 150
       {std::tuple<const char*, QByteArray, QSize>{"png", good, {100, 150}},
        {"jpeg", encoded({600, 450}, "jpeg"), {200, 150}},
        {"small", encoded({60, 40}, "png"), {60, 40}},
        {"long", encoded({4000, 20}, "png"), {1200, 6}},
        {"thin", encoded({1, 3000}, "png"), {1, 1200}},
        {"enough", boasting(4000, 4000), {150, 150}},
        {"huge", boasting(4001, 4000), {0, 0}},
        {"hollow", good.first(33), {0, 0}},
        {"drawing", drawing, {0, 0}},
        {"uncompressed", encoded({9, 9}, "bmp"), {0, 0}}}) {
    const QImage image = PosterDecoder::decode(bytes, 100, ManualClock());
    EXPECT_EQ(image.size(), size) << name << ": " << image.width() << " by " << image.height();
  }
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
    main.post([this, event] { events += event; });
  }
  // The next ones that happen, so many.
  std::string next(int count) {
    turnUntil([&] { return events.size() >= count; }, std::chrono::seconds(10));
    return std::exchange(events, {}).join(u'|').toStdString();
  }
  void load(const char* name) {
    const QString url = QLatin1String(name);
    tickets.push_back(loader->load(QUrl(url), 100, [this, url](const QImage& image) {
      note(QStringLiteral("%1 %2").arg(url).arg(image.width()));
    }));
  }

  const ManualClock clock;
  QStringList events;
  IoPool pool;
  std::vector<PosterLoader::Ticket> tickets;
  std::optional<PosterLoader> loader{
      std::in_place, pool,
      [this](const QUrl& url, std::chrono::milliseconds) { return ask(*this, url); }, clock};
};

TEST_F(PosterLoaderTest, AsksForAFewAtATimeTheLatestFirst) {
  for (const char* name : {"0", "1", "2", "3", "4", "5"}) load(name);
  EXPECT_EQ(next(6), "ask 0|ask 1|ask 2|ask 3|ask 4|ask 5");
  for (const char* waiting : {"6", "7", "8"}) load(waiting);
  PosterLoader::cancel(tickets[8]); // waits
  EXPECT_EQ(next(1), "8 0");
  PosterLoader::cancel(tickets[2]); // runs
  EXPECT_EQ(next(2), "2 0|ask 7");
  load("now");
  PosterLoader::cancel(tickets[3]);
  EXPECT_EQ(next(4), "3 0|ask now|now 8|ask 6");
  loader.reset();
  EXPECT_EQ(next(6).size(), 6 * 4 - 1U) << "each is told";
}

} // namespace
} // namespace vellum::ui
