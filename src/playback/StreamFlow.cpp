// The way from a result to a picture, as one coroutine. Nothing here is touched any more once the
// flow has been cancelled: every wait ends by an exception then.
#include "formats/TorrentMetadata.h"
#include "net/NetError.h"
#include "playback/PlaybackCoordinator.h"
#include "playback/StreamRules.h"
#include "streaming/VideoFileSelector.h"
#include <QFileInfo>
#include <algorithm>

namespace vellum {

namespace {

constexpr std::chrono::milliseconds kPoll{400};
constexpr std::chrono::seconds kMonitorPeriod{1};

// What was answered just before a cancellation may still resume the flow.
Flow<> throwIfCancelled() {
  const auto state = co_await asio::this_coro::cancellation_state;
  if (state.cancelled() != asio::cancellation_type::none)
    throw asio::system_error(asio::error::operation_aborted);
}

bool isSubtitleFile(const QString& path) {
  const QString extension = QFileInfo(path).suffix().toLower();
  return QStringList{QStringLiteral("srt"), QStringLiteral("vtt"), QStringLiteral("ass"),
                     QStringLiteral("ssa")}
      .contains(extension);
}

} // namespace

struct PlaybackCoordinator::Failed {
  StreamFailure failure;
};

struct PlaybackCoordinator::Source {
  Hash20 hash{};
  QStringList trackers;
  std::shared_ptr<const TorrentMeta> meta; // of a .torrent file only
};

Flow<> PlaybackCoordinator::runStream(TorrentResult result) {
  try {
    // A task of its own: whoever pressed Play has finished before it begins.
    co_await asio::post(m_main, asio::use_awaitable);
    co_await throwIfCancelled();
    co_await stream(std::move(result));
  } catch (const Failed& failed) {
    fail(failed.failure);
  } catch (const asio::system_error&) {
    co_return; // whoever cancelled the flow has cleaned up
  }
}

Flow<> PlaybackCoordinator::stream(TorrentResult result) {
  m_lastRequest = result;
  const Source source = co_await sourceOf(result);
  PlaybackSurroundings& world = m_services.surroundings;
  if (const auto failure = checkFreeAtStart(world.freeSpace())) throw Failed{*failure};
  const auto session = world.acquire(source.hash, source.trackers, result.title, source.meta);
  m_activeSession = session;
  if (result.magnet && queryItems(*result.magnet)) session->addPeers(directPeers(*result.magnet));

  co_await waitForMetadata(*session);
  const int file = co_await chooseFile(*session);
  const auto files = session->snapshot().files();
  const std::vector<int> subtitles = VideoFileSelector::subtitles(files);
  std::int64_t needed = files[std::size_t(file)].size;
  for (const int index : subtitles) needed += files[std::size_t(index)].size;
  if (const auto failure = checkFreeFor(needed, world.freeSpace())) throw Failed{*failure};
  session->select(file, subtitles);
  changeStream([](StreamState& stream) { stream.stage = StreamStage::Buffering; });

  co_await waitForStart(*session);
  const QString path = files[std::size_t(file)].path;
  const auto url = co_await session->url(file, path);
  co_await throwIfCancelled();
  if (!url) throw Failed{StreamFailure::noServer()};
  handOver(result, *session, path, *url);
  co_await monitor(*session, subtitles);
}

Flow<PlaybackCoordinator::Source> PlaybackCoordinator::sourceOf(const TorrentResult& result) {
  if (result.magnet)
    if (const auto info = TorrentMetadata::parseMagnet(*result.magnet))
      if (const auto hash = hash20FromHex(info->infoHash))
        co_return Source{*hash, info->trackers, {}};
  if (result.infoHash)
    if (const auto hash = hash20FromHex(*result.infoHash)) co_return Source{*hash, {}, {}};
  if (!result.torrentURL) throw Failed{StreamFailure::nothingToStream()};
  std::optional<TorrentMeta::TorrentFile> torrent;
  try {
    torrent =
        co_await m_services.surroundings.fetchTorrent(*result.torrentURL, kTorrentFetchTimeout);
  } catch (const DescribedError& error) {
    throw Failed{StreamFailure::downloadFailed(error.errorDescription())};
  }
  co_await throwIfCancelled();
  if (!torrent) throw Failed{StreamFailure::nothingToStream()};
  co_return Source{torrent->hash, torrent->trackers,
                   std::make_shared<const TorrentMeta>(std::move(torrent->meta))};
}

Flow<> PlaybackCoordinator::waitForMetadata(StreamSession& session) {
  const TimePoint began = m_services.surroundings.now();
  for (;;) {
    co_await throwIfCancelled();
    const SessionSnapshot snapshot = session.snapshot();
    changeStream([&](StreamState& stream) {
      stream.stage = snapshot.hasMetadata() ? StreamStage::Selecting
                     : snapshot.peers > 0   ? StreamStage::Metadata
                                            : StreamStage::Connecting;
      stream.peers = snapshot.peers;
      stream.down = snapshot.downRate;
      stream.up = snapshot.upRate;
    });
    if (snapshot.hasMetadata()) co_return;
    if (secondsBetween(began, m_services.surroundings.now()) > kMetadataLimit)
      throw Failed{{StreamFailure::Kind::NoMetadata, {}}};
    co_await m_services.surroundings.sleep(kPoll);
  }
}

Flow<int> PlaybackCoordinator::chooseFile(StreamSession& session) {
  const auto files = session.snapshot().files();
  const auto outcome = VideoFileSelector::select(files);
  using Kind = VideoFileSelector::Outcome::Kind;
  if (outcome.kind == Kind::None) throw Failed{{StreamFailure::Kind::NoVideo, {}}};
  if (outcome.kind == Kind::Single) co_return outcome.files.front();
  std::vector<StreamChoice> choices;
  for (const int index : outcome.files)
    choices.push_back({index, files[std::size_t(index)].path, files[std::size_t(index)].size});
  const auto answer = co_await ask(choices);
  co_await throwIfCancelled();
  changeStream([](StreamState& stream) { stream.choices.clear(); });
  const bool isFile = answer && *answer >= 0 && std::size_t(*answer) < files.size();
  if (!isFile) throw asio::system_error(asio::error::operation_aborted);
  co_return *answer;
}

Flow<std::optional<int>> PlaybackCoordinator::ask(const std::vector<StreamChoice>& choices) {
  const auto initiate = [&](auto handler) {
    const auto held = std::make_shared<decltype(handler)>(std::move(handler));
    m_pickContinuation = [held, main = m_main](std::optional<int> index) {
      asio::post(main, [held, index] { std::move (*held)(index); });
    };
    // Only now: whoever is told may answer at once.
    changeStream([&](StreamState& stream) { stream.choices = choices; });
  };
  co_return co_await asio::async_initiate<const asio::use_awaitable_t<>&, void(std::optional<int>)>(
      initiate, asio::use_awaitable);
}

Flow<> PlaybackCoordinator::waitForStart(StreamSession& session) {
  StallWatch stall(m_services.surroundings.now());
  for (;;) {
    co_await throwIfCancelled();
    const SessionSnapshot snapshot = session.snapshot();
    changeStream([&](StreamState& stream) {
      stream.progress = snapshot.streamProgress;
      stream.peers = snapshot.peers;
      stream.down = snapshot.downRate;
      stream.up = snapshot.upRate;
      stream.uploaded = snapshot.uploaded;
    });
    if (snapshot.streamReady) co_return;
    if (stall.hasStalled(snapshot, m_services.surroundings.now()))
      throw Failed{{StreamFailure::Kind::Stalled, {}}};
    co_await m_services.surroundings.sleep(kPoll);
  }
}

void PlaybackCoordinator::handOver(const TorrentResult& result, const StreamSession& session,
                                   const QString& path, const QUrl& url) {
  m_activeStreamURL = url;
  const QString hash = session.key();
  HistoryEntry entry;
  entry.itemID = hash;
  entry.key = hash + u'|' + path;
  entry.title = result.title;
  entry.source = result.magnet.value_or(makeMagnet(hash, result.title));
  begin(entry, url, std::nullopt, {});
  if (m_activeRowKey) setRowState(*m_activeRowKey, {RowState::Kind::Playing, {}});
  changeStream([](StreamState& stream) { stream.stage = StreamStage::Playing; });
  m_presentPlayer();
}

Flow<> PlaybackCoordinator::monitor(StreamSession& session, std::vector<int> subtitles) {
  NoticeRule rule;
  bool firstSelected = false;
  for (;;) {
    co_await m_services.surroundings.sleep(kMonitorPeriod);
    co_await throwIfCancelled();
    const SessionSnapshot snapshot = session.snapshot();
    const auto notice =
        rule.notice(m_services.player.isBuffering(), snapshot, m_services.surroundings.now());
    changeStream([&](StreamState& stream) {
      stream.peers = snapshot.peers;
      stream.down = snapshot.downRate;
      stream.up = snapshot.upRate;
      stream.uploaded = snapshot.uploaded;
      stream.notice = notice;
    });
    co_await takeSubtitles(session, subtitles, firstSelected);
  }
}

Flow<> PlaybackCoordinator::takeSubtitles(StreamSession& session, std::vector<int>& pending,
                                          bool& firstSelected) {
  const auto files = session.snapshot().files();
  const std::vector<int> asked = pending;
  for (const int index : asked) {
    const QString name = files[std::size_t(index)].path.section(u'/', -1);
    const QString path = session.directory() + QStringLiteral("/subs/") + name;
    const bool wasWritten = co_await session.extract(index, path);
    co_await throwIfCancelled();
    if (!wasWritten) continue;
    std::erase(pending, index);
    if (!isSubtitleFile(path)) continue;
    const SubtitleTrack track{name, QUrl::fromLocalFile(path)};
    const SubtitleTracks& tracks = m_services.subtitles.tracks();
    if (std::find(tracks.begin(), tracks.end(), track) == tracks.end())
      m_services.subtitles.add(track);
    if (!std::exchange(firstSelected, true)) m_services.subtitles.select(track);
  }
}

} // namespace vellum
