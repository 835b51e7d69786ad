#include "base/MainLoop.h"
#include <QCoreApplication>

namespace vellum {

namespace {
QEvent::Type wakeType() {
  static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
  return type;
}
} // namespace

MainLoop::MainLoop() : m_thread(QThread::currentThread()) {}

MainLoop::~MainLoop() {
  close();
  shutdown();
  destroy();
}

void MainLoop::close() {
  Queue dropped;
  {
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    dropped.swap(m_queue);
  }
}

void MainLoop::enqueue(std::unique_ptr<AnyTask> task) {
  bool wake = false;
  {
    const std::lock_guard lock(m_mutex);
    if (m_closed) return;
    wake = !m_waking;
    m_waking = true;
    m_queue.push_back(std::move(task));
  }
  if (wake) QCoreApplication::postEvent(this, new QEvent(wakeType()));
}

void MainLoop::customEvent(QEvent*) {
  Queue ready;
  {
    const std::lock_guard lock(m_mutex);
    m_waking = false;
    ready.swap(m_queue);
  }
  while (!ready.empty()) {
    const auto task = std::move(ready.front());
    ready.pop_front();
    task->run();
  }
}

} // namespace vellum
