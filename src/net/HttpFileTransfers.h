// Downloads into files over HTTP, on a thread of their own.
#pragma once
#include "net/FileTransfers.h"
#include <chrono>
#include <thread>

namespace vellum {

// Owned by the main thread, and outlives what it has started. Network and disk meet on its thread:
// hundreds of megabytes a second leave the main thread alone. The thread starts with the first
// transfer.
class HttpFileTransfers final : public FileTransfers {
public:
  static constexpr std::chrono::seconds kPatience{60};

  // Without a byte for this long a transfer fails.
  explicit HttpFileTransfers(std::chrono::milliseconds patience = kPatience);
  // Ends every transfer without a word, and removes their files.
  ~HttpFileTransfers() override;
  HttpFileTransfers(const HttpFileTransfers&) = delete;
  HttpFileTransfers& operator=(const HttpFileTransfers&) = delete;

  std::shared_ptr<FileTransfer> start(TransferSource source, Ended ended) override;

private:
  class Worker;
  class Handle;

  const std::chrono::milliseconds m_patience;
  std::thread m_thread;
  Worker* m_worker = nullptr; // lives on the thread, from its beginning to its end
  quint64 m_started = 0;
};

} // namespace vellum
