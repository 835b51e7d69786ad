// What playback asks of the rest of the program, answered by engine, settings, disk and network.
#pragma once
#include "app/Runtime.h"
#include "engine/TorrentEngine.h"
#include "models/HistoryEntry.h"
#include "playback/PlaybackSurroundings.h"
#include "playback/VideoPlayerManager.h"
#include "storage/SettingsStore.h"
#include <QDateTime>

namespace vellum {

// Main thread.
class PlaybackServices final : public PlaybackSurroundings {
public:
  // All outlive it.
  PlaybackServices(Runtime& runtime, const SettingsStore& settings, TorrentEngine& engine)
      : m_runtime(runtime), m_settings(settings), m_engine(engine),
        m_fetch(runtime.http.fetcher()) {}

  std::shared_ptr<StreamSession> acquire(const Hash20& hash, const QStringList& trackers,
                                         const QString& title,
                                         std::shared_ptr<const TorrentMeta> meta) override;
  void release(StreamSession& session) override;
  QString preferredQuality() const override { return m_settings.preferredQuality(); }
  std::int64_t freeSpace() const override;
  Flow<std::optional<TorrentMeta::TorrentFile>> fetchTorrent(QUrl url,
                                                             std::chrono::seconds timeout) override;
  Flow<> sleep(std::chrono::milliseconds duration) override;
  TimePoint now() const override { return m_runtime.clock.now(); }
  double secondsSince2001() const override {
    return vellum::secondsSince2001(QDateTime::currentDateTimeUtc());
  }

private:
  Runtime& m_runtime;
  const SettingsStore& m_settings;
  TorrentEngine& m_engine;
  FetchData m_fetch;
};

// The video player as the coordinator asks it. Main thread.
class PlayerOfStreams final : public StreamPlayer {
public:
  explicit PlayerOfStreams(VideoPlayerManager& player) : m_player(player) {}
  void load(const QUrl& url, double startAt) override { m_player.load(url, startAt); }
  void stop() override { m_player.stop(); }
  void clearError() override { m_player.clearError(); }
  bool isBuffering() const override { return m_player.isBuffering(); }
  double currentTime() const override { return m_player.currentTime(); }
  double duration() const override { return m_player.duration(); }

private:
  VideoPlayerManager& m_player;
};

} // namespace vellum
