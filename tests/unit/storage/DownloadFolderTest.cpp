#include "storage/DownloadFolder.h"
#include <QSet>
#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(DownloadFolderTest, AFileIsNamedByTheLastComponentOfItsAddress) {
  struct Case {
    const char* url;
    const char* name;
  };
  for (const auto& [url, name] :
       {Case{"http://h/a/film.mp4", "film.mp4"},
        Case{"http://h/a/my%20film.mp4?x=/y#z/w", "my film.mp4"},
        Case{"http://h/a%2Fb.mp4", "a_b.mp4"}, Case{"http://h/%2e%2e%2f%2e%2e%2fetc", ".._.._etc"},
        Case{"http://h/%C3%BC.mp4", "ü.mp4"}, Case{"http://h/%FF.mp4", "%FF.mp4"},
        Case{"http://h/100%25.mp4", "100%.mp4"}, Case{"http://h/a%00b.mp4", "a_b.mp4"},
        Case{"http://h/a%0Ab%7F%C2%85.mp4", "a_b__.mp4"},
        Case{"http://h/%E2%80%AE4pm.exe%E2%81%A6%E2%80%8F%D8%9C", "_4pm.exe___"},
        Case{"http://h/%E2%80%8D%F0%9F%98%80.mp4", "\u200d😀.mp4"}, // a joiner belongs to words
        Case{"http://h/film/", "film"}, Case{"http://h/", "_"}, Case{"http://h", ""}})
    EXPECT_EQ(downloadFolder::fileName(QUrl(QLatin1String(url))).toStdString(), name) << url;
}

TEST(DownloadFolderTest, TheFirstFreeNumberIsPutBeforeTheExtension) {
  struct Case {
    const char* name;
    QSet<QString> taken;
    const char* path;
  };
  const auto at = [](const char* name) { return QStringLiteral("/d/") + QLatin1String(name); };
  for (const auto& [name, taken, path] :
       {Case{"film.mp4", {}, "/d/film.mp4"}, Case{"film.mp4", {at("film.mp4")}, "/d/film 1.mp4"},
        Case{"film.mp4", {at("film.mp4"), at("film 1.mp4")}, "/d/film 2.mp4"},
        Case{"film.mp4", {at("film.mp4"), at("film 2.mp4")}, "/d/film 1.mp4"},
        Case{"film 1.mp4", {at("film 1.mp4")}, "/d/film 1 1.mp4"},
        Case{"a.tar.gz", {at("a.tar.gz")}, "/d/a.tar 1.gz"},
        Case{"film", {at("film")}, "/d/film 1."}, Case{".mp4", {at(".mp4")}, "/d/.mp4 1."},
        Case{"..", {at("..")}, "/d/.. 1."}, Case{"", {at("")}, "/d/ 1."}})
    for (const auto& folder : {QStringLiteral("/d"), QStringLiteral("/d/")}) {
      const auto isTaken = [&taken = taken](const QString& p) { return taken.contains(p); };
      EXPECT_EQ(downloadFolder::freePath(folder, QLatin1String(name), isTaken).toStdString(), path);
    }
}

TEST(DownloadFolderTest, TheStemIsCutToWhatAFileSystemTakes) {
  const auto nothing = [](const QString&) { return false; };
  const auto one = [](const QString& path) { return !path.endsWith(QLatin1String(" 10.mp4")); };
  const auto times = [](int n, const char* text) { return QString::fromUtf8(text).repeated(n); };
  const QString mp4 = QStringLiteral(".mp4");
  struct Case {
    QString name;
    QString first;
    QString tenth; // when nine are taken
  };
  const QString tenth = QStringLiteral(" 10.mp4");
  for (const auto& [name, first, numbered] :
       {Case{times(251, "x") + mp4, times(251, "x") + mp4, times(248, "x") + tenth},
        Case{times(252, "x") + mp4, times(251, "x") + mp4, times(248, "x") + tenth},
        Case{times(126, "ü") + mp4, times(125, "ü") + mp4, times(124, "ü") + tenth},
        Case{times(63, "😀") + mp4, times(62, "😀") + mp4, times(62, "😀") + tenth}}) {
    EXPECT_EQ(downloadFolder::freePath(QStringLiteral("/d"), name, nothing).mid(3), first);
    EXPECT_EQ(downloadFolder::freePath(QStringLiteral("/d"), name, one).mid(3), numbered);
  }
  for (const QString& odd : {times(300, "x"), QStringLiteral("a.") + times(300, "x")})
    EXPECT_EQ(downloadFolder::freePath(QStringLiteral("/d"), odd, nothing).mid(3), odd.left(255));
}

TEST(DownloadFolderTest, SevenExtensionsOfAnyCaseAreFilms) {
  for (const char* name : {"a.mp4", "a.M4V", "a.mov", "a.mkv", "b.a.AVI", "a.webm", "a.ogv"})
    EXPECT_TRUE(downloadFolder::isVideo(QLatin1String(name))) << name;
  for (const char* name : {"mp4", ".mp4", "a.mp4.part", "a.mp3", "a.", "a.mp44", ""})
    EXPECT_FALSE(downloadFolder::isVideo(QLatin1String(name))) << name;
}

} // namespace
} // namespace vellum
