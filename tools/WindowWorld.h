// The whole program but for main(), in a world of its own: indexers, catalog, tracker and seeders
// on loopback, folders of its own, and its real window.
#pragma once
#include "tools/Driver.h"
#include "ui/window/MainWindow.h"
#include "world/MainThread.h"
#include <QProcess>
#include <QTemporaryDir>
#include <optional>

namespace vellum::tools {

using namespace world;

// Main thread; needs an application object, and only one of these at a time.
class WindowWorld {
public:
  // Throws std::runtime_error if the world does not start. `options` are those of the demo world.
  explicit WindowWorld(const QStringList& options = {});
  ~WindowWorld();
  WindowWorld(const WindowWorld&) = delete;
  WindowWorld& operator=(const WindowWorld&) = delete;

  QString magnet() const { return line("MAGNET"); }
  QString torrentFile() const { return line("TORRENT"); }
  QString filmFolder() const { return m_folder.filePath(QStringLiteral("Vellum Test Film")); }
  QString indexer(const char* kind) const; // its address
  QString home() const { return m_folder.filePath(QStringLiteral("home")); }
  WindowState& state() { return *m_state; }
  QQuickWindow& window() { return *m_window->window(); }
  Driver& drive() { return *m_driver; }
  ui::Screens& screens() { return m_window->screens(); }
  // What QML complained about so far.
  QStringList warnings() const { return m_warnings; }
  // The program ends and begins again, with the same folders.
  void restart();

private:
  QString line(const char* word) const;
  void startWorld(const QStringList& options);
  void startProgram();
  void endProgram();

  QTemporaryDir m_folder;
  QProcess m_world;
  QByteArray m_told;
  QStringList m_warnings;
  std::optional<Runtime> m_runtime;
  std::optional<AppState> m_app;
  std::optional<WindowState> m_state;
  std::optional<ui::MainWindow> m_window;
  std::optional<Driver> m_driver;
};

} // namespace vellum::tools
