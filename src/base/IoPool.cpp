#include "base/IoPool.h"
#include <QCoreApplication>
#include <QThread>

namespace vellum {

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
  m_workers.join();
  m_work.reset();
  while (m_running > 0) {
    if (QCoreApplication::instance() != nullptr) QCoreApplication::processEvents();
    QThread::usleep(200);
  }
  for (auto& thread : m_threads) thread.join();
}

} // namespace vellum
