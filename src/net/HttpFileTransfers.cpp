#include "net/HttpFileTransfers.h"
#include "base/MainLoop.h"
#include "net/HttpFileTransfer.h"
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <future>
#include <map>

namespace vellum {

// The running transfers by their number. On the transfers' thread alone, but for post().
class HttpFileTransfers::Worker {
public:
  explicit Worker(std::chrono::milliseconds patience) : m_patience(patience) {}

  template <class F>
  void post(F work) {
    m_queue.post(std::move(work));
  }
  void run() { m_loop.exec(); }
  void quit() { m_loop.quit(); }

  void start(quint64 number, TransferSource source, std::shared_ptr<SharedProgress> progress,
             Ended ended) {
    if (!m_manager) m_manager = std::make_unique<QNetworkAccessManager>();
    auto transfer = std::make_unique<HttpFileTransfer>(
        HttpFileTransfer::Surroundings{*m_manager, m_room, m_patience}, std::move(source),
        std::move(progress), [this, number, ended = std::move(ended)](TransferEnd end) {
          drop(number);
          ended(std::move(end));
        });
    m_transfers.emplace(number, std::move(transfer)).first->second->begin();
  }
  void pause(quint64 number) {
    const auto found = m_transfers.find(number);
    if (found != m_transfers.end()) found->second->pause();
  }
  void drop(quint64 number) {
    const auto found = m_transfers.find(number);
    if (found == m_transfers.end()) return;
    // It is the one that tells of its own end.
    m_queue.post([ended = std::move(found->second)] {});
    m_transfers.erase(found);
  }
  void cancel(quint64 number) { m_transfers.erase(number); }

private:
  static constexpr std::size_t kRoom = 1024 * 1024;

  const std::chrono::milliseconds m_patience;
  QEventLoop m_loop;
  std::vector<char> m_room = std::vector<char>(kRoom);
  std::unique_ptr<QNetworkAccessManager> m_manager;
  std::map<quint64, std::unique_ptr<HttpFileTransfer>> m_transfers;
  MainLoop m_queue; // of this thread
};

// What the asker holds: a number, and the way to the thread.
class HttpFileTransfers::Handle final : public FileTransfer {
public:
  Handle(Worker& worker, quint64 number) : m_worker(worker), m_number(number) {}

  void pause() override {
    m_worker.post([&worker = m_worker, number = m_number] { worker.pause(number); });
  }
  void cancel() override {
    m_worker.post([&worker = m_worker, number = m_number] { worker.cancel(number); });
  }
  std::optional<TransferProgress> progress() const override { return m_progress->get(); }

  const std::shared_ptr<SharedProgress>& shared() const { return m_progress; }

private:
  Worker& m_worker;
  const quint64 m_number;
  const std::shared_ptr<SharedProgress> m_progress = std::make_shared<SharedProgress>();
};

HttpFileTransfers::HttpFileTransfers(std::chrono::milliseconds patience) : m_patience(patience) {}

HttpFileTransfers::~HttpFileTransfers() {
  if (!m_worker) return;
  m_worker->post([worker = m_worker] { worker->quit(); });
  m_thread.join();
}

std::shared_ptr<FileTransfer> HttpFileTransfers::start(TransferSource source, Ended ended) {
  if (!m_worker) {
    std::promise<Worker*> made;
    m_thread = std::thread([&made, patience = m_patience] {
      Worker worker(patience);
      made.set_value(&worker);
      worker.run();
    });
    m_worker = made.get_future().get();
  }
  const quint64 number = ++m_started;
  const auto handle = std::make_shared<Handle>(*m_worker, number);
  m_worker->post([worker = m_worker, number, source = std::move(source),
                  progress = handle->shared(), ended = std::move(ended)]() mutable {
    worker->start(number, std::move(source), std::move(progress), std::move(ended));
  });
  return handle;
}

} // namespace vellum
