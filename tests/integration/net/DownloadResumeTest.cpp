#include "DownloadTest.h"
#include "world/FileAnswer.h"
#include <csignal>
#include <mutex>
#include <random>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vellum::test {

using namespace world;
namespace {

using Answer = ScriptedServer::Answer;

constexpr qint64 kSize = 1'000'000;
constexpr qint64 kHalf = 400'000;

struct DownloadResumeTest : DownloadTest {
  // A first answer of which only the beginning comes.
  Answer halfAnAnswer(const QByteArray& headers) const {
    return {"HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(kSize) + "\r\n" + headers +
                "\r\n",
            film.left(kHalf), 1, 0ms, true};
  }
  // Pauses the newest row once the half is there.
  void pauseAtHalf() {
    ASSERT_TRUE(turnUntil([&] { return row().received == kHalf; }));
    EXPECT_EQ(row().expected, kSize);
    manager->pause(row().id);
    ASSERT_EQ(ending(), "paused");
  }

  const std::shared_ptr<const Payload> payload = Payload::fromBytes(pseudoRandomBytes(kSize, 1));
  const QByteArray film = toByteArray(payload->bytes());
  const QByteArray another = toByteArray(pseudoRandomBytes(kSize, 2));
};

TEST_F(DownloadResumeTest, GoesOnOnlyWhereTheServerStillHasTheSameFile) {
  const QByteArray strong = "ETag: \"a\"\r\n";
  const QByteArray range = "Content-Range: bytes 400000-999999/1000000\r\n";
  const QByteArray rest = film.mid(kHalf);
  struct Case {
    const char* name;
    QByteArray headers; // of the first answer
    QByteArray ifRange; // of the second request; empty: it asks for the whole
    Answer second;
    QByteArray saved; // empty: it fails
    Answer third = {};
  };
  for (const auto& [name, headers, ifRange, second, saved, third] : {
           Case{"goes on", strong, "\"a\"", ScriptedServer::reply(206, rest, strong + range), film},
           Case{"by date",
                "ETag: W/\"a\"\r\nLast-Modified: Sun, 13 Sep 2020 12:26:40 GMT\r\n"
                "Date: Sun, 13 Sep 2020 12:26:41 GMT\r\n",
                "Sun, 13 Sep 2020 12:26:40 GMT", ScriptedServer::reply(206, rest, range), film},
           Case{"weak tag", "ETag: W/\"a\"\r\n", "", ScriptedServer::reply(200, another), another},
           Case{"no tag", "", "", ScriptedServer::reply(200, another), another},
           Case{"changed", strong, "\"a\"", ScriptedServer::reply(200, another), another},
           Case{"shorter now", strong, "\"a\"", ScriptedServer::reply(200, "short"), "short"},
           Case{"416", strong, "\"a\"", ScriptedServer::reply(416, "no"), another,
                ScriptedServer::reply(200, another)},
           Case{"416 twice",
                strong,
                "\"a\"",
                ScriptedServer::reply(416, "no"),
                {},
                ScriptedServer::reply(416, "no")},
           Case{"another part", strong, "\"a\"",
                ScriptedServer::reply(206, rest, "Content-Range: bytes 400001-999999/1000000\r\n"),
                another, ScriptedServer::reply(200, another)},
           Case{"of a longer file", strong, "\"a\"",
                ScriptedServer::reply(206, rest, "Content-Range: bytes 400000-999999/1000001\r\n"),
                another, ScriptedServer::reply(200, another)},
           Case{"less than the rest",
                strong,
                "\"a\"",
                ScriptedServer::reply(206, film.mid(kHalf, 1000),
                                      "Content-Range: bytes 400000-400999/1000000\r\n"),
                {}},
           Case{"gone", strong, "\"a\"", ScriptedServer::reply(404, "gone"), {}},
       }) {
    std::mutex mutex;
    std::vector<RequestHead> heard; // under the mutex
    ScriptedServer server([&](const QByteArray& request) {
      const std::lock_guard lock(mutex);
      heard.push_back(RequestHead::parse(request));
      return heard.size() == 1 ? halfAnAnswer(headers) : heard.size() == 2 ? second : third;
    });
    start(server.url(QStringLiteral("/film.mp4")));
    ASSERT_NO_FATAL_FAILURE(pauseAtHalf()) << name;
    EXPECT_EQ(hidden().isEmpty(), ifRange.isEmpty()) << name;
    manager->resume(row().id);
    EXPECT_EQ(ending() == "finished", !saved.isEmpty()) << name << ": " << ending();
    EXPECT_TRUE(contents() == (saved.isEmpty() ? "(none)" : saved)) << name;
    const std::lock_guard lock(mutex);
    const auto asked = heard;
    EXPECT_EQ(asked.at(1).header("Range"), ifRange.isEmpty() ? "" : "bytes=400000-") << name;
    EXPECT_EQ(asked.at(1).header("If-Range"), ifRange) << name;
    EXPECT_EQ(asked.size(), third.head.isEmpty() ? 2 : 3) << name;
    if (asked.size() == 3) EXPECT_EQ(asked[2].header("Range"), "") << name;
    EXPECT_TRUE(partsGo()) << name;
    QFile::remove(folder + QStringLiteral("/film.mp4"));
    manager->clearFinished();
  }
}

TEST_F(DownloadResumeTest, PausedAtAnyMomentItComesOutTheSame) {
  ScriptedServer server([&](const QByteArray& request) {
    return fileAnswer(RequestHead::parse(request), *payload, "video/mp4");
  });
  std::mt19937 random(7);
  for (int round = 0; round < 40; ++round) {
    const QUuid id = start(server.url(QStringLiteral("/film.mp4")));
    for (int i = 0; i < 4; ++i) {
      const auto until =
          std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 4000);
      turnUntil([&] { return std::chrono::steady_clock::now() > until; });
      manager->pause(id);
      if (random() % 2 == 0) turnUntil([&] { return row().state.kind != Kind::Downloading; }, 10s);
      if (row().state.kind != Kind::Finished) manager->resume(id);
    }
    ASSERT_EQ(ending(), "finished") << round;
    ASSERT_TRUE(contents() == film) << round;
    ASSERT_EQ(visible().size(), 1) << round;
    QFile::remove(folder + QStringLiteral("/film.mp4"));
  }
  EXPECT_TRUE(partsGo());
}

TEST_F(DownloadResumeTest, CancelledAtAnyMomentThereIsAllOrNothing) {
  ScriptedServer server([&](const QByteArray& request) {
    return fileAnswer(RequestHead::parse(request), *payload, "video/mp4");
  });
  std::mt19937 random(11);
  int whole = 0;
  constexpr int kRounds = 60;
  for (int round = 0; round < kRounds; ++round) {
    const QUuid id = start(server.url(QStringLiteral("/film.mp4")));
    const auto until =
        std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 9000);
    turnUntil([&] { return std::chrono::steady_clock::now() > until; });
    if (round % 3 == 1) manager->pause(id);
    if (round % 3 < 2) manager->cancel(id);
    stopManager();
    ASSERT_TRUE(hidden().isEmpty()) << round;
    const QByteArray there = contents();
    ASSERT_TRUE(there == "(none)" || there == film) << round;
    whole += there == film ? 1 : 0;
    QFile::remove(folder + QStringLiteral("/film.mp4"));
    ASSERT_TRUE(visible().isEmpty()) << round;
    startManager();
  }
  EXPECT_LT(whole, kRounds);
}

TEST_F(DownloadResumeTest, AServerThatGoesAndADiskThatIsFullFailTheRow) {
  std::optional<ScriptedServer> server(
      std::in_place, [&](const QByteArray&) { return halfAnAnswer("ETag: \"a\"\r\n"); });
  start(server->url(QStringLiteral("/film.mp4")));
  ASSERT_TRUE(receives());
  server.reset();
  EXPECT_EQ(ending(), "The server ended the transfer early");

  server.emplace([&](const QByteArray&) { return ScriptedServer::reply(200, film); });
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
  const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit full{kHalf, limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
  start(server->url(QStringLiteral("/film.mp4")));
  const std::string how = ending();
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  std::signal(SIGXFSZ, oldHandler);
  EXPECT_EQ(how, "File too large");
  EXPECT_TRUE(partsGo());
  EXPECT_TRUE(visible().isEmpty());
}

// A program that dies with a transfer under way, beside others that live or never were ours.
TEST(DownloadLeftoversTest, WhatADeadProgramLeftGoesAndNothingElse) {
  const QTemporaryDir folder;
  std::error_code error;
  const auto ours = PartFile::create(folder.path(), error);
  ASSERT_TRUE(ours && !ours->append(std::string_view("alive")));
  const QString link =
      folder.path() + QStringLiteral("/.vellum-00000000-0000-0000-0000-000000000001.part");
  ASSERT_TRUE(QFile::link(QStringLiteral("/etc/hostname"), link));
  for (const char* name : {".vellum-mine.part", ".vellum-{00000000-0000-0000-0000-0000000000}.part",
                           "film.part", ".vellum-00000000-0000-0000-0000-000000000002.parts"}) {
    QFile file(folder.path() + u'/' + QLatin1String(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }
  const auto files = [&] {
    return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::System).size();
  };
  std::array<int, 2> ready{};
  ASSERT_EQ(::pipe(ready.data()), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    const auto theirs = PartFile::create(folder.path(), error);
    if (theirs && !theirs->append(std::string_view("dead soon"))) (void)!::write(ready[1], "x", 1);
    for (;;) ::pause();
  }
  char byte = 0;
  ASSERT_EQ(::read(ready[0], &byte, 1), 1);
  EXPECT_EQ(files(), 7);
  PartFile::clearLeftovers(folder.path());
  EXPECT_EQ(files(), 7) << "both programs live";
  ::kill(child, SIGKILL);
  ASSERT_EQ(::waitpid(child, nullptr, 0), child);
  PartFile::clearLeftovers(folder.path());
  EXPECT_EQ(files(), 6);
  EXPECT_TRUE(QFileInfo(link).isSymLink());
  for (const int end : ready) ::close(end);

  ASSERT_FALSE(ours->moveTo(folder.path() + QStringLiteral("/film.mp4")));
  EXPECT_EQ(ours->moveTo(folder.path() + QStringLiteral("/film.part")),
            std::errc::no_such_file_or_directory);
  EXPECT_EQ(PartFile::renameToFreeName(folder.path() + QStringLiteral("/film.mp4"),
                                       folder.path() + QStringLiteral("/film.part")),
            std::errc::file_exists);
  EXPECT_FALSE(PartFile::renameToFreeName(folder.path() + QStringLiteral("/film.mp4"),
                                          folder.path() + QStringLiteral("/new.mp4")));
  EXPECT_TRUE(PartFile::renameToFreeName(folder.path() + QStringLiteral("/gone.mp4"),
                                         folder.path() + QStringLiteral("/never.mp4")));
  EXPECT_FALSE(QFileInfo::exists(folder.path() + QStringLiteral("/never.mp4")));
  EXPECT_EQ(QFileInfo(folder.path() + QStringLiteral("/new.mp4")).size(), 5);
}

} // namespace
} // namespace vellum::test
