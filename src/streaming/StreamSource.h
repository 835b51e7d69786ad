// What the stream server asks of a torrent: six questions, each answered on the torrent's own queue
// while the asking coroutine waits without blocking a thread.
#pragma once
#include "base/Bytes.h"
#include "base/Flow.h"
#include "formats/TorrentMeta.h"
#include <memory>

namespace vellum {

// The place of a file in the torrent's payload, in bytes.
struct FileRange {
  std::int64_t offset = 0;
  std::int64_t length = 0;
  bool operator==(const FileRange&) const = default;
};

// Callable from any coroutine on any executor; the awaiting side resumes on its own. Never throws.
class StreamSource {
public:
  virtual ~StreamSource() = default;

  // 40 lower-case hexadecimal digits; constant.
  virtual QString key() const = 0;

  // Nothing without metadata. Shared, since a torrent may have very many files.
  using Files = std::shared_ptr<const std::vector<TorrentFileEntry>>;
  virtual Flow<Files> filesAsync() = 0;
  // Nothing without metadata or for an index out of range.
  virtual Flow<std::optional<FileRange>> fileRangeAsync(std::int64_t file) = 0;
  // True when every piece that the bytes touch is verified. `abs` counts from the payload's start.
  virtual Flow<bool> hasRangeAsync(std::int64_t abs, std::int64_t length) = 0;
  // Reads into `into`, which must live until the answer; gives the bytes read, 0 when there are
  // none.
  virtual Flow<std::size_t> readAsync(std::int64_t abs, std::span<std::byte> into) = 0;
  // Position relative to the file that is being streamed; never blocks.
  virtual void setPlayhead(std::int64_t pos) = 0;
  virtual Flow<bool> isStoppedAsync() = 0;
};

} // namespace vellum
