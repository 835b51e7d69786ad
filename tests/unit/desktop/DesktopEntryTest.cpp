#include "platform/linux/DesktopEntry.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(DesktopEntry, PutsTheAddressIntoTheCommandAsOneArgument) {
  const QString address = QStringLiteral("http://127.0.0.1:1/a b;$(x)%U.mkv");
  const auto with = [&](const char* exec) {
    return desktopEntry::command("[Desktop Entry]\nName=V\nExec = " + QByteArray(exec) +
                                     "\n[Desktop Action x]\nExec=no\n",
                                 address);
  };
  const std::pair<const char*, QStringList> cases[] = {
      {"/usr/bin/vlc --started-from-file %U",
       {QStringLiteral("/usr/bin/vlc"), QStringLiteral("--started-from-file"), address}},
      {"vlc", {QStringLiteral("vlc"), address}},
      {"\"/opt/my vlc\" %i %c %f", {QStringLiteral("/opt/my vlc"), address}},
      {"flatpak run org.v @@u %u @@",
       {QStringLiteral("flatpak"), QStringLiteral("run"), QStringLiteral("org.v"),
        QStringLiteral("@@u"), address, QStringLiteral("@@")}},
      {"vlc 100%% %",
       {QStringLiteral("vlc"), QStringLiteral("100%"), QStringLiteral("%"), address}},
  };
  for (const auto& [exec, expected] : cases)
    EXPECT_EQ(with(exec).value_or(QStringList()), expected) << exec;
  for (const char* exec : {"", "%U", "%i", "\"\""}) EXPECT_FALSE(with(exec)) << exec;
  EXPECT_FALSE(desktopEntry::command("", address));
  EXPECT_FALSE(desktopEntry::command("[Other]\nExec=vlc\n", address));
  EXPECT_FALSE(desktopEntry::command("[Desktop Entry]\nExec=vlc\nHidden=true\n", address));
}

TEST(DesktopEntry, ReadsAssociationsOfTheRightGroup) {
  const QByteArray list =
      "[Added Associations]\nx-scheme-handler/magnet=no.desktop;\n"
      "[Default Applications]\n# x\nx-scheme-handler/magnet=a.desktop;b.desktop;\n";
  const QString type = QStringLiteral("x-scheme-handler/magnet");
  EXPECT_EQ(desktopEntry::associations(list, "Default Applications", type),
            QStringList({QStringLiteral("a.desktop"), QStringLiteral("b.desktop")}));
  EXPECT_TRUE(desktopEntry::associations(list, "MIME Cache", type).isEmpty());
}

} // namespace
} // namespace vellum
