// The owner of what plays: from a pressed Play to a picture, and back to nothing.
#pragma once
#include "playback/ExternalPlayers.h"
#include "playback/NowPlaying.h"
#include "playback/PlaybackSurroundings.h"
#include "playback/StreamState.h"
#include "playback/SubtitleManager.h"
#include "storage/LibraryStore.h"
#include <QHash>
#include <QObject>

namespace vellum {

// Main thread, whose executor runs its flow. At most one flow makes progress.
class PlaybackCoordinator final : public QObject {
  Q_OBJECT

public:
  // All outlive it.
  struct Services {
    PlaybackSurroundings& surroundings;
    StreamPlayer& player;
    SubtitleManager& subtitles;
    LibraryStore& library;
    ExternalPlayers& externalPlayers;
  };

  PlaybackCoordinator(asio::any_io_executor main, const Services& services);
  ~PlaybackCoordinator() override;

  const std::optional<StreamState>& stream() const { return m_stream; }
  const QHash<QString, RowState>& rowStates() const { return m_rowStates; }
  const std::optional<ZeroSeedPrompt>& zeroSeedPrompt() const { return m_zeroSeedPrompt; }
  void clearZeroSeedPrompt();
  const std::optional<NowPlaying>& nowPlaying() const { return m_nowPlaying; }
  std::shared_ptr<StreamSession> activeSession() const { return m_activeSession; }
  const std::optional<QString>& activeRowKey() const { return m_activeRowKey; }
  const std::optional<TorrentResult>& lastRequest() const { return m_lastRequest; }

  // The two ways up: the list in which variants are looked for, and the player screen.
  void setAllResults(std::function<TorrentResults()> allResults);
  void setPresentPlayer(std::function<void()> presentPlayer);

  // The entry. Plays the variant in the quality that is asked for or preferred; asks first about a
  // torrent without seeders; only presents the player when the row plays already.
  void playFromSearchResult(TorrentResult result, const std::optional<QString>& quality = {},
                            bool skipVariants = false, bool ignoreZeroSeeders = false);
  // Answers the question which file is meant; nothing ends the flow that asked. Without a question
  // it does nothing.
  void pickFile(std::optional<int> index);
  // Releases everything that the flow holds. What plays goes on until the player is stopped.
  void endStream();
  // Every close of the player: saves, ends the stream, stops, forgets what plays.
  void close();
  // The same without saving, for a stream that has not begun to play.
  void cancel();
  // Once more, with the variant that failed.
  void retry();

  void saveNow();
  void resetSubtitles(const SubtitleTracks& tracks) { m_services.subtitles.reset(tracks); }
  // Resumes a row of the history.
  void play(const HistoryEntry& entry);
  // Plays a file or an address that is no stream, from where the history left it.
  void playUrl(const QUrl& url, const QString& itemID, const QString& title, const QString& name,
               const std::optional<QUrl>& thumbnail, const SubtitleTracks& tracks);

  // What the player tells.
  void playerTime(double seconds);
  void playerFinished();
  void playerFailed();

Q_SIGNALS:
  void streamChanged();
  void rowStatesChanged();
  void zeroSeedPromptChanged();
  void nowPlayingChanged();

private:
  struct Failed; // thrown by a step of the flow, caught by runStream alone
  struct Source;

  Flow<> runStream(TorrentResult result);
  Flow<> stream(TorrentResult result);
  Flow<Source> sourceOf(const TorrentResult& result);
  Flow<> waitForMetadata(StreamSession& session);
  Flow<int> chooseFile(StreamSession& session);
  Flow<std::optional<int>> ask(const std::vector<StreamChoice>& choices);
  Flow<> waitForStart(StreamSession& session);
  Flow<> monitor(StreamSession& session, std::vector<int> subtitles);
  Flow<> takeSubtitles(StreamSession& session, std::vector<int>& pending, bool& firstSelected);
  void handOver(const TorrentResult& result, const StreamSession& session, const QString& path,
                const QUrl& url);
  void fail(const StreamFailure& failure);

  // Nothing without a stream.
  template <class Change>
  void changeStream(Change change) {
    if (!m_stream) return;
    change(*m_stream);
    Q_EMIT streamChanged();
  }
  void setRowState(const QString& key, const RowState& state);
  void setNowPlaying(std::optional<NowPlaying> nowPlaying);
  TorrentResult variantOf(const TorrentResult& result, const std::optional<QString>& quality) const;
  double startPosition(const QString& key) const;
  void begin(HistoryEntry entry, const QUrl& url, const std::optional<QUrl>& thumbnail,
             const SubtitleTracks& tracks);

  asio::any_io_executor m_main;
  Services m_services;
  std::function<TorrentResults()> m_allResults = [] { return TorrentResults(); };
  std::function<void()> m_presentPlayer = [] {};

  std::optional<StreamState> m_stream;
  QHash<QString, RowState> m_rowStates;
  std::optional<ZeroSeedPrompt> m_zeroSeedPrompt;
  std::optional<NowPlaying> m_nowPlaying;
  std::optional<FlowGroup> m_flowTask;
  std::vector<FlowGroup> m_leftRunning; // flows of failed streams, which nobody ends before the end
  std::shared_ptr<StreamSession> m_activeSession;
  std::optional<QString> m_activeRowKey;
  std::optional<QUrl> m_activeStreamURL;
  std::function<void(std::optional<int>)> m_pickContinuation;
  std::optional<TorrentResult> m_lastRequest;
  double m_lastSaved = 0; // seconds
};

} // namespace vellum
