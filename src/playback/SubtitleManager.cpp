#include "playback/SubtitleManager.h"
#include "net/NetError.h"
#include <QFile>
#include <QFileInfo>
#include <algorithm>

namespace vellum {

namespace {

QByteArray contents(const QString& path) {
  const QFileInfo info(path);
  // To open a pipe would be to wait for whoever writes into it.
  if (info.exists() && !info.isFile())
    throw DescribedError(SubtitleManager::tr("This is not a file."));
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) throw DescribedError(file.errorString());
  if (file.size() > SubtitleManager::kLargestFile) throw NetError::tooLarge();
  QByteArray bytes = file.read(file.size());
  if (file.error() != QFile::NoError) throw DescribedError(file.errorString());
  return bytes;
}

bool isSubStation(const QUrl& url) {
  const QString extension = QFileInfo(url.fileName(QUrl::FullyDecoded)).suffix().toLower();
  return extension == u"ass" || extension == u"ssa";
}

} // namespace

SubtitleManager::SubtitleManager(MainLoop& main, IoPool& pool, FetchData fetch)
    : m_pool(pool), m_fetch(std::move(fetch)), m_flows(main.executor()) {}

SubtitleManager::~SubtitleManager() { m_flows.cancelAll(); }

void SubtitleManager::reset(SubtitleTracks tracks) {
  m_tracks = std::move(tracks);
  select(std::nullopt);
  Q_EMIT tracksChanged();
}

void SubtitleManager::add(const SubtitleTrack& track) {
  m_tracks.push_back(track);
  Q_EMIT tracksChanged();
}

void SubtitleManager::addLocal(const QUrl& url) {
  const SubtitleTrack track{url.fileName(QUrl::FullyDecoded), url};
  if (std::find(m_tracks.begin(), m_tracks.end(), track) == m_tracks.end()) add(track);
  select(track);
}

void SubtitleManager::select(const std::optional<SubtitleTrack>& track) {
  m_flows.cancelAll();
  m_wanted.reset();
  replaceTimeline(std::make_shared<SubtitleTimeline>());
  m_selected = track;
  m_currentText.reset();
  m_error.reset();
  if (track) {
    m_wanted = std::make_shared<bool>(true);
    m_flows.spawn(load(m_wanted, read(track->url, m_fetch), m_pool.makeWorkerStrand(),
                       [this, name = track->name](const Loaded& loaded) { show(loaded, name); }));
  }
  Q_EMIT selectedChanged();
  Q_EMIT currentTextChanged();
  Q_EMIT errorChanged();
}

void SubtitleManager::update(double time) {
  const SubtitleCue* cue = m_timeline->at(time);
  if (cue == nullptr ? !m_currentText : m_currentText == cue->text) return;
  m_currentText = cue == nullptr ? std::nullopt : std::optional(cue->text);
  Q_EMIT currentTextChanged();
}

Flow<SubtitleManager::Timeline> SubtitleManager::read(QUrl url, FetchData fetch) {
  const QByteArray bytes =
      url.isLocalFile() ? contents(url.toLocalFile()) : co_await fetch(url, kFetchTimeout);
  if (bytes.size() > kLargestFile) throw NetError::tooLarge();
  const QString text = SubtitleParser::decode(bytes);
  co_return std::make_shared<SubtitleTimeline>(isSubStation(url) ? SubtitleParser::parseASS(text)
                                                                 : SubtitleParser::parse(text));
}

Flow<> SubtitleManager::load(std::weak_ptr<bool> wanted, Flow<Timeline> timeline,
                             WorkerStrand strand, std::function<void(Loaded)> done) {
  Loaded loaded;
  try {
    loaded.timeline = co_await flowOn(strand, std::move(timeline));
  } catch (const std::exception& error) {
    loaded.failure = QString::fromUtf8(error.what());
  }
  if (!wanted.expired()) done(std::move(loaded));
}

void SubtitleManager::show(const Loaded& loaded, const QString& name) {
  if (loaded.timeline) replaceTimeline(loaded.timeline);
  if (!loaded.timeline)
    m_error = tr("Subtitles failed: %1").arg(loaded.failure);
  else if (loaded.timeline->cues().empty())
    m_error = tr("No subtitle cues found in %1").arg(name);
  if (m_error) Q_EMIT errorChanged();
}

void SubtitleManager::replaceTimeline(Timeline timeline) {
  // To free the texts of a large file takes longer than a frame.
  asio::post(m_pool.workers(), [old = std::exchange(m_timeline, std::move(timeline))] {});
}

} // namespace vellum
