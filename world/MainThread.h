// What a test needs to stand on the main thread: an application object and its loop.
#pragma once
#include "base/MainLoop.h"
#include <QCoreApplication>
#include <chrono>

namespace vellum::world {

// A base of the fixture, so that it is there before the fixture's members and gone after them.
struct MainThread {
  // A proxy of the machine would be asked for what is on loopback, too.
  MainThread() {
    for (const char* variable :
         {"http_proxy", "HTTP_PROXY", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"})
      qunsetenv(variable);
  }

  int argc = 1;
  char name[5] = "test";
  char* argv[2] = {name, nullptr};
  QCoreApplication app{argc, argv};
  MainLoop main;

  // Turns the main loop; false if the condition does not come true in time.
  template <class Condition>
  static bool turnUntil(Condition holds, std::chrono::seconds limit = std::chrono::seconds(30)) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!holds() && std::chrono::steady_clock::now() < deadline)
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 5);
    return holds();
  }
};

} // namespace vellum::world
