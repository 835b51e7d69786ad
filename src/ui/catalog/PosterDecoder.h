// A picture from the network made into one to show. It may have been made to do harm.
#pragma once
#include "base/Clock.h"
#include <QByteArray>
#include <QImage>
#include <QSize>

namespace vellum::ui {

// Pure but for the clock; for a worker.
struct PosterDecoder {
  static constexpr qint64 kMostPixels = 16 * 1000 * 1000; // as sent
  static constexpr int kLongestSide = 1200;               // as shown, in pixels
  static constexpr double kMostSeconds = 3;               // a picture of many scans takes minutes

  // No picture for what is none: JPEG, PNG, GIF (its first frame) and WebP are; drawings, which may
  // name other files, are not. `width` is that of the poster's frame in pixels.
  static QImage decode(const QByteArray& bytes, int width, const Clock& clock);
  // The smallest size that covers the frame, but no larger than the picture came.
  static QSize shownSize(QSize picture, int width);
};

} // namespace vellum::ui
