// One running torrent, for everybody outside its queue.
#pragma once
#include "engine/SessionRunner.h"
#include "streaming/StreamSource.h"
#include <cassert>

namespace vellum {

// The operations without "Async" are for the main thread, never for a strand or pool thread; some
// of them wait for the session's strand, as their comments say. Dropping a session stops it.
class TorrentSession final : public StreamSource {
public:
  // `meta` may be nothing: the info dictionary is then fetched from peers. Waits for the strand.
  TorrentSession(const SessionEnvironment& environment, const Hash20& infoHash,
                 const QStringList& trackers, const QString& title, const QString& directory,
                 std::shared_ptr<const TorrentMeta> meta);
  ~TorrentSession() override;
  TorrentSession(const TorrentSession&) = delete;
  TorrentSession& operator=(const TorrentSession&) = delete;

  const Hash20& infoHash() const { return m_infoHash; }
  const QString& directory() const { return m_directory; }
  QString key() const override { return toHex(m_infoHash); }

  // Both are called on the main thread. onTick: once a second. onProgress: at once when the stream
  // becomes ready and when what is wanted becomes complete.
  void setOnTick(std::function<void(const SessionSnapshot&)> onTick);
  void setOnProgress(std::function<void(const SessionSnapshot&)> onProgress);
  // Called on a worker thread when the metadata came from peers.
  void setOnMetadata(std::function<void()> onMetadata);
  // Bytes per second, read on the session's strand at every request; below 1: no limit.
  void setUploadLimit(std::function<std::int64_t()> limit);

  void start();
  void addPeers(std::vector<PeerAddr> addresses);
  // Waits until no tick or message handler runs any more, then removes the folder if asked to, and
  // if nobody else uses its payload.
  void stop(bool deleteData);
  // These wait for the strand.
  SessionSnapshot snapshot();
  QString title();
  bool isStopped();
  std::vector<TorrentFileEntry> files();
  std::optional<FileRange> fileRange(std::int64_t file);
  bool hasRange(std::int64_t abs, std::int64_t length);
  std::optional<ByteVector> read(std::int64_t abs, std::int64_t length);
  void select(std::int64_t file, const std::vector<int>& subtitles);

  Flow<Files> filesAsync() override;
  Flow<std::optional<FileRange>> fileRangeAsync(std::int64_t file) override;
  Flow<bool> hasRangeAsync(std::int64_t abs, std::int64_t length) override;
  Flow<std::size_t> readAsync(std::int64_t abs, std::span<std::byte> into) override;
  void setPlayhead(std::int64_t pos) override;
  Flow<bool> isStoppedAsync() override;

private:
  // Main thread only.
  struct Observers {
    std::function<void(const SessionSnapshot&)> onTick;
    std::function<void(const SessionSnapshot&)> onProgress;
  };

  SessionRunner::Events events() const;
  void removeData() const;
  // Waits for f on the strand.
  template <class F>
  auto onStrand(F f) {
    assert(m_environment.main.isCurrentThread());
    return syncOn(m_strand, std::move(f));
  }

  SessionEnvironment m_environment;
  Hash20 m_infoHash;
  QString m_directory;
  Strand m_strand;
  std::shared_ptr<Observers> m_observers = std::make_shared<Observers>();
  std::shared_ptr<std::function<void()>> m_onMetadata; // on the strand
  std::shared_ptr<SessionRunner> m_runner;
};

} // namespace vellum
