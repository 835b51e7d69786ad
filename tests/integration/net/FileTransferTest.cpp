#include "net/HttpFileTransfers.h"
#include "world/MainThread.h"
#include "world/RequestHead.h"
#include "world/ScriptedServer.h"
#include <QDir>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace vellum::test {

using namespace world;

namespace {

using namespace std::chrono_literals;
using Answer = ScriptedServer::Answer;

struct Running {
  std::shared_ptr<FileTransfer> transfer;
  std::future<TransferEnd> end;
};

struct FileTransferTest : testing::Test, MainThread {
  Running start(const QUrl& url, std::optional<ResumeData> from = {}, std::int64_t promised = 0,
                std::function<bool()> hasRoom = {}) {
    const auto promise = std::make_shared<std::promise<TransferEnd>>();
    return {transfers->start({url, folder.path(), promised, std::move(from), std::move(hasRoom)},
                             [promise](TransferEnd end) { promise->set_value(std::move(end)); }),
            promise->get_future()};
  }
  // Turns until it has ended. What it ended with, in words: "=" and the bytes of a whole file.
  std::string ending(Running running) {
    if (!turnUntil([&] { return running.end.wait_for(0s) == std::future_status::ready; }))
      return "never";
    TransferEnd end = running.end.get();
    if (const auto* failed = std::get_if<TransferFailed>(&end)) return failed->reason.toStdString();
    if (auto* paused = std::get_if<TransferPaused>(&end)) {
      kept = std::move(paused->resume);
      return kept ? "paused" : "paused, to begin again";
    }
    QFile film(folder.filePath(QStringLiteral("film.mp4")));
    EXPECT_FALSE(std::get<TransferFinished>(end).file->moveTo(film.fileName()));
    EXPECT_TRUE(film.open(QIODevice::ReadOnly));
    const std::string bytes = film.readAll().toStdString();
    EXPECT_TRUE(film.remove());
    const auto progress = running.transfer->progress().value_or(TransferProgress{-1});
    EXPECT_EQ(progress.received, std::int64_t(bytes.size()));
    return '=' + bytes;
  }
  bool receives(const Running& running, std::int64_t bytes) {
    return turnUntil([&] {
      const auto progress = running.transfer->progress();
      return progress && progress->received == bytes;
    });
  }
  qsizetype files() const {
    return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size();
  }
  bool partsGo() {
    return turnUntil([&] { return files() == 0; }, 10s);
  }

  const QTemporaryDir folder;
  std::optional<ResumeData> kept; // of the last that was paused
  std::optional<HttpFileTransfers> transfers{std::in_place};
};

TEST_F(FileTransferTest, OnlyAWholeAndPlainFileIsHandedOut) {
  const QByteArray ok = "HTTP/1.1 200 OK\r\n", five = "Content-Length: 5\r\n\r\n";
  const QByteArray chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";
  const QByteArray part = "HTTP/1.1 206 Part\r\nContent-Range: bytes ";
  const char* early = "The server ended the transfer early";
  const Answer moved = ScriptedServer::reply(302, "moved", "Location: /new/place.bin\r\n");
  struct Case {
    QByteArray head, body;
    const char* ending; // or how it begins
    std::int64_t promised = 0;
  };
  for (const auto& [head, body, wanted, promised] : {
           Case{ok + five, "whole", "=whole", 6},
           Case{ok + five, "whole and more", "=whole"},
           Case{ok + "\r\n", "whole", "=whole", 5},
           Case{ok + "\r\n", "whole", early, 6},
           Case{chunked, "3\r\nwho\r\n2\r\nle\r\n0\r\n\r\n", "=whole"},
           Case{ok + "Content-Length: 0\r\n\r\n", "", "="},
           Case{ok + "Content-Length: 6\r\n\r\n", "whole", early},
           Case{chunked, "FFFFFF\r\n" + QByteArray(3'000'000, 'x'), early, 0xFFFFFF},
           Case{chunked, "5\r\nwhole\r\n", early, 6},
           Case{"HTTP/1.1 300 Choose\r\n" + five, "which", "HTTP 300"},
           Case{"HTTP/1.1 403 No\r\nContent-Length: 9\r\n\r\n", "sorry", "HTTP 403"},
           Case{ok + "Content-Encoding: gzip\r\n" + five, "whole",
                "The server sent something else than the file"},
           Case{part + "0-4/10\r\n" + five, "whole", early},
           Case{"", "", "Connection closed"},
           Case{"HTTP/1.1 302 Go\r\nContent-Length: 4\r\n\r\n", "lost", "HTTP 302"},
       }) {
    ScriptedServer server([&](const QByteArray& request) {
      return request.startsWith("GET /film ") ? moved : Answer{head, body};
    });
    const std::string how = ending(start(server.url(QStringLiteral("/film")), {}, promised));
    const bool isWhole = wanted[0] == '=';
    EXPECT_EQ(isWhole ? how : how.substr(0, std::strlen(wanted)), wanted) << head.toStdString();
    EXPECT_TRUE(partsGo());
  }
  for (const char* address : {"", "file:///etc/hostname", "ftp://127.0.0.1/x", "http:///path"})
    EXPECT_EQ(ending(start(QUrl(QLatin1String(address)))), "Invalid URL") << address;
}

TEST_F(FileTransferTest, GoesOnOnlyWhereTheServerStillHasTheSameFile) {
  const QByteArray strong = "ETag: \"a\"\r\n", weak = "ETag: W/\"a\"\r\n";
  const QByteArray date = "Sun, 13 Sep 2020 12:26:40 GMT";
  const QByteArray dated =
      weak + "Last-Modified: " + date + "\r\nDate: Sun, 13 Sep 2020 12:26:41 GMT\r\n";
  const auto part = [](const QByteArray& body, const char* range) {
    return ScriptedServer::reply(206, body, QByteArray("Content-Range: bytes ") + range + "\r\n");
  };
  const Answer other = ScriptedServer::reply(200, "other");
  const Answer refusal = ScriptedServer::reply(416, "");
  struct Case {
    QByteArray headers; // of the first answer
    QByteArray ifRange; // of the second request; empty: it asks for the whole
    Answer second;
    const char* ending;
    Answer third = {};
  };
  for (const auto& [headers, ifRange, second, wanted, third] : {
           Case{strong, "\"a\"", part("hole", "1-4/5"), "=whole"},
           Case{dated, date, part("hole", "1-4/*"), "=whole"},
           Case{weak, "", other, "=other"},
           Case{strong, "\"a\"", ScriptedServer::reply(200, ""), "="},
           Case{strong, "\"a\"", refusal, "=other", other},
           Case{strong, "\"a\"", refusal, "HTTP 416", refusal},
           Case{strong, "\"a\"", part("ole", "2-4/5"), "=other", other},
           Case{strong, "\"a\"", part("holes", "1-5/6"), "=other", other},
           Case{strong, "\"a\"", part("hol", "1-3/5"), "The server ended the transfer early"},
           Case{strong, "\"a\"", ScriptedServer::reply(404, "gone"), "HTTP 404"},
       }) {
    SCOPED_TRACE((headers + second.head + wanted).toStdString());
    std::vector<RequestHead> heard; // read once the server has gone
    std::optional<ScriptedServer> server;
    server.emplace([&](const QByteArray& request) {
      heard.push_back(RequestHead::parse(request));
      if (heard.size() > 1) return heard.size() == 2 ? second : third;
      return Answer{"HTTP/1.1 200 OK\r\nContent-Length: 5\r\n" + headers + "\r\n", "w", 1, 0ms,
                    true};
    });
    Running first = start(server->url());
    ASSERT_TRUE(receives(first, 1));
    EXPECT_EQ(first.transfer->progress()->expected, 5);
    first.transfer->pause();
    EXPECT_EQ(ending(std::move(first)), ifRange.isEmpty() ? "paused, to begin again" : "paused");
    EXPECT_TRUE(turnUntil([&] { return server->dropped() == 1; }));
    EXPECT_EQ(ending(start(server->url(), std::exchange(kept, {}))), wanted);
    server.reset();
    EXPECT_EQ(heard.at(1).header("Range"), ifRange.isEmpty() ? "" : "bytes=1-");
    EXPECT_EQ(heard.at(1).header("If-Range"), ifRange);
    EXPECT_EQ(heard.at(1).header("Accept-Encoding"), "identity");
    EXPECT_EQ(heard.at(1).header("User-Agent"), "VellumApp/1.0 (macOS)");
    EXPECT_EQ(heard.size(), third.head.isEmpty() ? 2 : 3);
    if (heard.size() == 3) EXPECT_EQ(heard[2].header("Range"), "");
    EXPECT_TRUE(partsGo());
  }
}

TEST_F(FileTransferTest, ACancelledOneGoesWithoutAWordAndLeavesTheOthers) {
  ScriptedServer server([](const QByteArray& request) {
    const QByteArray head = "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n";
    return request.startsWith("GET /all ") ? Answer{head, "whole", 1, 200ms}
                                           : Answer{head, "w", 1, 0ms, true};
  });
  { const HttpFileTransfers unused; }
  Running cancelled = start(server.url());
  Running left = start(server.url());
  Running whole = start(server.url(QStringLiteral("/all")));
  EXPECT_FALSE(whole.transfer->progress());
  ASSERT_TRUE(receives(cancelled, 1) && receives(left, 1));
  cancelled.transfer->cancel();
  cancelled.transfer->pause(); // too late
  EXPECT_TRUE(turnUntil([&] { return server.dropped() == 1; }));
  const auto ended = whole.transfer;
  EXPECT_EQ(ending(std::move(whole)), "=whole");
  ended->pause();
  ended->cancel();
  EXPECT_EQ(files(), 1);
  transfers.reset();
  for (Running* silent : {&cancelled, &left})
    EXPECT_THROW(silent->end.get(), std::future_error) << "nobody was told";
  EXPECT_EQ(files(), 0);
}

// Some 60 megabytes pass: the looks at the disk are 16 MiB apart.
TEST_F(FileTransferTest, ADiskThatFillsEndsTheTransferBeforeItIsFull) {
  constexpr std::int64_t kBetween = 16 << 20;
  std::int64_t size = kBetween;
  ScriptedServer server(
      [&](const QByteArray&) { return ScriptedServer::reply(200, QByteArray(size, 'x')); });
  EXPECT_EQ(ending(start(server.url())).size(), kBetween + 1U) << "nobody looks";
  using Case = std::tuple<std::int64_t, bool, int>;
  for (const auto& [bytes, hasRoom, looks] :
       {Case{kBetween - 1, false, 0}, Case{40 << 20, true, 2}, Case{kBetween, false, 1}}) {
    size = bytes;
    int looked = 0;
    const auto look = [&, answer = hasRoom] { return ++looked > 0 && answer; };
    const std::string how = ending(start(server.url(), {}, 0, look));
    EXPECT_EQ(how.substr(0, 5), looks == 1 ? "Not e" : "=xxxx");
    EXPECT_EQ(looked, looks) << size;
  }
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
  const rlimit full{400'000, limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
  EXPECT_EQ(ending(start(server.url())), "File too large");
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  EXPECT_TRUE(partsGo());
}

TEST_F(FileTransferTest, ASilentServerIsGivenUpAndASlowOneIsNot) {
  transfers.emplace(250ms);
  // At once, before TLS, in the middle, and at the second request over one connection.
  using Case = std::tuple<QByteArray, const char*, int>;
  for (const auto& [head, scheme, before] :
       {Case{"", "http", 0}, Case{"", "https", 0},
        Case{"HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nx", "http", 0},
        Case{"HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\nx", "http", 1}}) {
    ScriptedServer silent([&](const QByteArray&) { return Answer{head, "", 1, 1h}; });
    QUrl url = silent.url();
    url.setScheme(QLatin1String(scheme));
    for (int i = 0; i < before; ++i) EXPECT_EQ(ending(start(url)), "=x");
    EXPECT_EQ(ending(start(url)), "The request timed out");
    EXPECT_LE(silent.requests(), 1);
  }
  ScriptedServer slow([](const QByteArray&) {
    return Answer{"HTTP/1.1 200 OK\r\nContent-Length: 12\r\n\r\n", "x", 12, 30ms};
  });
  EXPECT_EQ(ending(start(slow.url())).size(), 13U);
}

} // namespace
} // namespace vellum::test
