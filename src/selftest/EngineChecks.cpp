#include "engine/TorrentSession.h"
#include "selftest/Sections.h"
#include "selftest/TestSeeder.h"
#include "streaming/ExtractFile.h"
#include "streaming/VideoFileSelector.h"
#include <QDir>
#include <QFile>
#include <QUuid>

namespace vellum::selftest {

namespace {

constexpr qint64 kFilm = 0x1800000;                // bytes
constexpr qint64 kPieceLength = 0x40000;           // bytes
constexpr qint64 kMostDownloaded = kFilm + 300000; // bytes
constexpr std::chrono::seconds kTimeout{30};

QByteArray subtitle() { return "1\n00:00:01,000 --> 00:00:02,000\nHello\n\n"; }

QByteArray noise(qint64 size) {
  QByteArray bytes(size, Qt::Uninitialized);
  std::uint64_t state = 42;
  for (char& byte : bytes) {
    state = state * 0x5851f42d4c957f2dULL + 0x14057b7ef767814fULL;
    byte = char(state >> 33);
  }
  return bytes;
}

TestTorrent fixture(qint64 film, qint64 sample) {
  return TestTorrent::make(text("TestFilm"),
                           {{text("TestFilm/movie.mp4"), noise(film)},
                            {text("TestFilm/Sample/sample.mp4"), QByteArray(sample, 7)},
                            {text("TestFilm/movie.en.srt"), subtitle()}},
                           kPieceLength);
}

// A folder of the section's own, gone with it whatever happened.
struct Folder {
  ~Folder() {
    for (const char* name : {"", ".gone"}) QDir(path + text(name)).removeRecursively();
  }
  const QString path = QDir::temp().filePath(text("vellum-selftest-") +
                                             QUuid::createUuid().toString(QUuid::WithoutBraces));
};

QString detail(const HttpResponse& answer) {
  return text("code %1, %2 bytes").arg(answer.status).arg(answer.body.size());
}

// However the section ends, nothing runs on and nobody is served from then on.
struct Stop {
  ~Stop() {
    session.stop(true);
    server.unregisterSource(session.key());
  }
  TorrentSession& session;
  LocalStreamServer& server;
};

std::shared_ptr<TorrentSession> startSession(Runtime& runtime, const TestTorrent& torrent,
                                             const QString& folder, std::uint16_t port) {
  const auto session = std::make_shared<TorrentSession>(
      runtime.sessionEnvironment({}), torrent.infoHash, QStringList(), QString(), folder, nullptr);
  session->start();
  session->addPeers({{text("127.0.0.1"), port}});
  return session;
}

// Whether a stream leaves alone a sample that shares no piece with another file. The other fixture
// cannot tell: its sample's only piece is the subtitle's too.
Flow<bool> leavesOwnPiecesOfSample(Runtime& runtime) {
  constexpr qint64 kSize = 4 * kPieceLength; // bytes, of film and sample
  const TestTorrent torrent = fixture(kSize, kSize);
  const Folder folder;
  TestSeeder seeder(runtime.pool, torrent);
  const auto port = seeder.start();
  if (!port) co_return false;
  const auto session = startSession(runtime, torrent, folder.path, *port);
  const Stop stop{*session, runtime.server};
  if (!co_await poll(runtime, 100, [&] { return session->snapshot().hasMetadata(); }))
    co_return false;
  session->select(0, VideoFileSelector::subtitles(session->snapshot().files()));
  const bool complete = co_await poll(runtime, 100, [&] { return session->snapshot().complete; });
  co_return complete && session->snapshot().downloaded < kSize + kPieceLength;
}

struct RangeCheck {
  const char *range, *name, *failureLabel;
  qint64 from, length; // of the film
};

Flow<> checkRange(CheckList& checks, Runtime& runtime, QUrl url, QByteArray payload,
                  RangeCheck range) {
  HttpResponse answer;
  try {
    answer = co_await runtime.http.transport(kTimeout, range.range)(url);
  } catch (const std::exception& error) {
    if (isCancellation(error)) throw;
    checks.check(false, text(range.failureLabel), QString::fromUtf8(error.what()));
    co_return;
  }
  checks.check(answer.status == 206 && answer.body == payload.mid(range.from, range.length),
               text(range.name), detail(answer));
}

Flow<> checkServer(CheckList& checks, Runtime& runtime, std::shared_ptr<TorrentSession> session,
                   QByteArray payload) {
  const auto url = co_await runtime.server.url(session, 0, text("movie.mp4"));
  if (!url) {
    checks.check(false, text("Stream server URL"));
    co_return;
  }
  checks.check(url->host() == text("127.0.0.1"), text("Stream URL is loopback-only"), url->host());
  for (const RangeCheck& range :
       {RangeCheck{"bytes=0-99999", "Server: range from start → 206 with correct bytes",
                   "Server: range from start", 0, 100000},
        RangeCheck{"bytes=23592960-23892959",
                   "Server: seek far ahead → pieces reprioritised and served correctly",
                   "Server: seek", 23592960, 300000},
        RangeCheck{"bytes=-1000", "Server: suffix range (tail/moov probe)", "Server: suffix range",
                   kFilm - 1000, 1000}})
    co_await checkRange(checks, runtime, *url, payload, range);
}

Flow<> checkSubtitle(CheckList& checks, Runtime& runtime, std::shared_ptr<TorrentSession> session) {
  co_await poll(runtime, 100, [&] { return session->snapshot().complete; });
  const QString path = session->directory() + text("/subs/movie.en.srt");
  const bool extracted =
      co_await flowOn(runtime.pool.makeWorkerStrand(), extractFile(session, 2, path));
  QFile file(path);
  checks.check(extracted && file.open(QIODevice::ReadOnly) && file.readAll() == subtitle(),
               text("Engine: subtitle file downloaded fully and extracted for the player"));
}

} // namespace

Flow<> engineEndToEnd(CheckList& checks, Runtime& runtime) {
  const TestTorrent torrent = fixture(kFilm, 200000);
  const Folder folder;
  TestSeeder seeder(runtime.pool, torrent);
  const auto port = seeder.start();
  if (!port) {
    checks.check(false, text("Seeder started"));
    co_return;
  }
  const auto session = startSession(runtime, torrent, folder.path, *port);
  const Stop stop{*session, runtime.server};

  co_await poll(runtime, 100, [&] { return session->snapshot().hasMetadata(); });
  const SessionSnapshot known = session->snapshot();
  checks.check(known.hasMetadata() && known.files().size() == 3,
               text("Engine: metadata fetched from peer (ut_metadata, hash verified)"),
               text("%1 files").arg(known.files().size()));
  if (!known.hasMetadata()) co_return;

  const VideoFileSelector::Outcome main{VideoFileSelector::Outcome::Kind::Single, {0}};
  checks.check(VideoFileSelector::select(known.files()) == main,
               text("Engine: auto-selected main video in fetched torrent"));
  session->select(0, VideoFileSelector::subtitles(known.files()));
  const bool ready = co_await poll(runtime, 150, [&] { return session->snapshot().streamReady; });
  checks.check(ready, text("Engine: opening window + tail pieces verified; ready to play"));
  const auto downloaded = session->snapshot().downloaded;
  checks.check(downloaded < kMostDownloaded && co_await leavesOwnPiecesOfSample(runtime),
               text("Engine: sample file never requested"), text("%1 bytes").arg(downloaded));

  co_await checkServer(checks, runtime, session, torrent.payload);
  co_await checkSubtitle(checks, runtime, session);
  const bool existed = QDir(folder.path).exists();
  checks.check(existed, text("Cache exists while streaming"));
  session->stop(true);
  runtime.server.unregisterSource(session->key());
  checks.check(existed && session->isStopped() && !QDir(folder.path).exists(),
               text("Cancel: session stopped and cache cleaned"));
  seeder.cancel();
}

} // namespace vellum::selftest
