// What the controls do that no test of the window walks through, driven by keyboard and mouse.
#include "tools/Driver.h"
#include "ui/controls/Look.h"
#include "ui/icons/IconShape.h"
#include <QAccessible>
#include <QGuiApplication>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <gtest/gtest.h>

namespace vellum {
namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

class ControlsTest : public testing::Test {
protected:
  ControlsTest() {
    addModules(m_engine);
    QObject::connect(&m_engine, &QQmlEngine::warnings, [](const QList<QQmlError>& errors) {
      for (const QQmlError& error : errors) ADD_FAILURE() << error.toString().toStdString();
    });
  }
  // A window with that content, where `window.count` is to count with.
  void show(const QByteArray& content) {
    QQmlComponent component(&m_engine);
    component.setData("import QtQuick\nimport Vellum.Controls\nWindow { id: window; property int "
                      "count; visible: true; width: 640; height: 480\n" +
                          content + "}",
                      {});
    m_window.reset(qobject_cast<QQuickWindow*>(component.create()));
    ASSERT_TRUE(m_window) << component.errorString().toStdString();
    m_driver.emplace(*m_window);
    m_window->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
  }
  QObject* named(const char* name) { return m_driver->named(text(name)); }
  QVariant property(const char* name, const char* field) { return named(name)->property(field); }
  void click(const char* name, qreal across = 0.5) { m_driver->click(text(name), across); }
  void press(const QList<Qt::Key>& keys) {
    for (const Qt::Key key : keys) m_driver->press(key);
  }
  void focus(const char* name) { m_driver->focus(text(name)); }
  bool becomes(const char* name, const char* field, const QVariant& value) {
    return m_driver->becomes(text(name), field, value);
  }
  int count() { return m_window->property("count").toInt(); }
  // What a screen reader is told of it, and how: "Name" of a role that says something.
  std::string spoken(const char* name) {
    const auto* face = QAccessible::queryAccessibleInterface(named(name));
    if (!face || face->role() == QAccessible::Client) return "nothing";
    return face->text(QAccessible::Name).toStdString();
  }
  // The texts of what is shown of that type.
  std::string shown(const char* type, const std::function<bool(QQuickItem*)>& counts) {
    QStringList texts;
    tools::everyItem(m_window->contentItem(), [&](QQuickItem* found) {
      if (!found->inherits(type) || !found->isVisible() || !counts(found)) return;
      tools::everyItem(found, [&](QQuickItem* part) {
        if (const QString said = part->property("text").toString(); !said.isEmpty()) texts += said;
      });
    });
    texts.removeDuplicates();
    return texts.join(u'|').toStdString();
  }

  QQmlEngine m_engine;
  std::unique_ptr<QQuickWindow> m_window;
  std::optional<tools::Driver> m_driver;
};

TEST_F(ControlsTest, EachIsPressedByMouseAndKeysAndSpeaks) {
  for (const char* control :
       {"Button", "IconButton", "Chip", "HeaderCell", "PosterCard", "SidebarItem", "Toggle"}) {
    SCOPED_TRACE(control);
    show(control + QByteArray(" { objectName: 'it'; text: 'Name'; onClicked: ++window.count }\n"
                              "Button { y: 400 }"));
    click("it");
    EXPECT_FALSE(property("it", "visualFocus").toBool()) << "the mouse brings no ring";
    press({Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter});
    EXPECT_TRUE(property("it", "visualFocus").toBool());
    EXPECT_EQ(count(), 4);
    EXPECT_EQ(spoken("it"), "Name");
    named("it")->setProperty("enabled", false);
    click("it");
    press({Qt::Key_Space, Qt::Key_Return});
    EXPECT_EQ(count(), 4);
  }
}

TEST_F(ControlsTest, AnAlertAnswersOnceAndHoldsTheFocusUntilThen) {
  show("Button { objectName: 'under'; onClicked: ++window.count }\n"
       "Alert { objectName: 'alert'; property var answers: []; title: 'T'; message: 'M'\n"
       "  actions: [{ text: 'A', role: 'default' }, { text: 'B', role: 'cancel' }]\n"
       "  onChosen: index => answers = answers.concat(index) }");
  const QList<Qt::Key> inside{Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Space};
  for (const auto& [keys, answer] :
       {std::pair{QList{Qt::Key_Return}, "0"}, {QList{Qt::Key_Escape}, "1"}, {inside, "0"}}) {
    named("alert")->setProperty("answers", QVariantList());
    QMetaObject::invokeMethod(named("alert"), "open");
    ASSERT_TRUE(becomes("alert", "opened", true));
    click("under", 0.1);
    press(keys);
    EXPECT_TRUE(becomes("alert", "visible", false));
    EXPECT_EQ(property("alert", "answers").toStringList().join(u' ').toStdString(), answer);
  }
  EXPECT_EQ(count(), 0) << "what lies under it is out of reach";
}

TEST_F(ControlsTest, TooltipsSayWhatADrawingMeansAndWhatWasCut) {
  show("IconButton { objectName: 'drawing'; text: 'Go back'; icon.name: 'back10' }\n"
       "Button { objectName: 'cut'; text: 'Far too long'; width: 50; y: 200 }");
  for (const auto& [name, said] : {std::pair("drawing", "Go back"), {"cut", "Far too long"}}) {
    QTest::mouseMove(m_window.get(), m_driver->place(text(name)));
    const auto tip = [this] { return shown("QQuickPopupItem", [](auto*) { return true; }); };
    EXPECT_TRUE(QTest::qWaitFor([&] { return tip() == said; }, 3000)) << name << ": " << tip();
  }
}

TEST_F(ControlsTest, AMenuIsWalkedByArrowsAndAPickerMarksWhatIsInForce) {
  show("Picker { id: picker; objectName: 'picker'; label: 'Size'; value: 'a'\n"
       "  choices: [{ text: 'One', value: 'a' }, { text: 'Two', value: 'b' }]\n"
       "  onPicked: value => picker.value = value }\n"
       "Menu { objectName: 'menu'; property string last\n"
       "  MenuItem { text: 'First'; onTriggered: menu.last = text }\n"
       "  MenuSeparator {}\n"
       "  MenuItem { text: 'Last'; onTriggered: menu.last = text } id: menu }");
  QMetaObject::invokeMethod(named("menu"), "open");
  ASSERT_TRUE(becomes("menu", "opened", true));
  press({Qt::Key_Down, Qt::Key_Down, Qt::Key_Return});
  EXPECT_TRUE(becomes("menu", "visible", false));
  EXPECT_EQ(property("menu", "last"), text("Last"));
  const auto marked = [this] {
    return shown("QQuickMenuItem", [](auto* item) { return item->property("checked").toBool(); });
  };
  for (int round = 0; round < 2; ++round) { // the second choice is the same: its mark must stay
    focus("picker");
    press({Qt::Key_Return});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !marked().empty(); }, 3000));
    EXPECT_EQ(marked(), round == 0 ? "One" : "Two");
    if (round == 0) press({Qt::Key_Down});
    press({Qt::Key_Return});
    EXPECT_TRUE(becomes("picker", "text", text("Size: Two")));
    ASSERT_TRUE(QTest::qWaitFor([&] { return marked().empty(); }, 3000));
  }
}

TEST_F(ControlsTest, AFieldIsClearedAndReadyForTheNextWord) {
  show("Field { objectName: 'field'; width: 300; onAccepted: ++window.count }");
  click("field");
  m_driver->type("abc");
  press({Qt::Key_Return});
  EXPECT_EQ(count(), 1);
  m_driver->settle();
  click("field", 1 - 16 / 300.0);
  m_driver->type("d");
  EXPECT_EQ(property("field", "text"), text("d"));
}

TEST_F(ControlsTest, ValuesStepByArrowsAndStayInRange) {
  show("Column { Stepper { objectName: 'stepper'; name: 'Limit'; from: 128; to: 51200; stepSize: "
       "128; value: 2048 }\n"
       "Slider { objectName: 'slider'; name: 'Place'; to: 100; stepSize: 5; value: 40 } }");
  for (const auto& [name, keys, value] : {std::tuple{"stepper", QList{Qt::Key_Up}, 2176},
                                          {"stepper", {Qt::Key_Left, Qt::Key_Down}, 1920},
                                          {"stepper", QList<Qt::Key>(20, Qt::Key_Left), 128},
                                          {"slider", {Qt::Key_Right}, 45},
                                          {"slider", QList<Qt::Key>(12, Qt::Key_Left), 0}}) {
    focus(name);
    press(keys);
    EXPECT_EQ(property(name, "value").toDouble(), value) << name;
  }
  click("stepper", 0.95);
  EXPECT_EQ(property("stepper", "value").toInt(), 256);
  click("slider", 0.5);
  EXPECT_EQ(property("slider", "value").toInt(), 50);
  EXPECT_EQ(spoken("stepper") + spoken("slider"), "LimitPlace");
}

// Each drawing has ink, only of the colour asked for, and keeps off the edge of its square.
TEST(IconShapeTest, EveryDrawingIsInItsColourAndInsideItsSquare) {
  const QStringList names = IconShape::names();
  ASSERT_GT(names.size(), 50);
  for (const QString& name : names) {
    IconShape icon;
    icon.setSize({24, 24});
    icon.setColor(QColor(0, 255, 0));
    icon.setName(name);
    QImage image(24, 24, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::black);
    QPainter painter(&image);
    icon.paint(&painter);
    painter.end();
    int ink = 0;
    for (int at = 0; at < 24 * 24; ++at) {
      const int x = at % 24, y = at / 24;
      const QColor pixel = image.pixelColor(x, y);
      const bool isEdge = x == 0 || y == 0 || x == 23 || y == 23;
      EXPECT_TRUE(pixel.red() == 0 && pixel.blue() == 0) << qPrintable(name);
      EXPECT_TRUE(!isEdge || pixel.green() == 0) << qPrintable(name) << " at " << x << "," << y;
      ink += pixel.green() > 128;
    }
    EXPECT_GT(ink, 10) << qPrintable(name);
  }
}

} // namespace
} // namespace vellum

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  // A screen in memory, unless another is asked for.
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
  }
  QGuiApplication app(argc, argv);
  vellum::prepareLook(app);
  return RUN_ALL_TESTS();
}
