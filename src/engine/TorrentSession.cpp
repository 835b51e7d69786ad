#include "engine/TorrentSession.h"
#include "storage/HeldFile.h"
#include <QDir>

namespace vellum {

namespace {

std::optional<FileRange> rangeOf(const SessionCore& core, std::int64_t file) {
  const auto& meta = core.meta();
  if (!meta || file < 0 || static_cast<std::size_t>(file) >= meta->files.size())
    return std::nullopt;
  const auto index = static_cast<std::size_t>(file);
  return FileRange{meta->offsets[index], meta->files[index].size};
}

std::vector<TorrentFileEntry> filesOf(const SessionCore& core) {
  return core.meta() ? core.meta()->files : std::vector<TorrentFileEntry>{};
}

} // namespace

TorrentSession::TorrentSession(const SessionEnvironment& environment, const Hash20& infoHash,
                               const QStringList& trackers, const QString& title,
                               const QString& directory, std::shared_ptr<const TorrentMeta> meta)
    : m_environment(environment), m_infoHash(infoHash), m_directory(directory),
      m_strand(environment.pool.makeStrand()),
      m_onMetadata(std::make_shared<std::function<void()>>()) {
  SessionCore::Config config{infoHash, SessionCore::makePeerId(environment.random),
                             SessionCore::withDefaults(trackers, environment.defaultTrackers),
                             title, directory};
  m_runner = std::make_shared<SessionRunner>(environment, m_strand, std::move(config), events());
  if (meta) onStrand([&] { m_runner->core().setMeta(std::move(meta), false); });
}

TorrentSession::~TorrentSession() {
  asio::post(m_strand, [runner = m_runner] { runner->stop(); });
}

// The events run on the strand and may outlive this object: they hold what they need themselves.
SessionRunner::Events TorrentSession::events() const {
  using Observer = std::function<void(const SessionSnapshot&)> Observers::*;
  const auto tellMain = [&main = m_environment.main,
                         weak = std::weak_ptr(m_observers)](Observer which) {
    return [&main, weak, which](const SessionSnapshot& snapshot) {
      main.post([weak, which, snapshot] {
        const auto observers = weak.lock();
        if (observers && (*observers).*which) ((*observers).*which)(snapshot);
      });
    };
  };
  const auto metadataArrived = [onMetadata = m_onMetadata, workers = m_environment.pool.workers()] {
    if (*onMetadata) asio::post(workers, *onMetadata);
  };
  return {tellMain(&Observers::onTick), tellMain(&Observers::onProgress), metadataArrived};
}

void TorrentSession::setOnTick(std::function<void(const SessionSnapshot&)> onTick) {
  m_observers->onTick = std::move(onTick);
}

void TorrentSession::setOnProgress(std::function<void(const SessionSnapshot&)> onProgress) {
  m_observers->onProgress = std::move(onProgress);
}

void TorrentSession::setOnMetadata(std::function<void()> onMetadata) {
  asio::post(m_strand,
             [held = m_onMetadata, f = std::move(onMetadata)]() mutable { *held = std::move(f); });
}

void TorrentSession::setUploadLimit(std::function<std::int64_t()> limit) {
  asio::post(m_strand, [runner = m_runner, f = std::move(limit)]() mutable {
    runner->core().setUploadLimit(std::move(f));
  });
}

void TorrentSession::start() {
  asio::post(m_strand, [runner = m_runner] { runner->start(); });
}

void TorrentSession::addPeers(std::vector<PeerAddr> addresses) {
  asio::post(m_strand,
             [runner = m_runner, list = std::move(addresses)] { runner->core().addPeers(list); });
}

void TorrentSession::stop(bool deleteData) {
  onStrand([this] { m_runner->stop(); });
  if (deleteData) removeData();
}

void TorrentSession::removeData() const {
  auto right = std::make_unique<RemovalRight>(SessionStorage::payloadIn(m_directory));
  if (right->isInUse()) return;
  // Nobody who begins with this torrent meanwhile shall find a folder that is half gone.
  const QString aside = m_directory + QStringLiteral(".gone");
  QDir(aside).removeRecursively();
  QDir(QDir().rename(m_directory, aside) ? aside : m_directory).removeRecursively();
  // Freeing some gigabytes takes half a second.
  asio::post(m_environment.pool.workers(), [right = std::move(right)] {});
}

SessionSnapshot TorrentSession::snapshot() {
  return onStrand([this] { return m_runner->core().makeSnapshot(); });
}

QString TorrentSession::title() {
  return onStrand([this] { return m_runner->core().title(); });
}

bool TorrentSession::isStopped() {
  return onStrand([this] { return m_runner->core().isStopped(); });
}

std::vector<TorrentFileEntry> TorrentSession::files() {
  return onStrand([this] { return filesOf(m_runner->core()); });
}

std::optional<FileRange> TorrentSession::fileRange(std::int64_t file) {
  return onStrand([=, this] { return rangeOf(m_runner->core(), file); });
}

bool TorrentSession::hasRange(std::int64_t abs, std::int64_t length) {
  return onStrand([=, this] { return m_runner->core().hasRange(abs, length); });
}

std::optional<ByteVector> TorrentSession::read(std::int64_t abs, std::int64_t length) {
  if (abs < 0 || length < 0) return std::nullopt;
  return onStrand([=, this]() -> std::optional<ByteVector> {
    auto& storage = m_runner->core().storage();
    if (!storage.isOpen()) return std::nullopt;
    ByteVector bytes(static_cast<std::size_t>(length));
    bytes.resize(storage.readSome(abs, bytes));
    return bytes;
  });
}

void TorrentSession::select(std::int64_t file, const std::vector<int>& subtitles) {
  onStrand([&] { m_runner->core().select(file, subtitles); });
}

Flow<StreamSource::Files> TorrentSession::filesAsync() {
  return asyncOn(m_strand, [runner = m_runner] {
    const auto& meta = runner->core().meta();
    return meta ? Files(meta, &meta->files) : Files();
  });
}

Flow<std::optional<FileRange>> TorrentSession::fileRangeAsync(std::int64_t file) {
  return asyncOn(m_strand, [runner = m_runner, file] { return rangeOf(runner->core(), file); });
}

Flow<bool> TorrentSession::hasRangeAsync(std::int64_t abs, std::int64_t length) {
  return asyncOn(m_strand, [=, runner = m_runner] { return runner->core().hasRange(abs, length); });
}

Flow<std::size_t> TorrentSession::readAsync(std::int64_t abs, std::span<std::byte> into) {
  return asyncOn(m_strand,
                 [=, runner = m_runner] { return runner->core().storage().readSome(abs, into); });
}

void TorrentSession::setPlayhead(std::int64_t pos) {
  asio::dispatch(m_strand, [runner = m_runner, pos] { runner->core().setPlayhead(pos); });
}

Flow<bool> TorrentSession::isStoppedAsync() {
  return asyncOn(m_strand, [runner = m_runner] { return runner->core().isStopped(); });
}

} // namespace vellum
