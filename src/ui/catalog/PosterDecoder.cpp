#include "ui/catalog/PosterDecoder.h"
#include <QBuffer>
#include <QImageReader>
#include <algorithm>

namespace vellum::ui {

namespace {

constexpr double kFrameShape = 1.5; // height over width

bool isKnown(const QByteArray& format) {
  return format == "jpeg" || format == "png" || format == "gif" || format == "webp";
}

// Bytes that run dry when the time is up: nothing else ends a decoder early. (It is no QBuffer,
// whose bytes the decoders take all at once.)
class BytesInTime final : public QIODevice {
public:
  BytesInTime(const QByteArray& bytes, const Clock& clock)
      : m_clock(clock), m_start(clock.now()), m_buffer(const_cast<QByteArray*>(&bytes)) {
    m_buffer.open(QIODevice::ReadOnly);
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
  }
  qint64 size() const override { return m_buffer.size(); }
  bool seek(qint64 to) override { return QIODevice::seek(to) && m_buffer.seek(to); }

protected:
  qint64 readData(char* to, qint64 most) override {
    if (secondsBetween(m_start, m_clock.now()) > PosterDecoder::kMostSeconds) return -1;
    return m_buffer.read(to, most);
  }
  qint64 writeData(const char*, qint64) override { return -1; }

private:
  const Clock& m_clock;
  const TimePoint m_start;
  QBuffer m_buffer;
};

} // namespace

QSize PosterDecoder::shownSize(QSize picture, int width) {
  const QSizeF frame(width, width * kFrameShape);
  const double cover = std::max(frame.width() / picture.width(), frame.height() / picture.height());
  const double longest = std::max(picture.width(), picture.height());
  const double scale = std::min({1.0, cover, kLongestSide / longest});
  return (QSizeF(picture) * scale).toSize().expandedTo(QSize(1, 1));
}

QImage PosterDecoder::decode(const QByteArray& bytes, int width, const Clock& clock) {
  BytesInTime device(bytes, clock);
  QImageReader reader(&device);
  if (!isKnown(reader.format())) return {};
  const QSize size = reader.size();
  if (size.isEmpty() || qint64(size.width()) * size.height() > kMostPixels) return {};
  reader.setScaledSize(shownSize(size, width));
  return reader.read();
}

} // namespace vellum::ui
