#include "playback/PlaybackCoordinator.h"
#include "models/QualityPicker.h"
#include <cmath>

namespace vellum {

namespace {

constexpr double kSaveDistance = 5.0; // seconds between two saved positions

// What follows the first "|" of a history key, or else all there is.
QString nameIn(QString key) {
  while (key.startsWith(u'|')) key.remove(0, 1);
  const qsizetype bar = key.indexOf(u'|');
  if (bar < 0) return key;
  return bar + 1 < key.size() ? key.sliced(bar + 1) : key.first(bar);
}

} // namespace

PlaybackCoordinator::PlaybackCoordinator(asio::any_io_executor main, const Services& services)
    : m_main(std::move(main)), m_services(services) {}

PlaybackCoordinator::~PlaybackCoordinator() {
  endStream();
  for (FlowGroup& flow : m_leftRunning) flow.cancelAll();
}

void PlaybackCoordinator::setAllResults(std::function<TorrentResults()> allResults) {
  m_allResults = std::move(allResults);
}
void PlaybackCoordinator::setPresentPlayer(std::function<void()> presentPlayer) {
  m_presentPlayer = std::move(presentPlayer);
}

TorrentResult PlaybackCoordinator::variantOf(const TorrentResult& result,
                                             const std::optional<QString>& quality) const {
  const TorrentResults variants = QualityPicker::variants(result, m_allResults());
  if (quality)
    for (const TorrentResult& variant : variants)
      if (variant.quality() == *quality) return variant;
  if (variants.size() < 2) return result;
  return QualityPicker::pick(m_services.surroundings.preferredQuality(), variants).value_or(result);
}

void PlaybackCoordinator::playFromSearchResult(TorrentResult result,
                                               const std::optional<QString>& quality,
                                               bool skipVariants, bool ignoreZeroSeeders) {
  if (!skipVariants) result = variantOf(result, quality);
  if (result.seeders == 0 && !ignoreZeroSeeders) {
    m_zeroSeedPrompt = ZeroSeedPrompt{QUuid::createUuid(), result, quality};
    Q_EMIT zeroSeedPromptChanged();
    return;
  }
  const QString key = rowKey(result);
  const bool plays = m_rowStates.value(key).kind == RowState::Kind::Playing;
  if (m_rowStates.contains(key) && plays && m_activeRowKey == key) return m_presentPlayer();

  endStream();
  saveNow();
  m_services.player.stop();
  m_activeRowKey = key;
  setRowState(key, {RowState::Kind::Starting, {}});
  m_stream = StreamState{.title = result.title, .notice = {}, .failure = {}, .choices = {}};
  Q_EMIT streamChanged();
  setNowPlaying(NowPlaying{QStringLiteral("pending|") + key, result.title, {}});
  m_presentPlayer();
  m_flowTask.emplace(m_main);
  m_flowTask->spawn(runStream(std::move(result)));
}

void PlaybackCoordinator::clearZeroSeedPrompt() {
  m_zeroSeedPrompt.reset();
  Q_EMIT zeroSeedPromptChanged();
}

void PlaybackCoordinator::pickFile(std::optional<int> index) {
  // Taken first, so that a second answer meets nobody.
  if (const auto resume = std::exchange(m_pickContinuation, nullptr)) resume(index);
}

void PlaybackCoordinator::fail(const StreamFailure& failure) {
  changeStream([&](StreamState& stream) { stream.failure = failure; });
  if (m_activeRowKey) setRowState(*m_activeRowKey, {RowState::Kind::Failed, failure.text()});
  // A flow that has handed over goes on watching its session.
  std::erase_if(m_leftRunning, [](const FlowGroup& flow) { return flow.isIdle(); });
  if (m_flowTask) m_leftRunning.push_back(*std::exchange(m_flowTask, std::nullopt));
}

void PlaybackCoordinator::endStream() {
  if (m_flowTask) m_flowTask->cancelAll();
  m_flowTask.reset();
  pickFile(std::nullopt);
  m_services.externalPlayers.close();
  if (m_activeSession) m_services.surroundings.release(*m_activeSession);
  m_activeSession.reset();
  if (m_activeRowKey && m_rowStates.value(*m_activeRowKey).kind != RowState::Kind::Failed) {
    m_rowStates.remove(*m_activeRowKey);
    Q_EMIT rowStatesChanged();
  }
  m_activeRowKey.reset();
  m_activeStreamURL.reset();
  m_stream.reset();
  Q_EMIT streamChanged();
}

void PlaybackCoordinator::close() {
  saveNow();
  cancel();
}

void PlaybackCoordinator::cancel() {
  endStream();
  m_services.player.stop();
  m_services.subtitles.reset({});
  setNowPlaying(std::nullopt);
}

void PlaybackCoordinator::retry() {
  if (!m_activeRowKey) return;
  const auto request = m_lastRequest;
  endStream();
  if (request) playFromSearchResult(*request, std::nullopt, true, true);
}

void PlaybackCoordinator::saveNow() {
  if (m_nowPlaying)
    m_services.library.updateProgress(m_nowPlaying->key, m_services.player.currentTime(),
                                      m_services.player.duration());
}

double PlaybackCoordinator::startPosition(const QString& key) const {
  const auto entry = m_services.library.entry(key);
  if (!entry || !(entry->position > LibraryStore::kNotBegun)) return 0;
  const bool isFinished =
      entry->duration > 0 && !(entry->position < LibraryStore::kFinished * entry->duration);
  return isFinished ? 0 : entry->position;
}

void PlaybackCoordinator::begin(HistoryEntry entry, const QUrl& url,
                                const std::optional<QUrl>& thumbnail,
                                const SubtitleTracks& tracks) {
  saveNow();
  const auto old = m_services.library.entry(entry.key);
  entry.isLocal = url.isLocalFile();
  if (thumbnail) entry.thumbnail = thumbnail->toString(QUrl::FullyEncoded);
  entry.position = startPosition(entry.key);
  entry.duration = old ? old->duration : 0;
  entry.lastPlayed = m_services.surroundings.secondsSince2001();
  m_services.library.record(entry);
  setNowPlaying(NowPlaying{entry.key, entry.title, thumbnail});
  m_services.subtitles.reset(tracks);
  m_lastSaved = entry.position;
  m_services.player.load(url, entry.position);
}

void PlaybackCoordinator::playUrl(const QUrl& url, const QString& itemID, const QString& title,
                                  const QString& name, const std::optional<QUrl>& thumbnail,
                                  const SubtitleTracks& tracks) {
  HistoryEntry entry;
  entry.key = itemID + u'|' + name;
  entry.itemID = itemID;
  entry.title = title;
  entry.source = url.isLocalFile() ? url.toLocalFile() : url.toString(QUrl::FullyEncoded);
  begin(entry, url, thumbnail, tracks);
}

void PlaybackCoordinator::play(const HistoryEntry& entry) {
  if (entry.source.startsWith(QLatin1String("magnet:"))) {
    TorrentResult result;
    result.id = entry.itemID;
    result.infoHash = entry.itemID;
    result.title = entry.title;
    result.magnet = entry.source;
    return playFromSearchResult(result, std::nullopt, true, true);
  }
  const QUrl url = entry.isLocal ? QUrl::fromLocalFile(entry.source) : QUrl(entry.source);
  if (url.isEmpty() || !url.isValid()) return;
  std::optional<QUrl> thumbnail;
  if (entry.thumbnail && QUrl(*entry.thumbnail).isValid()) thumbnail = QUrl(*entry.thumbnail);
  playUrl(url, entry.itemID, entry.title, nameIn(entry.key), thumbnail, {});
}

void PlaybackCoordinator::playerTime(double seconds) {
  if (!m_nowPlaying) return;
  m_services.subtitles.update(seconds);
  if (std::abs(seconds - m_lastSaved) < kSaveDistance) return;
  m_lastSaved = seconds;
  m_services.library.updateProgress(m_nowPlaying->key, seconds, m_services.player.duration());
}

void PlaybackCoordinator::playerFinished() {
  if (m_nowPlaying)
    m_services.library.updateProgress(m_nowPlaying->key, 0, m_services.player.duration());
}

void PlaybackCoordinator::playerFailed() {
  if (!m_activeSession || !m_activeStreamURL || (m_stream && m_stream->failure)) return;
  const auto opened = m_services.externalPlayers.open(*m_activeStreamURL);
  if (opened == ExternalPlayers::Opened::None) return fail({StreamFailure::Kind::Unsupported, {}});
  changeStream([&](StreamState& stream) {
    stream.notice = opened == ExternalPlayers::Opened::Mpv
                        ? tr("Playing in mpv (the built-in player couldn't decode this video).")
                        : tr("Playing in VLC (the built-in player couldn't decode this video).");
  });
  m_services.player.stop();
  m_services.player.clearError();
}

void PlaybackCoordinator::setRowState(const QString& key, const RowState& state) {
  m_rowStates.insert(key, state);
  Q_EMIT rowStatesChanged();
}

void PlaybackCoordinator::setNowPlaying(std::optional<NowPlaying> nowPlaying) {
  m_nowPlaying = std::move(nowPlaying);
  Q_EMIT nowPlayingChanged();
}

} // namespace vellum
