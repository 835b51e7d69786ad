// The one window of the program.
#pragma once
#include "ui/window/Screens.h"
#include "ui/window/WindowModel.h"
#include <QQmlApplicationEngine>

class QQuickWindow;

namespace vellum::ui {

// Main thread. Closing it ends the program.
class MainWindow final {
public:
  // Both outlive the window. Shows the window at once.
  MainWindow(Runtime& runtime, WindowState& window);

  QQuickWindow* window() const; // nothing if it could not be made
  void raise();
  Screens& screens() { return m_screens; }
  QQmlEngine& engine() { return m_engine; }

private:
  WindowModel m_model;
  Screens m_screens;
  QQmlApplicationEngine m_engine;
};

} // namespace vellum::ui
