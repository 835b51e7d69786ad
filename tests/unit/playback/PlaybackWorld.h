// Everything around the playback coordinator, played by a test: engine, disk, network, player.
#pragma once
#include "base/IoPool.h"
#include "net/NetError.h"
#include "playback/PlaybackCoordinator.h"
#include "support/ManualClock.h"
#include "world/MainThread.h"
#include <QCoreApplication>
#include <QTemporaryDir>
#include <asio/experimental/channel.hpp>
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;

struct FakeSession final : StreamSession {
  QString key() const override { return hash; }
  QString directory() const override { return folder; }
  SessionSnapshot snapshot() override { return snap; }
  void addPeers(std::vector<PeerAddr> added) override { peers = std::move(added); }
  void select(int file, const std::vector<int>& subtitles) override {
    selected = file;
    selectedSubtitles = subtitles;
  }
  Flow<std::optional<QUrl>> url(int, QString) override { co_return address; }
  Flow<bool> extract(int file, QString destination) override {
    if (complete.contains(file)) extracted.append(destination);
    co_return complete.contains(file);
  }

  QString hash;
  QString folder;
  SessionSnapshot snap;
  std::optional<std::vector<PeerAddr>> peers;
  std::optional<int> selected;
  std::vector<int> selectedSubtitles;
  std::optional<QUrl> address = QUrl(QStringLiteral("http://127.0.0.1:1/key/0/film.mkv"));
  QList<int> complete; // files that can be cut out
  QStringList extracted;
};

// Fixture; the test's own thread is the main thread.
struct PlaybackWorld : testing::Test,
                       MainThread,
                       PlaybackSurroundings,
                       StreamPlayer,
                       ExternalPlayers::Desktop {
  // The engine.
  std::shared_ptr<StreamSession> acquire(const Hash20& hash, const QStringList& trackers,
                                         const QString& title,
                                         std::shared_ptr<const TorrentMeta> meta) override {
    events +=
        QStringLiteral("acquire %1 %2 %3").arg(toHex(hash).first(4), title).arg(trackers.size());
    session->hash = toHex(hash);
    if (meta) session->snap.meta = meta;
    return session;
  }
  void release(StreamSession&) override { events += QStringLiteral("release"); }
  // Settings, disk, network, time.
  QString preferredQuality() const override { return QStringLiteral("1080p"); }
  std::int64_t freeSpace() const override { return freeBytes; }
  using Torrent = std::optional<TorrentMeta::TorrentFile>;
  Flow<Torrent> fetchTorrent(QUrl url, std::chrono::seconds timeout) override {
    events += QStringLiteral("fetch %1 %2").arg(url.host()).arg(timeout.count());
    if (fetchError) throw NetError(*fetchError);
    co_return TorrentMeta::parseTorrentFile(asBytes(torrentFile));
  }
  Flow<> sleep(std::chrono::milliseconds duration) override {
    const auto alarm = std::make_shared<Alarm>(main.executor(), 1);
    sleepers.emplace_back(clock.now() + duration, alarm);
    co_await alarm->async_receive(asio::use_awaitable);
  }
  TimePoint now() const override { return clock.now(); }
  double secondsSince2001() const override { return 1000; }
  // The player.
  void load(const QUrl& url, double startAt) override {
    events += QStringLiteral("load %1 %2").arg(url.path().section(u'/', -1)).arg(startAt);
    time = 0;
    coordinator->playerTime(0);
  }
  void stop() override {
    events += QStringLiteral("stop");
    time = 0;
    if (coordinator) coordinator->playerTime(0);
  }
  void clearError() override { events += QStringLiteral("clearError"); }
  bool isBuffering() const override { return buffering; }
  double currentTime() const override { return time; }
  double duration() const override { return length; }
  // The desktop.
  bool isExecutable(const QString& path) const override { return path == executable; }
  bool launch(const QString& program, const QStringList& arguments) override {
    events += program + u' ' + arguments.join(u' ');
    return launches;
  }
  void terminate() override { ++terminated; }
  QString findProgram(const QString&) const override { return onPath; }
  bool openInVlc(const QUrl& url) override {
    if (hasVlc) events += QStringLiteral("vlc ") + url.toString();
    return hasVlc;
  }

  // Lets what can run run, then lets time pass and wakes who slept.
  void turn() { QCoreApplication::processEvents(); }
  void pass(double seconds) {
    clock.advance(seconds);
    for (const auto& [due, alarm] : std::exchange(sleepers, {}))
      if (due <= clock.now())
        alarm->try_send(asio::error_code(), 0);
      else
        sleepers.emplace_back(due, alarm);
    turn();
  }
  QStringList takeEvents() { return std::exchange(events, {}); }
  const StreamState& stream() const { return *coordinator->stream(); }
  QString failureText() const {
    return coordinator->stream() && stream().failure ? stream().failure->text() : QString();
  }
  static std::shared_ptr<const TorrentMeta> meta(const std::vector<TorrentFileEntry>& files) {
    auto made = std::make_shared<TorrentMeta>();
    made->files = files;
    return made;
  }
  static TorrentResult result(const char* hash, const char* title,
                              std::optional<qint64> seeders = 1) {
    TorrentResult made;
    made.infoHash = QString(40, QLatin1Char(*hash));
    made.id = *made.infoHash;
    made.title = QLatin1String(title);
    made.seeders = seeders;
    return made;
  }

  ManualClock clock;
  IoPool pool;
  QTemporaryDir folder;
  using Alarm = asio::experimental::channel<void(asio::error_code, int)>;
  std::vector<std::pair<TimePoint, std::shared_ptr<Alarm>>> sleepers;
  QStringList events;
  std::shared_ptr<FakeSession> session = std::make_shared<FakeSession>();
  std::int64_t freeBytes = INT64_MAX / 2;
  std::optional<NetError> fetchError;
  QByteArray torrentFile;
  bool buffering = false;
  double time = 0;
  double length = 0;
  QString executable;
  QString onPath;
  bool launches = true;
  bool hasVlc = false;
  int terminated = 0; // times that an external player was to end

  LibraryStore library{folder.filePath(QStringLiteral("history.json"))};
  SubtitleManager subtitles{main, pool, [](QUrl, std::chrono::milliseconds) -> Flow<QByteArray> {
                              co_return QByteArray();
                            }};
  ExternalPlayers players{*this};
  std::optional<PlaybackCoordinator> coordinator{
      std::in_place, main.executor(),
      PlaybackCoordinator::Services{*this, *this, subtitles, library, players}};
  int presented = 0;

  PlaybackWorld() {
    coordinator->setPresentPlayer([this] { ++presented; });
    session->folder = folder.path();
  }
};

} // namespace vellum::test
