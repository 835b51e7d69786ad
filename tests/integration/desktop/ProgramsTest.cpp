#include "platform/Programs.h"
#include "base/ReplaceFile.h"
#include "platform/ChildProcess.h"
#include "world/MainThread.h"
#include <QFile>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>

namespace vellum::test {

using namespace Qt::StringLiterals;
using namespace world;
namespace {

// A machine with nothing installed but what the test puts there.
struct ProgramsTest : ::testing::Test, MainThread {
  ProgramsTest() {
    for (const char* name :
         {"XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS"})
      qputenv(name, path(name).toUtf8());
    qputenv("PATH", path("bin").toUtf8() + ":/usr/bin:/bin");
  }
  QString path(const char* name) const { return root.filePath(QLatin1String(name)); }
  QString write(const char* name, const QByteArray& text) {
    EXPECT_TRUE(replaceFile(path(name), text, Privacy::Everybody));
    return path(name);
  }
  // Writes down its number, its arguments and what it has inherited.
  QString program(const char* name, const QByteArray& then = "exit 3") {
    const QString made =
        write(name, "#!/bin/sh\n{ echo $$; printf '<%s>' \"$@\"; ls -l /proc/$$/fd\n"
                    "} >\"$0.new\"\nmv \"$0.new\" \"$0.said\"\n" +
                        then + '\n');
    QFile::setPermissions(made, QFile::ReadOwner | QFile::ExeOwner);
    return made;
  }
  // What it has written; once.
  std::string said(const char* name) {
    QFile file(path(name) + u".said"_s);
    EXPECT_TRUE(turnUntil([&] { return file.exists(); }) && file.open(QIODevice::ReadOnly));
    number = file.readLine().toInt();
    const std::string rest = file.readAll().toStdString();
    file.remove();
    return rest;
  }

  QTemporaryDir root;
  pid_t number = 0; // of the program that has said something last
  const QUrl address{u"http://127.0.0.1:4000/a%20b'%24(c)/Film;x.mkv?t=1"_s};
  const std::string shown = '<' + address.toEncoded().toStdString() + '>';
};

TEST_F(ProgramsTest, AChildGetsItsArgumentsNothingElseOfOursAndEndsWhenItShall) {
  QFile ours(write("ours", "say, of a swarm"));
  ASSERT_TRUE(ours.open(QIODevice::ReadOnly));
  platform::ChildProcess child;
  for (const QString& no : {path("bin/none"), write("bin/text", "no program"), path("bin")})
    EXPECT_FALSE(platform::isExecutable(no) || child.launch(no, {})) << no.toStdString();
  const QString mpv = program("bin/mpv", "exec sleep 60");
  EXPECT_EQ(platform::findProgram(u"mpv"_s), mpv);
  ASSERT_TRUE(child.launch(mpv, {QString::fromLatin1(address.toEncoded()), u"ü \"'"_s}));
  const std::string seen = said("bin/mpv");
  EXPECT_TRUE(seen.starts_with(shown + "<ü \"'>total 0\n")) << seen;
  for (const char* inherited : {"/ours", "socket:", "eventfd"})
    EXPECT_EQ(seen.find(inherited), std::string::npos) << seen;
  child.terminate();
  EXPECT_TRUE(turnUntil([&] { return !child.isRunning() && kill(number, 0) != 0; })) << "a zombie";
}

TEST_F(ProgramsTest, LinksGoToTheProgramThatTheUserChoseAndFilmsToVlc) {
  const QString magnet = u"magnet:?xt=urn:btih:00&dn=a%20b"_s;
  EXPECT_FALSE(platform::openInVlc(address) || platform::openWithDesktop(magnet));
  program("bin/vlc");
  ASSERT_TRUE(platform::openInVlc(address));
  EXPECT_TRUE(said("bin/vlc").starts_with(shown));
  program("bin/client");
  const auto entry = [&](const char* name, const QByteArray& exec) {
    write(name, "[Desktop Entry]\nExec=" + exec + '\n');
  };
  entry("XDG_DATA_HOME/applications/org.videolan.VLC.desktop", R"("client" %i 100%% --file=%U)");
  EXPECT_FALSE(platform::openInVlc(QUrl(u"file:///etc/passwd"_s)));
  ASSERT_TRUE(platform::openInVlc(address));
  EXPECT_TRUE(said("bin/client").starts_with("<100%><--file=" + shown.substr(1)));

  entry("XDG_DATA_HOME/applications/client.desktop", "client --add");
  entry("XDG_DATA_HOME/applications/vellum.desktop", "true %u");
  write("XDG_DATA_HOME/applications/mimeinfo.cache",
        "[MIME Cache]\nx-scheme-handler/magnet=other.desktop;\n"
        "application/x-bittorrent=client.desktop;\n");
  EXPECT_FALSE(platform::openWithDesktop(magnet)); // the other one is not installed
  write("XDG_CONFIG_HOME/mimeapps.list",
        "[Added Associations]\nx-scheme-handler/magnet=vlc.desktop;\n[Default Applications]\n"
        "x-scheme-handler/magnet=gone.desktop;vellum.desktop;client.desktop\n");
  for (const QString& link : {magnet, u"/a b.torrent"_s}) {
    ASSERT_TRUE(platform::openWithDesktop(link));
    EXPECT_TRUE(said("bin/client").starts_with("<--add><" + link.toStdString() + '>'));
  }
  EXPECT_FALSE(platform::openWithDesktop(u"--option"_s));
}

} // namespace
} // namespace vellum::test
