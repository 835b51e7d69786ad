// A program that is started and goes on beside us.
#pragma once
#include <QStringList>
#include <memory>

namespace vellum::platform {

// Main thread; a thread for each running child waits for its end, so that none stays a zombie.
// A child gets no descriptor of ours, stands in a process group of its own (a Ctrl-C for us is none
// for it), and is ended by terminate() alone: neither by another launch nor by the destructor.
class ChildProcess final {
public:
  ChildProcess();
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // Starts the program at an absolute path without waiting for it; false if it cannot start. The
  // one started before goes on, and is no longer known here.
  bool launch(const QString& program, const QStringList& arguments);
  // Asks the child that was launched last to end; nothing happens if there is none any more.
  void terminate();
  bool isRunning() const;

private:
  class Child;
  std::shared_ptr<Child> m_child;
};

} // namespace vellum::platform
