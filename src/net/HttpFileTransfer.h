// One file on its way over HTTP into a partial file.
#pragma once
#include "net/AnswerPlan.h"
#include "net/FileTransfers.h"
#include "net/NetError.h"
#include <QNetworkReply>
#include <QObject>
#include <QTimer>
#include <atomic>
#include <chrono>

namespace vellum {

// Written by the transfer, read by whoever shows it. Any thread.
class SharedProgress {
public:
  void set(std::int64_t received, std::int64_t expected) {
    m_expected = expected;
    m_received = received;
  }
  std::optional<TransferProgress> get() const {
    const std::int64_t received = m_received;
    if (received < 0) return std::nullopt;
    return TransferProgress{received, m_expected};
  }

private:
  std::atomic<std::int64_t> m_received = -1; // until there is one
  std::atomic<std::int64_t> m_expected = 0;
};

// Lives on the transfers' thread, which also writes the file. It ends once: by its callback, or
// silently when it is destroyed.
class HttpFileTransfer final : public QObject {
public:
  struct Surroundings {
    QNetworkAccessManager& manager;
    std::vector<char>& room; // where bytes rest between network and disk; shared, never empty
    std::chrono::milliseconds patience; // without a byte the transfer ends after this time
  };

  HttpFileTransfer(Surroundings around, TransferSource source,
                   std::shared_ptr<SharedProgress> progress, FileTransfers::Ended ended);
  ~HttpFileTransfer() override;

  // Called once after construction; it may end at once.
  void begin();
  void pause();

private:
  void ask();
  void limitReadAhead();
  void take();
  void finish();
  bool understand();
  void readInto();
  bool mayGoOn(std::int64_t written);
  std::optional<ResumeData> resumeData();
  void dropReply();
  void fail(const QString& reason);
  void fail(const std::error_code& error);
  void end(TransferEnd end);

  const Surroundings m_around;
  TransferSource m_source;
  const std::shared_ptr<SharedProgress> m_progress;
  FileTransfers::Ended m_ended; // nothing once it has ended
  std::shared_ptr<PartFile> m_file;
  QByteArray m_validator;
  std::int64_t m_expected = 0;
  std::int64_t m_sinceLook = 0; // bytes written since the last look at the free space
  bool m_isUnderstood = false;  // the head of the present answer
  QNetworkReply* m_reply = nullptr;
  QTimer m_patience;
};

} // namespace vellum
