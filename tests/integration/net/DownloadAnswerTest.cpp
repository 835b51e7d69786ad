#include "DownloadTest.h"

namespace vellum::test {
namespace {

using DownloadAnswerTest = DownloadTest;
using Answer = ScriptedServer::Answer;

// `ending` may be the beginning of a text of the platform.
struct Case {
  const char* name;
  QByteArray head;
  QByteArray body;
  const char* ending;
  QByteArray saved = {};
  std::optional<qint64> size = {}; // as the catalog tells it
};

TEST_F(DownloadAnswerTest, OnlyAWholeAndPlainFileGetsItsName) {
  const QByteArray ok = "HTTP/1.1 200 OK\r\n";
  const char* early = "The server ended the transfer early";
  const char* other = "The server sent something else than the file";
  for (const auto& [name, head, body, wanted, saved, size] : {
           Case{"length", ok + "Content-Length: 5\r\n\r\n", "whole", "finished", "whole"},
           Case{"until closed", ok + "\r\n", "whole", "finished", "whole"},
           Case{"longer than the catalog says", ok + "\r\n", "whole", "finished", "whole", 4},
           Case{"shorter than the catalog says", ok + "Content-Length: 5\r\n\r\n", "whole",
                "finished", "whole", 6},
           Case{"chunked", ok + "Transfer-Encoding: chunked\r\n\r\n",
                "3\r\nwho\r\n2\r\nle\r\n0\r\n\r\n", "finished", "whole"},
           Case{"empty", ok + "Content-Length: 0\r\n\r\n", "", "finished", ""},
           Case{"longer than said", ok + "Content-Length: 5\r\n\r\n", "whole and more", "finished",
                "whole"},
           Case{"another 2xx", "HTTP/1.1 299 Odd\r\nContent-Length: 5\r\n\r\n", "whole", "finished",
                "whole"},
           Case{"no 2xx", "HTTP/1.1 300 Choose\r\nContent-Length: 5\r\n\r\n", "which", "HTTP 300"},
           Case{"not found", "HTTP/1.1 404 None\r\nContent-Length: 5\r\n\r\n", "sorry", "HTTP 404"},
           Case{"forbidden, no end", "HTTP/1.1 403 No\r\nContent-Length: 500\r\n\r\n", "sorry",
                "HTTP 403"},
           Case{"broken, no body", "HTTP/1.1 500 No\r\nContent-Length: 0\r\n\r\n", "", "HTTP 500"},
           Case{"range refused", "HTTP/1.1 416 No\r\nContent-Length: 0\r\n\r\n", "", "HTTP 416"},
           Case{"cut short", ok + "Content-Length: 6\r\n\r\n", "whole", early},
           Case{"nothing of much", ok + "Content-Length: 9223372036854775807\r\n\r\n", "whole",
                early},
           Case{"chunks cut short",
                ok + "Transfer-Encoding: chunked\r\n\r\n",
                "9\r\nwhole",
                early,
                {},
                9},
           Case{"large chunk cut short",
                ok + "Transfer-Encoding: chunked\r\n\r\n",
                "FFFFFF\r\n" + QByteArray(3'000'000, 'x'),
                early,
                {},
                0xFFFFFF},
           Case{"large body cut short", ok + "Content-Length: 3000001\r\n\r\n",
                QByteArray(3'000'000, 'x'), early},
           Case{"no last chunk",
                ok + "Transfer-Encoding: chunked\r\n\r\n",
                "5\r\nwhole\r\n",
                early,
                {},
                6},
           Case{"compressed", ok + "Content-Encoding: gzip\r\nContent-Length: 5\r\n\r\n", "whole",
                other},
           Case{"a part", "HTTP/1.1 206 Part\r\nContent-Range: bytes 5-9/10\r\n\r\n", "whole",
                other},
           Case{"the first part",
                "HTTP/1.1 206 Part\r\nContent-Range: bytes 0-4/10\r\nContent-Length: 5\r\n\r\n",
                "whole", early},
           Case{"all as a part",
                "HTTP/1.1 206 Part\r\nContent-Range: bytes 0-4/5\r\nContent-Length: 5\r\n\r\n",
                "whole", "finished", "whole"},
           Case{"no HTTP", "SSH-2.0-nobody\r\n", "", ""},
           Case{"silence", "", "", "Connection closed"},
           Case{"to a file", "HTTP/1.1 302 Go\r\nLocation: file:///etc/hostname\r\n\r\n", "", ""},
           Case{"in circles", "HTTP/1.1 302 Go\r\nLocation: /film.mp4\r\n\r\n", "", "Too many"},
           Case{"nowhere", "HTTP/1.1 302 Go\r\nContent-Length: 4\r\n\r\n", "lost", "HTTP 302"},
       }) {
    ScriptedServer server([&](const QByteArray&) { return Answer{head, body}; });
    start(server.url(QStringLiteral("/film.mp4")), size);
    const std::string how = ending();
    EXPECT_EQ(how.substr(0, std::strlen(wanted)), wanted) << name;
    const bool isSaved = std::string_view(wanted) == "finished";
    EXPECT_EQ(how == "finished", isSaved) << name;
    EXPECT_EQ(contents(), isSaved ? saved : "(none)") << name;
    if (isSaved) EXPECT_EQ(row().received, saved.size()) << name;
    EXPECT_TRUE(!isSaved || row().expected == row().received) << name;
    EXPECT_TRUE(partsGo()) << name;
    QFile::remove(folder + QStringLiteral("/film.mp4"));
    manager->clearFinished();
  }
}

TEST_F(DownloadAnswerTest, AsksForThePlainFileAndFollowsRedirects) {
  QByteArray asked;
  ScriptedServer server([&](const QByteArray& request) {
    if (request.startsWith("GET /film.mp4 "))
      return ScriptedServer::reply(302, "moved", "Location: /new/place.bin\r\n");
    asked = request;
    return ScriptedServer::reply(200, "whole");
  });
  start(server.url(QStringLiteral("/film.mp4")));
  EXPECT_EQ(ending(), "finished");
  EXPECT_EQ(contents(), "whole");
  const RequestHead head = RequestHead::parse(asked);
  EXPECT_EQ(head.path.toStdString(), "/new/place.bin");
  EXPECT_EQ(head.header("Accept-Encoding"), "identity");
  EXPECT_EQ(head.header("User-Agent"), "VellumApp/1.0 (macOS)");
  EXPECT_EQ(head.header("Range"), "");
  EXPECT_TRUE(turnUntil([&] { return manager->saved().size() == 1; }));
}

TEST_F(DownloadAnswerTest, ADiskThatFillsEndsTheTransferBeforeItIsFull) {
  constexpr std::int64_t least = 104'857'600;
  std::atomic<std::int64_t> free = 0;
  manager.emplace(settings, main, *pool, *transfers, [&](const QString&) { return free.load(); });
  struct Case {
    std::int64_t free;
    int megabytes;
    const char* ending;
  };
  for (const auto& [bytes, megabytes, wanted] :
       {Case{least - 1, 40, "Not enough free disk space."}, Case{least, 40, "finished"},
        Case{0, 10, "finished"}}) {
    free = bytes;
    ScriptedServer server([count = megabytes](const QByteArray&) {
      return Answer{"HTTP/1.1 200 OK\r\n\r\n", QByteArray(1'000'000, 'x'), count};
    });
    start(server.url(QStringLiteral("/film.mp4")));
    EXPECT_EQ(ending(), wanted);
    EXPECT_TRUE(partsGo());
    EXPECT_EQ(QFile::remove(folder + QStringLiteral("/film.mp4")),
              std::string_view(wanted) == "finished");
    manager->clearFinished();
  }
}

TEST_F(DownloadAnswerTest, OnlyAddressesOfTheWebAreAsked) {
  for (const char* address : {"file:///etc/hostname", "ftp://127.0.0.1/x", "data:text/plain,x",
                              "http:///path", "qrc:/x", ""}) {
    start(QUrl(QLatin1String(address)));
    EXPECT_EQ(ending(), "Invalid URL") << address;
  }
  QUrl refused;
  {
    ScriptedServer gone([](const QByteArray&) { return Answer{}; });
    refused = gone.url();
  }
  start(refused);
  EXPECT_EQ(ending(), "Connection refused");
  EXPECT_TRUE(partsGo());
  EXPECT_TRUE(visible().isEmpty());
}

TEST_F(DownloadAnswerTest, ASilentServerIsGivenUpAndASlowOneIsNot) {
  startManager(300ms);
  for (const QByteArray& head : {QByteArray(), QByteArray("HTTP/1.1 200 OK\r\n\r\n")}) {
    ScriptedServer silent([&](const QByteArray&) { return Answer{head, "w", 1, 0ms, true}; });
    start(silent.url());
    EXPECT_EQ(ending(), "The request timed out");
    EXPECT_TRUE(turnUntil([&] { return silent.dropped() == 1; }));
  }
  ScriptedServer slow([](const QByteArray&) {
    return Answer{"HTTP/1.1 200 OK\r\nContent-Length: 20\r\n\r\n", "x", 20, 30ms};
  });
  start(slow.url());
  EXPECT_EQ(ending(), "finished");
}

} // namespace
} // namespace vellum::test
