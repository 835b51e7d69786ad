// One drawing of Vellum's icon set, in one colour. Lives on the main thread; paints while the
// render thread has it wait.
#pragma once
#include <QColor>
#include <QImage>
#include <QQmlEngine>
#include <QQuickPaintedItem>
#include <QStringList>

namespace vellum {

// The drawing fills the item's smaller side, centred. A name that the set does not have paints
// nothing and says so on the log, so that a test that allows no warnings finds it.
class IconShape : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged FINAL)
  Q_PROPERTY(qreal turn READ turn WRITE setTurn NOTIFY turnChanged FINAL)
  Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)

public:
  using QQuickPaintedItem::QQuickPaintedItem;

  // By meaning, without folder and suffix, e.g. "chevron-left". Empty paints nothing.
  QString name() const { return m_name; }
  void setName(const QString& name);

  QColor color() const { return m_color; }
  void setColor(const QColor& color);

  // Degrees, clockwise. For what spins: unlike an item's rotation it is smooth on every renderer.
  qreal turn() const { return m_turn; }
  void setTurn(qreal turn);

  // Every name of the set, sorted.
  Q_INVOKABLE static QStringList names();

  void paint(QPainter* painter) override;

Q_SIGNALS:
  void nameChanged();
  void colorChanged();
  void turnChanged();

private:
  QString m_name;
  QColor m_color = Qt::white;
  qreal m_turn = 0;
  QImage m_picture; // of the name in the colour, at the size last painted
};

} // namespace vellum
