#include "ui/icons/IconShape.h"
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <QQuickWindow>
#include <algorithm>

namespace vellum {
namespace {

const QString folder = QStringLiteral(":/qt/qml/Vellum/Icons/");
const QString suffix = QStringLiteral(".svg");

constexpr int largeFrom = 32; // points

QByteArray drawingOf(const QString& name) {
  QFile file(folder + name + suffix);
  if (!file.open(QIODevice::ReadOnly)) {
    qWarning("There is no icon named \"%s\"", qPrintable(name));
    return {};
  }
  return file.readAll();
}

QImage pictureOf(const QString& name, const QColor& color, qreal side, int pixels) {
  QByteArray drawing = drawingOf(name);
  drawing.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
  // Large drawings want a lighter line, as large type wants a lighter weight.
  if (side >= largeFrom) drawing.replace("stroke-width=\"1.75\"", "stroke-width=\"1.2\"");
  QBuffer buffer(&drawing);
  QImageReader reader(&buffer, "svg");
  reader.setScaledSize({pixels, pixels});
  return reader.read();
}

} // namespace

void IconShape::setName(const QString& name) {
  if (m_name == name) return;
  m_name = name;
  m_picture = {};
  update();
  Q_EMIT nameChanged();
}

void IconShape::setColor(const QColor& color) {
  if (m_color == color) return;
  m_color = color;
  m_picture = {};
  update();
  Q_EMIT colorChanged();
}

void IconShape::setTurn(qreal turn) {
  if (m_turn == turn) return;
  m_turn = turn;
  update();
  Q_EMIT turnChanged();
}

QStringList IconShape::names() {
  QStringList found = QDir(folder).entryList({QLatin1Char('*') + suffix}, QDir::Files, QDir::Name);
  for (QString& name : found) name.chop(suffix.size());
  return found;
}

void IconShape::paint(QPainter* painter) {
  const qreal side = std::min(width(), height());
  if (m_name.isEmpty() || side < 1) return;
  const qreal scale = window() ? window()->effectiveDevicePixelRatio() : 1;
  const int pixels = qRound(side * scale);
  if (m_picture.width() != pixels) m_picture = pictureOf(m_name, m_color, side, pixels);
  painter->setRenderHint(QPainter::SmoothPixmapTransform);
  painter->translate(width() / 2, height() / 2);
  painter->rotate(m_turn);
  // The drawing has no transparency of its own: the colour's is that of the whole.
  painter->setOpacity(m_color.alphaF());
  painter->drawImage(QRectF(-side / 2, -side / 2, side, side), m_picture);
}

} // namespace vellum
