// What a test needs to stand on the main thread: an application object and its loop.
#pragma once
#include "base/MainLoop.h"
#include <QCoreApplication>

namespace vellum::test {

// A base of the fixture, so that it is there before the fixture's members and gone after them.
struct MainThread {
  int argc = 1;
  char name[5] = "test";
  char* argv[2] = {name, nullptr};
  QCoreApplication app{argc, argv};
  MainLoop main;
};

} // namespace vellum::test
