#include "platform/Programs.h"
#include "platform/ChildProcess.h"
#include "world/MainThread.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vellum::test {

using namespace world;
namespace {

using platform::ChildProcess;

// A machine with nothing installed but what the test puts there.
struct ProgramsTest : ::testing::Test, MainThread {
  ProgramsTest() {
    for (const char* folder : {"bin", "data/applications", "config", "none"})
      QDir(root.path()).mkpath(QLatin1String(folder));
    set("PATH", "bin", ":/usr/bin:/bin");
    set("XDG_DATA_HOME", "data");
    set("XDG_DATA_DIRS", "none");
    set("XDG_CONFIG_HOME", "config");
    set("XDG_CONFIG_DIRS", "none");
  }
  ~ProgramsTest() override {
    for (const auto& [name, value] : before) qputenv(name, value);
  }
  void set(const char* name, const char* folder, const char* rest = "") {
    before.emplace_back(name, qgetenv(name));
    qputenv(name, path(folder).toUtf8() + rest);
  }
  QString path(const char* name) const { return root.filePath(QLatin1String(name)); }
  void write(const char* name, const QByteArray& text, bool isProgram = false) {
    QFile file(path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(text);
    file.close();
    if (isProgram) file.setPermissions(file.permissions() | QFile::ExeOwner | QFile::ExeUser);
  }
  // Records its arguments and what it has inherited, says its number, and goes on for a minute.
  void writePlayer(const char* name, const char* end = "exec sleep 60") {
    write(name,
          "#!/bin/sh\nout=\"$(dirname \"$0\")/record\"\n{ printf '<%s>\\n' \"$@\"\n"
          "for fd in /proc/$$/fd/*; do printf 'fd %s %s\\n' \"${fd##*/}\" \"$(readlink \"$fd\")\"\n"
          "done; } >\"$out.new\"\necho $$ >\"$out.pid\"\nmv \"$out.new\" \"$out\"\n" +
              QByteArray(end) + "\n",
          true);
  }
  QByteArray record() {
    EXPECT_TRUE(turnUntil([&] { return QFile::exists(path("bin/record")); }));
    QFile file(path("bin/record"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
  }
  // The number of the player that ran last; its record is taken away.
  pid_t pid() {
    record();
    QFile file(path("bin/record.pid"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QFile::remove(path("bin/record"));
    return file.readAll().trimmed().toInt();
  }
  static bool isThere(pid_t pid) { return kill(pid, 0) == 0; } // also as a zombie

  QTemporaryDir root;
  std::vector<std::pair<const char*, QByteArray>> before;
  const QUrl address{QStringLiteral("http://127.0.0.1:4000/a%20b'%24(c)/Film;x.mkv?t=1")};
};

TEST_F(ProgramsTest, AChildGetsItsArgumentsAndNothingElseOfOurs) {
  writePlayer("bin/mpv");
  const int ours = open(path("config").toUtf8().constData(), O_RDONLY); // say, of a swarm
  ASSERT_GE(ours, 3);
  ChildProcess child;
  EXPECT_EQ(platform::findProgram(QStringLiteral("mpv")), path("bin/mpv"));
  ASSERT_TRUE(child.launch(path("bin/mpv"),
                           {QStringLiteral("--force-window=yes"),
                            QString::fromLatin1(address.toEncoded()), QStringLiteral("ü \"'")}));
  const QByteArray seen = record();
  close(ours);
  EXPECT_TRUE(
      seen.startsWith("<--force-window=yes>\n"
                      "<http://127.0.0.1:4000/a%20b'%24(c)/Film;x.mkv?t=1>\n<ü \"'>\nfd 0 "))
      << seen.toStdString();
  for (const char* inherited : {"/config", "socket:", "eventfd"})
    EXPECT_FALSE(seen.contains(inherited)) << seen.toStdString();
  child.terminate();
  const pid_t number = pid();
  EXPECT_TRUE(turnUntil([&] { return !child.isRunning() && !isThere(number); }))
      << "a zombie stays";
}

TEST_F(ProgramsTest, OnlyTerminateEndsAChild) {
  writePlayer("bin/mpv");
  auto child = std::make_unique<ChildProcess>();
  ASSERT_TRUE(child->launch(path("bin/mpv"), {}));
  const pid_t first = pid();
  ASSERT_TRUE(child->launch(path("bin/mpv"), {}));
  const pid_t second = pid();
  child->terminate();
  EXPECT_TRUE(turnUntil([&] { return !isThere(second); }));
  EXPECT_TRUE(isThere(first));
  child.reset();
  EXPECT_TRUE(isThere(first));
  kill(first, SIGTERM);
  EXPECT_TRUE(turnUntil([&] { return !isThere(first); })); // reaped though nobody knows it
}

TEST_F(ProgramsTest, AChildThatEndedByItselfIsNoTrouble) {
  ChildProcess child;
  child.terminate();
  EXPECT_FALSE(child.launch(path("bin/none"), {}));
  write("bin/text", "no program");
  EXPECT_FALSE(platform::isExecutable(path("bin/text")));
  EXPECT_FALSE(platform::isExecutable(path("bin")));
  EXPECT_FALSE(child.launch(path("bin/text"), {}));
  writePlayer("bin/brief", "exit 3");
  EXPECT_TRUE(platform::isExecutable(path("bin/brief")));
  ASSERT_TRUE(child.launch(path("bin/brief"), {}));
  EXPECT_TRUE(turnUntil([&] { return !child.isRunning(); }));
  child.terminate();
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "no child is left to be waited for";
}

TEST_F(ProgramsTest, VlcIsFoundInTheRegistryOrOnThePath) {
  const QByteArray opened = '<' + address.toEncoded() + ">\n";
  EXPECT_FALSE(platform::openInVlc(address));
  write("data/applications/org.videolan.VLC.desktop",
        "[Desktop Entry]\nExec=registered --started-from-file %U\n");
  writePlayer("bin/registered", "exit");
  EXPECT_FALSE(platform::openInVlc(QUrl(QStringLiteral("file:///etc/passwd"))));
  ASSERT_TRUE(platform::openInVlc(address));
  EXPECT_TRUE(record().startsWith("<--started-from-file>\n" + opened));
  pid();
  QFile::remove(path("data/applications/org.videolan.VLC.desktop"));
  writePlayer("bin/vlc", "exit");
  ASSERT_TRUE(platform::openInVlc(address));
  EXPECT_TRUE(record().startsWith(opened));
}

TEST_F(ProgramsTest, LinksGoToTheProgramThatTheUserChose) {
  const QString magnet = QStringLiteral("magnet:?xt=urn:btih:00&dn=a%20b");
  EXPECT_FALSE(platform::openWithDesktop(magnet));
  writePlayer("bin/client", "exit");
  write("data/applications/client.desktop", "[Desktop Entry]\nExec=client --add %u\n");
  write("data/applications/mimeinfo.cache", "[MIME Cache]\nx-scheme-handler/magnet=other.desktop;\n"
                                            "application/x-bittorrent=client.desktop;\n");
  EXPECT_FALSE(platform::openWithDesktop(magnet)); // the other one is not installed
  write("data/applications/vellum.desktop", "[Desktop Entry]\nExec=true %u\n");
  write("config/mimeapps.list",
        "[Default "
        "Applications]\nx-scheme-handler/magnet=gone.desktop;vellum.desktop;client.desktop\n");
  ASSERT_TRUE(platform::openWithDesktop(magnet));
  EXPECT_TRUE(record().startsWith("<--add>\n<magnet:?xt=urn:btih:00&dn=a%20b>\n"));
  pid();
  ASSERT_TRUE(platform::openWithDesktop(QStringLiteral("/a b.torrent")));
  EXPECT_TRUE(record().startsWith("<--add>\n</a b.torrent>\n"));
  EXPECT_FALSE(platform::openWithDesktop(QStringLiteral("--option")));
}

} // namespace
} // namespace vellum::test
