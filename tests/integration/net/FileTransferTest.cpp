#include "OwnCertificate.h"
#include "net/HttpFileTransfers.h"
#include "world/FileAnswer.h"
#include "world/MainThread.h"
#include <QDir>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>
#include <mutex>
#include <random>
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
  Running start(TransferSource source) {
    source.folder = folder.path();
    const auto promise = std::make_shared<std::promise<TransferEnd>>();
    return {transfers->start(std::move(source),
                             [promise](TransferEnd end) { promise->set_value(std::move(end)); }),
            promise->get_future()};
  }
  static bool hasEnded(const Running& running) {
    return running.end.wait_for(0s) == std::future_status::ready;
  }
  // Turns until it has ended. What it ended with, in words: "=" and the bytes of a whole file.
  std::string ending(Running running) {
    if (!turnUntil([&] { return hasEnded(running); })) return "never";
    TransferEnd end = running.end.get();
    if (const auto* failed = std::get_if<TransferFailed>(&end)) return failed->reason.toStdString();
    if (auto* paused = std::get_if<TransferPaused>(&end)) {
      kept = std::move(paused->resume);
      return kept ? "paused" : "paused, to begin again";
    }
    const auto part = std::get<TransferFinished>(end).file;
    const QString path = folder.filePath(QStringLiteral("film.mp4"));
    EXPECT_FALSE(part->moveTo(path));
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(file.remove());
    EXPECT_EQ(running.transfer->progress()->received, bytes.size());
    return "=" + bytes.toStdString();
  }
  std::string ending(const QUrl& url) { return ending(start({.url = url, .folder = {}})); }
  bool receives(const Running& running, std::int64_t bytes) {
    return turnUntil([&] {
      const auto progress = running.transfer->progress();
      return progress && progress->received == bytes;
    });
  }
  bool partsGo() {
    return turnUntil([&] { return QDir(folder.path()).isEmpty(QDir::Files | QDir::Hidden); }, 10s);
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
  struct Case {
    const char* name;
    QByteArray head, body;
    const char* ending; // or how it begins
    std::int64_t promised = 0;
  };
  for (const auto& [name, head, body, wanted, promised] : {
           Case{"length", ok + five, "whole", "=whole"},
           Case{"shorter than promised", ok + five, "whole", "=whole", 6},
           Case{"longer than said", ok + five, "whole and more", "=whole"},
           Case{"until closed", ok + "\r\n", "whole", "=whole", 5},
           Case{"closed before", ok + "\r\n", "whole", early, 6},
           Case{"chunked", chunked, "3\r\nwho\r\n2\r\nle\r\n0\r\n\r\n", "=whole"},
           Case{"empty", ok + "Content-Length: 0\r\n\r\n", "", "="},
           Case{"cut short", ok + "Content-Length: 6\r\n\r\n", "whole", early},
           Case{"nothing of much", ok + "Content-Length: 9223372036854775807\r\n\r\n", "w", early},
           Case{"large and cut short", ok + "Content-Length: 3000001\r\n\r\n",
                QByteArray(3'000'000, 'x'), early},
           Case{"chunks cut short", chunked, "9\r\nwhole", early, 9},
           Case{"large chunk cut short", chunked, "FFFFFF\r\n" + QByteArray(3'000'000, 'x'), early,
                0xFFFFFF},
           Case{"no last chunk", chunked, "5\r\nwhole\r\n", early, 6},
           Case{"no 2xx", "HTTP/1.1 300 Choose\r\n" + five, "which", "HTTP 300"},
           Case{"forbidden", "HTTP/1.1 403 No\r\nContent-Length: 9\r\n\r\n", "sorry", "HTTP 403"},
           Case{"broken, no body", "HTTP/1.1 500 No\r\nContent-Length: 0\r\n\r\n", "", "HTTP 500"},
           Case{"compressed", ok + "Content-Encoding: gzip\r\n" + five, "whole",
                "The server sent something else than the file"},
           Case{"the first part", part + "0-4/10\r\n" + five, "whole", early},
           Case{"all as a part", part + "0-4/5\r\n" + five, "whole", "=whole"},
           Case{"no HTTP", "SSH-2.0-nobody\r\n", "", "Connection closed"},
           Case{"silence", "", "", "Connection closed"},
           Case{"to a file", "HTTP/1.1 302 Go\r\nLocation: file:///etc/hostname\r\n\r\n", "",
                "HTTP 302"},
           Case{"in circles", "HTTP/1.1 302 Go\r\nLocation: /film.mp4\r\n\r\n", "", "Too many"},
           Case{"nowhere", "HTTP/1.1 302 Go\r\nContent-Length: 4\r\n\r\n", "lost", "HTTP 302"},
       }) {
    ScriptedServer server([&](const QByteArray&) { return Answer{head, body}; });
    const std::string how =
        ending(start({.url = server.url(), .folder = {}, .promised = promised}));
    const bool isWhole = wanted[0] == '=';
    EXPECT_EQ(isWhole ? how : how.substr(0, std::strlen(wanted)), wanted) << name << how;
    EXPECT_TRUE(partsGo()) << name;
  }
}

TEST_F(FileTransferTest, AsksForThePlainFileOfTheWebAndFollowsRedirects) {
  QByteArray asked;
  ScriptedServer server([&](const QByteArray& request) {
    if (request.startsWith("GET /film.mp4 "))
      return ScriptedServer::reply(302, "moved", "Location: /new/place.bin\r\n");
    asked = request;
    return ScriptedServer::reply(200, "whole");
  });
  EXPECT_EQ(ending(server.url(QStringLiteral("/film.mp4"))), "=whole");
  const RequestHead head = RequestHead::parse(asked);
  EXPECT_EQ(head.path.toStdString(), "/new/place.bin");
  EXPECT_EQ(head.header("Accept-Encoding"), "identity");
  EXPECT_EQ(head.header("User-Agent"), "VellumApp/1.0 (macOS)");
  EXPECT_EQ(head.header("Range"), "");

  for (const char* address : {"file:///etc/hostname", "ftp://127.0.0.1/x", "data:text/plain,x",
                              "http:///path", "qrc:/x", "//127.0.0.1/x", ""})
    EXPECT_EQ(ending(QUrl(QLatin1String(address))), "Invalid URL") << address;
  const UntrustedServer untrusted;
  const std::string how = ending(untrusted.url());
  EXPECT_NE(how.find("certificate is self-signed, and untrusted"), std::string::npos) << how;
  EXPECT_EQ(untrusted.heard(), "");
  EXPECT_TRUE(partsGo());
}

TEST_F(FileTransferTest, GoesOnOnlyWhereTheServerStillHasTheSameFile) {
  const QByteArray strong = "ETag: \"a\"\r\n";
  const auto range = [](const char* text) {
    return "Content-Range: bytes " + QByteArray(text) + "\r\n";
  };
  const Answer another = ScriptedServer::reply(200, "other");
  struct Case {
    const char* name;
    QByteArray headers; // of the first answer
    QByteArray ifRange; // of the second request; empty: it asks for the whole
    Answer second;
    const char* ending; // or how it begins
    Answer third = {};
  };
  for (const auto& [name, headers, ifRange, second, wanted, third] : {
           Case{"goes on", strong, "\"a\"",
                ScriptedServer::reply(206, "hole", strong + range("1-4/5")), "=whole"},
           Case{"by date",
                "ETag: W/\"a\"\r\nLast-Modified: Sun, 13 Sep 2020 12:26:40 GMT\r\n"
                "Date: Sun, 13 Sep 2020 12:26:41 GMT\r\n",
                "Sun, 13 Sep 2020 12:26:40 GMT", ScriptedServer::reply(206, "hole", range("1-4/*")),
                "=whole"},
           Case{"weak tag", "ETag: W/\"a\"\r\n", "", another, "=other"},
           Case{"changed", strong, "\"a\"", another, "=other"},
           Case{"emptied", strong, "\"a\"", ScriptedServer::reply(200, ""), "="},
           Case{"416", strong, "\"a\"", ScriptedServer::reply(416, "no"), "=other", another},
           Case{"416 twice", strong, "\"a\"", ScriptedServer::reply(416, "no"), "HTTP 416",
                ScriptedServer::reply(416, "no")},
           Case{"another part", strong, "\"a\"", ScriptedServer::reply(206, "ole", range("2-4/5")),
                "=other", another},
           Case{"of a longer file", strong, "\"a\"",
                ScriptedServer::reply(206, "hole", range("1-4/6")), "=other", another},
           Case{"less than the rest", strong, "\"a\"",
                ScriptedServer::reply(206, "hol", range("1-3/5")),
                "The server ended the transfer early"},
           Case{"gone", strong, "\"a\"", ScriptedServer::reply(404, "gone"), "HTTP 404"},
       }) {
    std::mutex mutex;
    std::vector<RequestHead> heard; // under the mutex
    ScriptedServer server([&](const QByteArray& request) {
      const std::lock_guard lock(mutex);
      heard.push_back(RequestHead::parse(request));
      if (heard.size() > 1) return heard.size() == 2 ? second : third;
      return Answer{"HTTP/1.1 200 OK\r\nContent-Length: 5\r\n" + headers + "\r\n", "w", 1, 0ms,
                    true};
    });
    Running first = start({.url = server.url(), .folder = {}});
    ASSERT_TRUE(receives(first, 1)) << name;
    EXPECT_EQ(first.transfer->progress()->expected, 5);
    first.transfer->pause();
    EXPECT_EQ(ending(std::move(first)), ifRange.isEmpty() ? "paused, to begin again" : "paused");
    EXPECT_TRUE(turnUntil([&] { return server.dropped() == 1; })) << name;
    EXPECT_EQ(ending(start({.url = server.url(), .folder = {}, .resume = std::exchange(kept, {})})),
              wanted)
        << name;
    const std::lock_guard lock(mutex);
    EXPECT_EQ(heard.at(1).header("Range"), ifRange.isEmpty() ? "" : "bytes=1-") << name;
    EXPECT_EQ(heard.at(1).header("If-Range"), ifRange) << name;
    EXPECT_EQ(heard.size(), third.head.isEmpty() ? 2 : 3) << name;
    if (heard.size() == 3) EXPECT_EQ(heard[2].header("Range"), "") << name;
    EXPECT_TRUE(partsGo()) << name;
  }
}

TEST_F(FileTransferTest, PausedAtAnyMomentItComesOutTheSame) {
  const auto payload = Payload::fromBytes(pseudoRandomBytes(1'000'000, 1));
  ScriptedServer server([&](const QByteArray& request) {
    return fileAnswer(RequestHead::parse(request), *payload, "video/mp4");
  });
  std::mt19937 random(7);
  for (int round = 0; round < 40; ++round) {
    std::string how = "paused";
    for (int pauses = 0; how.starts_with("paused"); ++pauses) {
      Running running =
          start({.url = server.url(), .folder = {}, .resume = std::exchange(kept, {})});
      const auto until =
          std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 4000);
      while (pauses < 4 && std::chrono::steady_clock::now() < until) std::this_thread::yield();
      if (pauses < 4) running.transfer->pause();
      how = ending(std::move(running));
    }
    ASSERT_TRUE(how == "=" + toByteArray(payload->bytes()).toStdString()) << round;
  }
  EXPECT_TRUE(partsGo());
}

TEST_F(FileTransferTest, ACancelledOneGoesWithoutAWordAndLeavesTheOthers) {
  ScriptedServer server([](const QByteArray& request) {
    const QByteArray head = "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n";
    return request.startsWith("GET /all ") ? Answer{head, "whole", 1, 200ms}
                                           : Answer{head, "w", 1, 0ms, true};
  });
  { const HttpFileTransfers unused; }
  Running cancelled = start({.url = server.url(), .folder = {}});
  Running left = start({.url = server.url(), .folder = {}});
  Running whole = start({.url = server.url(QStringLiteral("/all")), .folder = {}});
  EXPECT_FALSE(whole.transfer->progress());
  ASSERT_TRUE(receives(cancelled, 1) && receives(left, 1));
  cancelled.transfer->cancel();
  cancelled.transfer->pause(); // too late
  EXPECT_TRUE(turnUntil([&] { return server.dropped() == 1; }));
  const auto ended = whole.transfer;
  EXPECT_EQ(ending(std::move(whole)), "=whole");
  ended->pause();
  ended->cancel();
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
  transfers.reset();
  for (Running* silent : {&cancelled, &left})
    EXPECT_THROW(silent->end.get(), std::future_error) << "nobody was told";
  EXPECT_TRUE(QDir(folder.path()).isEmpty(QDir::Files | QDir::Hidden));
}

// Some 60 megabytes pass: the looks at the disk are 16 MiB apart.
TEST_F(FileTransferTest, ADiskThatFillsEndsTheTransferBeforeItIsFull) {
  struct Case {
    std::int64_t size;
    bool hasRoom;
    int looks;
  };
  constexpr std::int64_t kBetween = 16 << 20;
  for (const auto& [size, hasRoom, looks] :
       {Case{kBetween - 1, false, 0}, Case{kBetween, false, 1}, Case{40 << 20, true, 2}}) {
    ScriptedServer server([bytes = size](const QByteArray&) {
      return ScriptedServer::reply(200, QByteArray(bytes, 'x'));
    });
    int looked = 0;
    const auto look = [&, answer = hasRoom] {
      ++looked;
      return answer;
    };
    const std::string how = ending(start({.url = server.url(), .folder = {}, .hasRoom = look}));
    EXPECT_EQ(how[0] == '=', looks != 1) << size;
    if (looks == 1) EXPECT_EQ(how, "Not enough free disk space.");
    EXPECT_EQ(looked, looks) << size;
  }
  ScriptedServer server(
      [](const QByteArray&) { return ScriptedServer::reply(200, QByteArray(kBetween, 'x')); });
  EXPECT_EQ(ending(server.url()).size(), kBetween + 1U) << "nobody looks";
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
  const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit full{400'000, limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
  const std::string how = ending(server.url());
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  std::signal(SIGXFSZ, oldHandler);
  EXPECT_EQ(how, "File too large");
  EXPECT_TRUE(partsGo());
}

TEST_F(FileTransferTest, ASilentServerIsGivenUpAndASlowOneIsNot) {
  transfers.emplace(300ms);
  struct Case {
    const char* name;
    QByteArray head;
    const char* scheme = "http";
    int whole = 0; // transfers before that one over the same connection
  };
  for (const auto& [name, head, scheme, whole] :
       {Case{"not a byte", ""}, Case{"half", "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nx"},
        Case{"no TLS", "", "https"},
        Case{"at the second request", "HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\nx", "http",
             1}}) {
    ScriptedServer silent([&](const QByteArray&) { return Answer{head, "", 1, 1h}; });
    QUrl url = silent.url();
    url.setScheme(QLatin1String(scheme));
    for (int i = 0; i < whole; ++i) EXPECT_EQ(ending(url), "=x") << name;
    EXPECT_EQ(ending(url), "The request timed out") << name;
    EXPECT_LE(silent.requests(), 1) << name;
  }
  ScriptedServer slow([](const QByteArray&) {
    return Answer{"HTTP/1.1 200 OK\r\nContent-Length: 20\r\n\r\n", "x", 20, 30ms};
  });
  EXPECT_EQ(ending(slow.url()).size(), 21U);
}

} // namespace
} // namespace vellum::test
