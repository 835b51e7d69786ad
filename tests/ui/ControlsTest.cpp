// What the controls do that no test of the window walks through, driven by keyboard and mouse.
#include "tools/Driver.h"
#include "ui/controls/Look.h"
#include <QAccessible>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <gtest/gtest.h>

namespace vellum {
namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

struct ControlsTest : testing::Test {
  ControlsTest() {
    addModules(engine);
    QObject::connect(&engine, &QQmlEngine::warnings, [](const QList<QQmlError>& errors) {
      for (const QQmlError& error : errors) ADD_FAILURE() << error.toString().toStdString();
    });
  }
  // A window with that content, which may count in `window.count`.
  void show(const QByteArray& content) {
    QQmlComponent component(&engine);
    component.setData("import QtQuick\nimport Vellum.Controls\nWindow { id: window; visible: true\n"
                      "width: 640; height: 480; property int count\n" +
                          content + "}",
                      {});
    window.reset(qobject_cast<QQuickWindow*>(component.create()));
    ASSERT_TRUE(window) << component.errorString().toStdString();
    see.emplace(*window);
    window->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  }
  void click(const char* name, qreal across = 0.5) { see->click(text(name), across); }
  void press(const QList<Qt::Key>& keys) {
    for (const Qt::Key key : keys) see->press(key);
  }
  QVariant property(const char* name, const char* field) {
    return see->property(text(name), field);
  }
  bool becomes(const char* name, const char* field, const QVariant& value) {
    return see->becomes(text(name), field, value);
  }
  int count() const { return window->property("count").toInt(); }
  // What a screen reader says of it.
  std::string spoken(const char* name) {
    const auto* face = QAccessible::queryAccessibleInterface(see->named(text(name)));
    const bool isKnown = face && face->role() != QAccessible::Client;
    return isKnown ? face->text(QAccessible::Name).toStdString() : "nothing";
  }
  // The texts in what is shown of that type and has that property.
  std::string shown(const char* type, const char* flag) {
    QSet<QString> texts;
    tools::everyItem(window->contentItem(), [&](QQuickItem* found) {
      if (found->inherits(type) && found->property(flag).toBool())
        tools::everyItem(found,
                         [&](QQuickItem* part) { texts += part->property("text").toString(); });
    });
    return texts.values().join(QString()).toStdString();
  }

  QQmlEngine engine;
  std::unique_ptr<QQuickWindow> window;
  std::optional<tools::Driver> see;
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
  }
}

TEST_F(ControlsTest, AnAlertAnswersOnceAndHoldsTheFocusUntilThen) {
  show("Button { objectName: 'under'; onClicked: ++window.count }\n"
       "Alert { objectName: 'alert'; property string answers; title: 'T'; message: 'M'\n"
       "  actions: [{ text: 'A', role: 'default' }, { text: 'B', role: 'cancel' }]\n"
       "  onChosen: index => answers += index }");
  for (const QList<Qt::Key>& keys : {QList{Qt::Key_Return}, QList{Qt::Key_Escape},
                                     QList{Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Space}}) {
    QMetaObject::invokeMethod(see->named(text("alert")), "open");
    ASSERT_TRUE(becomes("alert", "opened", true));
    click("under", 0.1);
    press(keys);
    EXPECT_TRUE(becomes("alert", "visible", false));
  }
  EXPECT_EQ(property("alert", "answers"), text("010"));
  EXPECT_EQ(count(), 0) << "what lies under it is out of reach";
}

TEST_F(ControlsTest, TooltipsSayWhatADrawingMeansAndWhatWasCut) {
  show("IconButton { objectName: 'drawing'; text: 'Go back'; icon.name: 'back10' }\n"
       "Button { objectName: 'cut'; text: 'Far too long'; width: 50; y: 200 }");
  for (const auto& [name, said] : {std::pair("drawing", "Go back"), {"cut", "Far too long"}}) {
    QTest::mouseMove(window.get(), see->place(text(name)));
    const auto tip = [this] { return shown("QQuickPopupItem", "visible"); };
    EXPECT_TRUE(QTest::qWaitFor([&] { return tip() == said; }, 3000)) << name << ": " << tip();
  }
}

TEST_F(ControlsTest, APickerIsWalkedByArrowsAndMarksWhatIsInForce) {
  show("Picker { id: picker; objectName: 'picker'; label: 'Size'; value: 'a'\n"
       "  choices: [{ text: 'One', value: 'a' }, { text: 'Two', value: 'b' }]\n"
       "  onPicked: value => picker.value = value }\n");
  see->focus(text("picker"));
  const auto marked = [this] { return shown("QQuickMenuItem", "checked"); };
  for (const char* inForce : {"One", "Two"}) { // twice the same: mark and focus must stay
    press({Qt::Key_Return});
    EXPECT_TRUE(QTest::qWaitFor([&] { return marked() == inForce; }, 3000)) << marked();
    if (*inForce == 'O') press({Qt::Key_Down});
    press({Qt::Key_Return});
    EXPECT_TRUE(becomes("picker", "text", text("Size: Two")));
    ASSERT_TRUE(QTest::qWaitFor([&] { return marked().empty(); }, 3000));
  }
}

TEST_F(ControlsTest, ValuesAreTypedClearedSteppedAndStayInRange) {
  show("Column { Stepper { objectName: 'stepper'; name: 'Limit'; from: 128; to: 51200\n"
       "  stepSize: 128; value: 2048 }\n"
       "Slider { objectName: 'slider'; name: 'Place'; to: 100; stepSize: 5; value: 40 }\n"
       "Field { objectName: 'field'; width: 160 } }");
  for (const auto& [name, keys, value] : {std::tuple{"stepper", QList{Qt::Key_Up}, 2176},
                                          {"stepper", QList<Qt::Key>(20, Qt::Key_Left), 128},
                                          {"slider", {Qt::Key_Right}, 45},
                                          {"slider", QList<Qt::Key>(12, Qt::Key_Left), 0}}) {
    see->focus(text(name));
    press(keys);
    EXPECT_EQ(property(name, "value").toDouble(), value) << name;
  }
  click("stepper", 0.95);
  EXPECT_EQ(property("stepper", "value").toInt(), 256);
  click("slider");
  EXPECT_EQ(property("slider", "value").toInt(), 50);
  EXPECT_EQ(spoken("stepper") + spoken("slider"), "LimitPlace");
  click("field");
  see->type("abc");
  see->settle();
  click("field", 0.9);
  see->type("d");
  EXPECT_EQ(property("field", "text"), text("d")) << "cleared, and ready for the next word";
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
