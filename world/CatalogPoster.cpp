#include "base/Sha1.h"
#include "world/CatalogDocuments.h"
#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <array>

namespace vellum::world {

namespace {

constexpr int kWidth = 300; // pixels
constexpr int kHeight = 450;

struct Palette {
  const char* back;
  const char* disc;
  const char* ground;
};
constexpr std::array<Palette, 8> kPalettes{{{"#23395b", "#e0a458", "#161925"},
                                            {"#5b2333", "#f2b5a7", "#2b1118"},
                                            {"#1f4d44", "#b7d8a8", "#10281f"},
                                            {"#4a3b6b", "#d7b9e8", "#221a35"},
                                            {"#6b4a2b", "#f0d9a0", "#332213"},
                                            {"#2b5d6b", "#a8dadc", "#132c33"},
                                            {"#3f4a2b", "#d9d98a", "#1d2213"},
                                            {"#6b2b5d", "#f4a6c8", "#33132c"}}};

QColor colour(const char* name) { return QColor(QString::fromLatin1(name)); }

// A ridge from edge to edge, down to the foot of the picture.
QPainterPath hills(int height, int first, int second) {
  QPainterPath path(QPointF(0, kHeight));
  path.lineTo(0, kHeight - height);
  path.cubicTo(kWidth / 3.0, kHeight - height - first, kWidth / 1.5, kHeight - height + second,
               kWidth, kHeight - height - second);
  path.lineTo(kWidth, kHeight);
  return path;
}

} // namespace

QByteArray catalogPoster(const CatalogItem& item) {
  const Hash20 hash = Sha1::of(asBytes(item.id.toUtf8()));
  const auto part = [&](std::size_t i, int most) { return int(hash[i]) * most / 256; };
  const Palette& palette = kPalettes[std::size_t(hash[0]) % kPalettes.size()];
  QImage image(kWidth, kHeight, QImage::Format_RGB32);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  QLinearGradient sky(0, 0, 0, kHeight);
  sky.setColorAt(0, colour(palette.ground));
  sky.setColorAt(1, colour(palette.back));
  painter.fillRect(image.rect(), sky);
  painter.setBrush(colour(palette.disc));
  const int radius = 45 + part(1, 60);
  painter.drawEllipse(QPoint(60 + part(2, 180), 110 + part(3, 150)), radius, radius);
  painter.setBrush(colour(palette.back).lighter(115));
  painter.drawPath(hills(120 + part(4, 60), part(5, 90), part(6, 60)));
  painter.setBrush(colour(palette.ground));
  painter.drawPath(hills(60 + part(7, 40), part(8, 60), part(9, 40)));
  painter.end();
  QByteArray png;
  QBuffer buffer(&png);
  image.save(&buffer, "PNG");
  return png;
}

} // namespace vellum::world
