// Downloads into files that may be paused: the contract between who asks and who talks HTTP.
#pragma once
#include "net/PartFile.h"
#include <QByteArray>
#include <QUrl>
#include <functional>
#include <memory>
#include <optional>
#include <variant>

namespace vellum {

// What a paused transfer goes on from, opaque to whoever keeps it. Dropping it removes the file.
struct ResumeData {
  std::shared_ptr<PartFile> file;
  QByteArray validator; // of RFC 9110, section 13.1.5
  std::int64_t total = 0;
};

struct TransferSource {
  QUrl url;
  QString folder; // where the partial file lies
  // Bytes that somebody else has promised, 0 if nobody: with less than these an answer of untold
  // length is not whole.
  std::int64_t promised = 0;
  std::optional<ResumeData> resume = {}; // nothing: from the beginning
  // Whether the disk has room for some megabytes more. Called on a thread of the transfers.
  std::function<bool()> hasRoom = {};
};

struct TransferProgress {
  std::int64_t received = 0; // bytes, with those of before a pause
  std::int64_t expected = 0; // 0 while unknown
  bool operator==(const TransferProgress&) const = default;
};

// How a transfer ended.
struct TransferFinished {
  std::shared_ptr<PartFile> file; // whole; whoever is handed it moves it
};
struct TransferPaused {
  std::optional<ResumeData> resume; // nothing if one can only begin again
};
struct TransferFailed {
  QString reason; // for the user
};
using TransferEnd = std::variant<TransferFinished, TransferPaused, TransferFailed>;

// One transfer under way. Any thread.
class FileTransfer {
public:
  virtual ~FileTransfer() = default;
  virtual void pause() = 0;
  // From now on nothing but the file's removal happens, if it has not ended before.
  virtual void cancel() = 0;
  virtual std::optional<TransferProgress> progress() const = 0; // nothing before the first byte
};

class FileTransfers {
public:
  // Called once on a thread of the transfers; not at all after a cancel that came in time.
  using Ended = std::function<void(TransferEnd)>;

  virtual ~FileTransfers() = default;
  // Main thread. Never fails at once: `ended` tells.
  virtual std::shared_ptr<FileTransfer> start(TransferSource source, Ended ended) = 0;
};

} // namespace vellum
