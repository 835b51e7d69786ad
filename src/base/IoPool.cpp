#include "base/IoPool.h"
#include <QCoreApplication>
#include <QThread>

namespace vellum {

namespace {

void turnMain() {
  if (QCoreApplication::instance() != nullptr) QCoreApplication::processEvents();
}

template <class Condition>
void turnMainUntil(Condition holds) {
  while (!holds()) {
    turnMain();
    QThread::usleep(200);
  }
}

} // namespace

IoPool::IoPool(int ioThreads, int workerThreads)
    : m_io(ioThreads), m_work(m_io.get_executor()),
      m_workers(static_cast<std::size_t>(workerThreads)), m_running(ioThreads) {
  for (int i = 0; i < ioThreads; ++i)
    m_threads.emplace_back([this] {
      m_io.run();
      --m_running;
    });
}

IoPool::~IoPool() {
  std::atomic<bool> workersEnded = false;
  std::thread joiner([&] {
    m_workers.join();
    workersEnded = true;
  });
  turnMainUntil([&] { return workersEnded.load(); });
  joiner.join();
  m_work.reset();
  turnMainUntil([&] { return m_running == 0; });
  for (auto& thread : m_threads) thread.join();
  // What is queued there may hold strands of these pools, which must not outlive them.
  turnMain();
}

} // namespace vellum
