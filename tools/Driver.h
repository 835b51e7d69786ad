// A window driven as a user would: by mouse and keyboard, its parts found by name.
#pragma once
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <functional>
#include <stdexcept>

namespace vellum::tools {

inline void everyItem(QQuickItem* root, const std::function<void(QQuickItem*)>& see) {
  see(root);
  for (QQuickItem* child : root->childItems()) everyItem(child, see);
}

// Main thread.
class Driver {
public:
  // The window outlives it.
  explicit Driver(QQuickWindow& window) : m_window(window) {}

  // Drawing a picture lays everything out first.
  QImage settle() { return m_window.grabWindow(); }

  // Also what stands in an open popup, what is visible first; nothing if nothing has the name.
  QObject* find(const QString& name) {
    QObject* found = nullptr;
    QObject* hidden = m_window.findChild<QObject*>(name);
    everyItem(m_window.contentItem(), [&](QQuickItem* item) {
      if (item->objectName() != name) return;
      if (item->isVisible() && !found) found = item;
      if (!hidden) hidden = item;
    });
    return found ? found : hidden;
  }
  // A name that nothing has ends the test.
  QObject* named(const QString& name) {
    if (QObject* found = find(name)) return found;
    throw std::runtime_error("nothing is named " + name.toStdString());
  }
  QQuickItem* item(const QString& name) { return qobject_cast<QQuickItem*>(named(name)); }
  QVariant property(const QString& name, const char* field) { return named(name)->property(field); }
  std::string text(const QString& name, const char* field = "text") {
    return property(name, field).toString().toStdString();
  }
  bool shows(const QString& name) {
    auto* found = qobject_cast<QQuickItem*>(find(name));
    return found && found->isVisible();
  }

  // `across` is from 0 at the left to 1 at the right.
  void click(const QString& name, qreal across = 0.5, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseClick(&m_window, button, {}, place(name, across));
  }
  QPoint place(const QString& name, qreal across = 0.5) {
    auto* target = item(name);
    return target->mapToScene({target->width() * across, target->height() / 2}).toPoint();
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&m_window, key, modifiers);
  }
  void type(const char* text) {
    for (; *text; ++text) QTest::keyClick(&m_window, *text);
  }
  void focus(const QString& name) { item(name)->forceActiveFocus(Qt::TabFocusReason); }
  QString focused() const {
    auto* item = m_window.activeFocusItem();
    return item ? item->objectName() : QString();
  }
  // Walks on with Tab until that part has the focus; false if none of so many steps leads there.
  bool tabTo(const QString& name, int steps = 60) {
    for (int i = 0; i < steps && focused() != name; ++i) press(Qt::Key_Tab);
    return focused() == name;
  }
  bool becomes(const QString& name, const char* field, const QVariant& value, int limit = 3000) {
    return QTest::qWaitFor([&] { return property(name, field) == value; }, limit);
  }
  bool comes(const QString& name, int limit = 10'000) {
    return QTest::qWaitFor([&] { return shows(name); }, limit);
  }
  bool goes(const QString& name, int limit = 10'000) {
    return QTest::qWaitFor([&] { return !shows(name); }, limit);
  }

private:
  QQuickWindow& m_window;
};

} // namespace vellum::tools
