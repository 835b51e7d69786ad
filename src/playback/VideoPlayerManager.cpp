#include "playback/VideoPlayerManager.h"
#include "playback/MpvPicture.h"
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cmath>

namespace vellum {

namespace {

constexpr double kTick = 0.5;         // seconds of playback between two times told
constexpr double kStartAtZero = 1.0;  // seconds; a start up to here is the beginning
constexpr double kFullVolume = 100.0; // libmpv's
constexpr double kMissing = 1.0;      // seconds at the end that a film may lack, since durations
constexpr double kMissingPart = 0.02; // are estimates; and the part of its duration
constexpr std::uint64_t kQuestions = 16;

// What libmpv is asked to open; empty for what it must not.
QByteArray addressOf(const QUrl& url) {
  if (url.isLocalFile()) {
    const QString path = url.toLocalFile();
    if (QFileInfo(path).isRelative() || path.contains(QChar::Null)) return {};
    return QFile::encodeName(path);
  }
  const bool isWeb =
      url.scheme() == QStringLiteral("http") || url.scheme() == QStringLiteral("https");
  return isWeb && !url.host().isEmpty() ? url.toEncoded() : QByteArray();
}

} // namespace

QString VideoPlayerManager::aspectName(AspectMode mode) {
  switch (mode) {
  case AspectMode::Fit: return tr("Fit");
  case AspectMode::Fill: return tr("Fill");
  case AspectMode::Stretch: return tr("Stretch");
  }
  return {};
}

VideoPlayerManager::VideoPlayerManager(MainLoop& main, AudioOutput audio)
    : m_handle(std::make_shared<MpvHandle>(audio)),
      m_picture(std::make_shared<MpvPicture>(m_handle)), m_core(main, m_handle, *this) {
  const auto observe = [this](const char* property, Observed observed) {
    m_core.observe(property, static_cast<std::uint64_t>(observed));
  };
  observe("time-pos", Observed::Time);
  observe("demuxer-cache-time", Observed::CacheEnd);
  observe("core-idle", Observed::CoreIdle);
  observe("eof-reached", Observed::AtEnd);
  connect(m_picture.get(), &MpvPicture::ready, this, &VideoPlayerManager::open,
          Qt::QueuedConnection);
}

VideoPlayerManager::~VideoPlayerManager() = default;

template <class T>
void VideoPlayerManager::publish(T& field, const T& value, void (VideoPlayerManager::*changed)()) {
  if (field == value) return;
  field = value;
  Q_EMIT(this->*changed)();
}

void VideoPlayerManager::load(const QUrl& url, double startAt) {
  ++m_generation;
  m_currentURL = url;
  Q_EMIT currentURLChanged();
  m_pendingStart = startAt;
  setError({});
  setCurrentTime(0);
  publish(m_duration, 0.0, &VideoPlayerManager::durationChanged);
  publish(m_bufferedTo, 0.0, &VideoPlayerManager::bufferedToChanged);
  setAudio({});
  m_item = Item::Opening;
  m_entry.reset();
  m_pendingSeek.reset();
  m_isAsked = m_isStarted = m_isAtEnd = false;
  m_isSeeking = m_wantsToPlay = true;
  publishStatus();
  if (m_handle->get() == nullptr || addressOf(url).isEmpty()) return refuse();
  open();
}

// Called for a new item, and when somebody begins to draw.
void VideoPlayerManager::open() {
  // The player gave up the picture when nobody drew any more.
  if (m_item == Item::Ready) return m_core.setText("vid", "1");
  if (m_item != Item::Opening || m_isAsked || !m_picture->isReady()) return;
  m_isAsked = true;
  const bool startsLater = m_pendingStart > kStartAtZero && std::isfinite(m_pendingStart);
  m_core.setText("start", startsLater ? QByteArray::number(m_pendingStart, 'f', 3) : "none");
  m_core.command({"loadfile", addressOf(m_currentURL), "replace"}, request(Question::Load));
  m_core.setFlag("pause", !m_wantsToPlay);
}

void VideoPlayerManager::refuse() {
  m_core.command({"stop"});
  const auto failLater = [this, item = m_generation] {
    if (item == m_generation) fail({});
  };
  QMetaObject::invokeMethod(this, failLater, Qt::QueuedConnection);
}

void VideoPlayerManager::fail(const QString& text) {
  m_item = Item::None;
  publishStatus();
  setError(text.isEmpty() ? tr("Playback failed") : text);
}

void VideoPlayerManager::toggle() {
  if (m_isAtEnd && !m_wantsToPlay) return; // there is nothing left to play
  m_wantsToPlay = !m_wantsToPlay;
  m_core.setFlag("pause", !m_wantsToPlay);
  if (!m_wantsToPlay) ask(Question::Time, "time-pos");
  publishStatus();
}

void VideoPlayerManager::seek(double to) {
  if (!std::isfinite(to)) return;
  if (m_duration > 0) to = std::min(to, m_duration);
  to = std::max(to, 0.0);
  setCurrentTime(to);
  if (m_item == Item::Opening) m_pendingSeek = to;
  if (m_item != Item::Ready) return;
  m_isSeeking = true;
  m_isAtEnd = false;
  m_core.command({"seek", QByteArray::number(to, 'f', 3), "absolute+exact"},
                 request(Question::Seek));
}

void VideoPlayerManager::setRate(float rate) {
  publish(m_rate, rate, &VideoPlayerManager::rateChanged);
  m_core.setNumber("speed", rate);
}

void VideoPlayerManager::adjustVolume(float delta) {
  setVolume(m_volume + delta);
  if (m_volume > 0) setMuted(false);
}

void VideoPlayerManager::setVolume(float volume) {
  publish(m_volume, std::isnan(volume) ? 0 : std::clamp(volume, 0.0F, 1.0F),
          &VideoPlayerManager::volumeChanged);
  m_core.setNumber("volume", kFullVolume * static_cast<double>(m_volume));
}

void VideoPlayerManager::setMuted(bool muted) {
  publish(m_isMuted, muted, &VideoPlayerManager::isMutedChanged);
  m_core.setFlag("mute", muted);
}

void VideoPlayerManager::setAspect(AspectMode aspect) {
  publish(m_aspect, aspect, &VideoPlayerManager::aspectChanged);
  m_core.setFlag("keepaspect", aspect != AspectMode::Stretch);
  m_core.setNumber("panscan", aspect == AspectMode::Fill ? 1 : 0);
}

void VideoPlayerManager::selectAudio(const AudioOption& option) {
  if (m_item != Item::Ready || !m_audio.options.contains(option)) return;
  setAudio({m_audio.options, option});
  m_core.setText("aid", QByteArray::number(option.id));
  ask(Question::Tracks, "track-list");
}

void VideoPlayerManager::stop() {
  ++m_generation;
  m_item = Item::None;
  m_wantsToPlay = false;
  m_entry.reset();
  m_core.setFlag("pause", true);
  m_core.command({"stop"});
  publish(m_currentURL, QUrl(), &VideoPlayerManager::currentURLChanged);
  publishStatus();
  setCurrentTime(0);
  publish(m_duration, 0.0, &VideoPlayerManager::durationChanged);
}

void VideoPlayerManager::clearError() { setError({}); }

// What the player tells.

void VideoPlayerManager::onReply(std::uint64_t request, const std::optional<QVariant>& result) {
  if (request / kQuestions == m_generation)
    answer(static_cast<Question>(request % kQuestions), result);
}

void VideoPlayerManager::answer(Question question, const std::optional<QVariant>& result) {
  const QVariant value = result.value_or(QVariant());
  switch (question) {
  case Question::Load:
    if (!result) return fail({});
    m_entry = value.toMap().value(QStringLiteral("playlist_entry_id")).toLongLong();
    return;
  case Question::Duration:
    if (value.isValid() && std::isfinite(value.toDouble()))
      publish(m_duration, value.toDouble(), &VideoPlayerManager::durationChanged);
    return;
  case Question::Tracks: return setAudio(audioTracksOf(value));
  case Question::Seek:
    if (!result) m_isSeeking = false;
    return;
  case Question::Time:
    if (!m_isSeeking) tick(value);
    return;
  case Question::End: tick(value); return endOrFail();
  }
}

void VideoPlayerManager::onStarted(std::int64_t entry) { m_isStarted = m_entry == entry; }

void VideoPlayerManager::onLoaded() {
  if (m_item != Item::Opening || !m_isStarted) return;
  m_item = Item::Ready;
  ask(Question::Duration, "duration");
  ask(Question::Tracks, "track-list");
  publishStatus();
  if (m_pendingSeek) seek(*std::exchange(m_pendingSeek, {}));
}

void VideoPlayerManager::onFailed(std::int64_t entry, const QString& text) {
  if (m_entry == entry) fail(text);
}

void VideoPlayerManager::onRestarted() {
  if (m_item != Item::Ready) return;
  m_isSeeking = false;
  ask(Question::Time, "time-pos");
}

void VideoPlayerManager::onProperty(std::uint64_t observer, const QVariant& value) {
  switch (static_cast<Observed>(observer)) {
  case Observed::Time: return moved(value);
  case Observed::CacheEnd: m_cacheEnd = value.toDouble(); return;
  case Observed::CoreIdle: m_isCoreIdle = value.toBool(); return publishStatus();
  case Observed::AtEnd: return setAtEnd(value.toBool());
  }
}

// Comes with every frame.
void VideoPlayerManager::moved(const QVariant& time) {
  if (m_item != Item::Ready || m_isSeeking || m_isAtEnd || !time.isValid()) return;
  if (std::floor(time.toDouble() / kTick) != std::floor(m_currentTime / kTick)) tick(time);
}

void VideoPlayerManager::setAtEnd(bool atEnd) {
  m_isAtEnd = atEnd && m_item == Item::Ready;
  // A film that is paused and sought to its end has not been watched to its end.
  if (m_isAtEnd && m_wantsToPlay) {
    m_wantsToPlay = false;
    m_core.setFlag("pause", true); // it does so itself, but not before it can be sought
    ask(Question::End, "time-pos");
  }
  publishStatus();
}

// To the player a stream that breaks off is one that ends; to the viewer it is not.
void VideoPlayerManager::endOrFail() {
  const QString complaint = m_core.networkComplaint();
  const double missing = m_duration - m_currentTime;
  if (complaint.isEmpty() || missing <= std::max(kMissing, kMissingPart * m_duration)) {
    Q_EMIT finished();
    return;
  }
  m_core.command({"stop"});
  fail(complaint);
}

void VideoPlayerManager::tick(const QVariant& time) {
  const double seconds = time.toDouble();
  if (time.isValid() && std::isfinite(seconds)) setCurrentTime(seconds);
  if (m_item == Item::Ready && m_cacheEnd > 0)
    publish(m_bufferedTo, m_cacheEnd, &VideoPlayerManager::bufferedToChanged);
}

void VideoPlayerManager::ask(Question question, const char* property) {
  m_core.get(property, request(question));
}

std::uint64_t VideoPlayerManager::request(Question question) const {
  return m_generation * kQuestions + static_cast<std::uint64_t>(question);
}

// Publishing.

void VideoPlayerManager::publishStatus() {
  const bool isWaiting =
      m_item == Item::Opening || (m_item == Item::Ready && m_isCoreIdle && !m_isAtEnd);
  publish(m_isPlaying, m_wantsToPlay, &VideoPlayerManager::isPlayingChanged);
  publish(m_isBuffering, m_wantsToPlay && isWaiting, &VideoPlayerManager::isBufferingChanged);
}

void VideoPlayerManager::setCurrentTime(double seconds) {
  m_currentTime = seconds;
  Q_EMIT currentTimeChanged(seconds);
}

void VideoPlayerManager::setError(const QString& error) {
  m_error = error;
  Q_EMIT errorChanged();
}

void VideoPlayerManager::setAudio(AudioTracks audio) {
  m_audio = std::move(audio);
  Q_EMIT audioChanged();
}

} // namespace vellum
