// A Qt application that knows how long its main thread has worked at once.
#pragma once
#include <QThread>
#include <ctime>
#include <utility>
#include <vector>

namespace vellum {

// Seconds of processor time of this thread: on a busy machine the wall clock tells of others.
inline double threadSeconds() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// `Application` is QCoreApplication or QGuiApplication.
template <class Application>
class WatchedApplication final : public Application {
public:
  using Application::Application;
  bool notify(QObject* receiver, QEvent* event) override {
    // Qt asks it for the objects of every thread; events are handled within others.
    if (QThread::currentThread() != this->thread() || std::exchange(m_inside, true))
      return Application::notify(receiver, event);
    const double before = threadSeconds();
    const bool isHandled = Application::notify(receiver, event);
    m_steps.push_back((threadSeconds() - before) * 1000);
    m_inside = false;
    return isHandled;
  }
  // Of each event, in milliseconds; and begins anew.
  std::vector<double> takeSteps() { return std::exchange(m_steps, {}); }

private:
  bool m_inside = false;
  std::vector<double> m_steps;
};

} // namespace vellum
