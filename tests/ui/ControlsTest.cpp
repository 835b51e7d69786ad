// The controls in the gallery's window, driven by keyboard and mouse.
#include "tools/Driver.h"
#include "ui/controls/Look.h"
#include "ui/icons/IconShape.h"
#include <QAccessible>
#include <QGuiApplication>
#include <QPainter>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>
#include <functional>
#include <gtest/gtest.h>
#include <stdexcept>

Q_IMPORT_QML_PLUGIN(Vellum_GalleryPlugin)

namespace vellum {
namespace {

using namespace tools;

enum Page { Buttons, Inputs, Cards, Table, Icons };

class ControlsTest : public testing::Test {
protected:
  void SetUp() override {
    addModules(m_engine);
    QObject::connect(&m_engine, &QQmlEngine::warnings, [this](const QList<QQmlError>& errors) {
      for (const QQmlError& error : errors)
        if (!error.description().contains(QLatin1String("missing.svg")))
          m_warnings += error.toString();
    });
    m_engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Vellum/Gallery/Gallery.qml")));
    ASSERT_FALSE(m_engine.rootObjects().isEmpty());
    m_window = qobject_cast<QQuickWindow*>(m_engine.rootObjects().constFirst());
    m_driver.emplace(*m_window);
    m_window->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(m_window));
  }

  void TearDown() override {
    EXPECT_TRUE(m_warnings.isEmpty()) << m_warnings.join(u'\n').toStdString();
  }

  void show(Page page) {
    m_window->setProperty("page", int(page));
    settle();
  }

  void settle() { m_driver->settle(); }
  QObject* named(const char* name) { return m_driver->named(QLatin1String(name)); }
  QQuickItem* item(const char* name) { return m_driver->item(QLatin1String(name)); }
  QVariant property(const char* name, const char* field) { return named(name)->property(field); }
  std::string text(const char* name, const char* field) {
    return m_driver->text(QLatin1String(name), field);
  }
  void type(const char* text) { m_driver->type(text); }
  void clickAt(const char* name, qreal across) { m_driver->click(QLatin1String(name), across); }
  void click(const char* name) { clickAt(name, 0.5); }
  void press(Qt::Key key) { m_driver->press(key); }
  void focus(const char* name) { m_driver->focus(QLatin1String(name)); }
  bool becomes(const char* name, const char* field, const QVariant& value) {
    return m_driver->becomes(QLatin1String(name), field, value);
  }

  QQmlApplicationEngine m_engine;
  QQuickWindow* m_window = nullptr;
  std::optional<tools::Driver> m_driver;
  QStringList m_warnings;
};

TEST_F(ControlsTest, ButtonsArePressedByMouseSpaceAndReturn) {
  click("plain");
  EXPECT_FALSE(property("plain", "visualFocus").toBool()) << "the mouse brings no ring";
  press(Qt::Key_Tab);
  press(Qt::Key_Backtab);
  EXPECT_TRUE(property("plain", "visualFocus").toBool());
  press(Qt::Key_Space);
  press(Qt::Key_Return);
  press(Qt::Key_Enter);
  EXPECT_EQ(property("plain", "presses").toInt(), 4);
  focus("chip");
  press(Qt::Key_Return);
  EXPECT_FALSE(property("chip", "checked").toBool());
  press(Qt::Key_Space);
  EXPECT_TRUE(property("chip", "checked").toBool());
}

TEST_F(ControlsTest, TabWalksInReadingOrderPastWhatIsDisabled) {
  focus("section0");
  QStringList order;
  for (int i = 0; i < 12; ++i) {
    press(Qt::Key_Tab);
    if (const QString name = m_window->activeFocusItem()->objectName(); !name.isEmpty())
      order += name;
  }
  EXPECT_EQ(order.mid(0, 9).join(u' ').toStdString(),
            "section1 section2 section3 section4 plain prominent destructive cut icon-back10");
  EXPECT_FALSE(order.contains(QStringLiteral("disabled")));
  focus("section0");
  press(Qt::Key_Backtab);
  EXPECT_NE(m_window->activeFocusItem(), item("section1"));
}

TEST_F(ControlsTest, ReturnChoosesASectionOfTheSidebar) {
  focus("section2");
  press(Qt::Key_Return);
  EXPECT_EQ(m_window->property("page").toInt(), 2);
  EXPECT_TRUE(property("section2", "highlighted").toBool());
}

TEST_F(ControlsTest, AlertAnswersOnceWithTheButtonOrWithEscape) {
  const struct {
    QList<Qt::Key> keys;
    int answer;
  } cases[] = {{{Qt::Key_Return}, 0},
               {{Qt::Key_Escape}, 1},
               {{Qt::Key_Tab, Qt::Key_Space}, 1},
               {{Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Space}, 0}}; // the focus stays inside
  for (const auto& [keys, answer] : cases) {
    named("alert")->setProperty("last", -2);
    click("prominent");
    ASSERT_TRUE(becomes("alert", "opened", true));
    for (const Qt::Key key : keys) press(key);
    EXPECT_TRUE(becomes("alert", "last", answer)) << property("alert", "last").toInt();
    EXPECT_TRUE(becomes("alert", "visible", false));
  }
}

TEST_F(ControlsTest, SheetTakesTheFocusAndEscapeClosesIt) {
  click("destructive");
  ASSERT_TRUE(becomes("sheet", "opened", true));
  click("plain");
  EXPECT_EQ(property("plain", "presses").toInt(), 0) << "what lies under a sheet is out of reach";
  click("sheetField");
  type("abc");
  EXPECT_EQ(text("sheetField", "text"), "abc");
  press(Qt::Key_Escape);
  EXPECT_TRUE(becomes("sheet", "visible", false));
}

TEST_F(ControlsTest, TooltipsSayWhatADrawingMeansAndWhatWasCut) {
  show(Buttons);
  const auto tip = [this] {
    std::string shown;
    tools::everyItem(m_window->contentItem(), [&](QQuickItem* found) {
      if (found->isVisible() && found->inherits("QQuickPopupItem"))
        tools::everyItem(found, [&](QQuickItem* part) {
          shown += part->property("text").toString().toStdString();
        });
    });
    return shown;
  };
  for (const auto& [name, said] : {std::pair("icon-back10", "Do back10"),
                                   std::pair("cut", "A text that is longer than its button")}) {
    auto* target = item(name);
    const QPointF middle(target->width() / 2, target->height() / 2);
    QTest::mouseMove(m_window, target->mapToScene(middle).toPoint());
    EXPECT_TRUE(QTest::qWaitFor([&] { return tip() == said; }, 3000)) << name << ": " << tip();
  }
}

TEST_F(ControlsTest, MenuIsWalkedWithArrows) {
  click("menuButton");
  ASSERT_TRUE(becomes("menu", "opened", true));
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return}) press(key);
  EXPECT_TRUE(becomes("menu", "visible", false));
  EXPECT_EQ(text("menu", "last"), "Copy Magnet Link");
  click("menuButton");
  ASSERT_TRUE(becomes("menu", "opened", true));
  press(Qt::Key_Escape);
  EXPECT_TRUE(becomes("menu", "visible", false));
  EXPECT_EQ(text("menu", "last"), "Copy Magnet Link");
}

TEST_F(ControlsTest, PickerShowsWhatIsInForceAndMarksOnlyThat) {
  auto marks = [this] {
    QStringList checked;
    tools::everyItem(m_window->contentItem(), [&](QQuickItem* found) {
      if (found->inherits("QQuickMenuItem") && found->property("checked").toBool())
        checked += found->property("text").toString();
    });
    return checked;
  };
  for (int round = 0; round < 2; ++round) { // the second choice is the same: its mark must stay
    focus("picker");
    press(Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !marks().isEmpty(); }, 3000));
    EXPECT_EQ(marks().join(u' ').toStdString(), round == 0 ? "Any" : "1080p");
    if (round == 0) press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_TRUE(becomes("picker", "text", QStringLiteral("Resolution: 1080p")));
    ASSERT_TRUE(QTest::qWaitFor([&] { return marks().isEmpty(); }, 3000));
  }
}

TEST_F(ControlsTest, FieldIsTypedIntoSubmittedAndCleared) {
  show(Inputs);
  click("field");
  type("metropolis");
  press(Qt::Key_Return);
  EXPECT_EQ(property("field", "submits").toInt(), 1);
  settle();
  const auto* field = item("field");
  clickAt("field", 1 - 16 / field->width());
  EXPECT_EQ(text("field", "text"), "");
  EXPECT_TRUE(field->hasActiveFocus()) << "ready for the next word";
}

TEST_F(ControlsTest, ValuesStepByArrowsAndStayInRange) {
  show(Inputs);
  const struct {
    const char* name;
    const char* field;
    QList<Qt::Key> keys;
    QVariant value;
  } cases[] = {
      {"stepper", "value", {Qt::Key_Up}, 2176},
      {"stepper", "value", {Qt::Key_Left, Qt::Key_Down}, 1920},
      {"stepper", "value", QList<Qt::Key>(20, Qt::Key_Left), 128},
      {"slider", "value", {Qt::Key_Right}, 45.0},
      {"slider", "value", QList<Qt::Key>(12, Qt::Key_Left), 0.0},
      {"toggle", "checked", {Qt::Key_Space}, false},
      {"toggle", "checked", {Qt::Key_Return}, true},
  };
  for (const auto& [name, field, keys, value] : cases) {
    focus(name);
    for (const Qt::Key key : keys) press(key);
    EXPECT_EQ(property(name, field), value) << name;
  }
  clickAt("stepper", 0.95);
  EXPECT_EQ(property("stepper", "value").toInt(), 256);
  clickAt("slider", 0.8);
  EXPECT_EQ(property("slider", "value").toInt(), 80);
}

TEST_F(ControlsTest, HeaderSortsAndTurnsRoundAndPosterAndBannerArePressed) {
  show(Table);
  click("column2");
  EXPECT_FALSE(property("column2", "descending").toBool());
  focus("column0");
  press(Qt::Key_Return);
  EXPECT_TRUE(property("column0", "sorted").toBool());
  EXPECT_FALSE(property("column2", "sorted").toBool());
  click("column3");
  EXPECT_FALSE(property("column3", "sorted").toBool()) << "not a sortable one";
  clickAt("banner", 0.95);
  EXPECT_EQ(property("banner", "pressed").toInt(), 1);
  show(Cards);
  click("poster");
  focus("poster");
  press(Qt::Key_Return);
  EXPECT_EQ(property("poster", "presses").toInt(), 2);
}

// Whatever the keyboard can reach has a role and a name for a screen reader.
TEST_F(ControlsTest, EverythingReachableSpeaks) {
  int reachable = 0;
  for (const Page page : {Buttons, Inputs, Cards, Table, Icons}) {
    show(page);
    tools::everyItem(m_window->contentItem(), [&](QQuickItem* found) {
      if (!found->activeFocusOnTab() || !found->isVisible() || !found->isEnabled() ||
          found->inherits("QQuickRootItem"))
        return;
      const QAccessibleInterface* face = QAccessible::queryAccessibleInterface(found);
      const std::string who = std::string(found->metaObject()->className()) + " " +
                              found->property("text").toString().toStdString();
      ASSERT_TRUE(face) << who;
      ++reachable;
      EXPECT_NE(face->role(), QAccessible::Client) << who;
      if (face->role() != QAccessible::EditableText)
        EXPECT_FALSE(face->text(QAccessible::Name).isEmpty()) << who;
    });
  }
  EXPECT_GT(reachable, 40);
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
    for (int y = 0; y < 24; ++y)
      for (int x = 0; x < 24; ++x) {
        const QColor pixel = image.pixelColor(x, y);
        EXPECT_TRUE(pixel.red() == 0 && pixel.blue() == 0) << qPrintable(name);
        const bool edge = x == 0 || y == 0 || x == 23 || y == 23;
        EXPECT_TRUE(!edge || pixel.green() == 0) << qPrintable(name) << " at " << x << "," << y;
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
