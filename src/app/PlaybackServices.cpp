#include "app/PlaybackServices.h"
#include "storage/CacheManager.h"
#include "streaming/ExtractFile.h"

namespace vellum {

namespace {

// A session of the engine as a play sees it.
class EngineSession final : public StreamSession {
public:
  EngineSession(std::shared_ptr<TorrentSession> session, Runtime& runtime)
      : m_session(std::move(session)), m_runtime(runtime) {}

  const std::shared_ptr<TorrentSession>& session() const { return m_session; }
  QString key() const override { return m_session->key(); }
  QString directory() const override { return m_session->directory(); }
  SessionSnapshot snapshot() override { return m_session->snapshot(); }
  void addPeers(std::vector<PeerAddr> peers) override { m_session->addPeers(std::move(peers)); }
  void select(int file, const std::vector<int>& subtitles) override {
    m_session->select(file, subtitles);
  }
  Flow<std::optional<QUrl>> url(int file, QString name) override {
    return m_runtime.server.url(m_session, file, std::move(name));
  }
  Flow<bool> extract(int file, QString destination) override {
    return flowOn(m_runtime.pool.makeWorkerStrand(),
                  extractFile(m_session, file, std::move(destination)));
  }

private:
  std::shared_ptr<TorrentSession> m_session;
  Runtime& m_runtime;
};

Flow<std::optional<TorrentMeta::TorrentFile>> torrentOf(Flow<QByteArray> fetch) {
  const QByteArray bytes = co_await std::move(fetch);
  co_return TorrentMeta::parseTorrentFile(asBytes(bytes));
}

} // namespace

std::shared_ptr<StreamSession> PlaybackServices::acquire(const Hash20& hash,
                                                         const QStringList& trackers,
                                                         const QString& title,
                                                         std::shared_ptr<const TorrentMeta> meta) {
  return std::make_shared<EngineSession>(m_engine.acquire(hash, trackers, title, std::move(meta)),
                                         m_runtime);
}

void PlaybackServices::release(StreamSession& session) {
  m_engine.release(static_cast<EngineSession&>(session).session());
}

std::int64_t PlaybackServices::freeSpace() const {
  return CacheManager::freeSpace(m_settings.cachePath());
}

Flow<std::optional<TorrentMeta::TorrentFile>>
PlaybackServices::fetchTorrent(QUrl url, std::chrono::seconds timeout) {
  return flowOn(m_runtime.pool.makeWorkerStrand(), torrentOf(m_fetch(std::move(url), timeout)));
}

Flow<> PlaybackServices::sleep(std::chrono::milliseconds duration) {
  // The main loop has no timers of Asio's; those of the io context may be awaited anywhere.
  asio::steady_timer timer(m_runtime.pool.io());
  timer.expires_after(duration);
  co_await timer.async_wait(asio::use_awaitable);
}

} // namespace vellum
