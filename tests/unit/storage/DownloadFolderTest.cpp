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

TEST(DownloadFolderTest, SevenExtensionsOfAnyCaseAreFilms) {
  for (const char* name : {"a.mp4", "a.M4V", "a.mov", "a.mkv", "b.a.AVI", "a.webm", "a.ogv"})
    EXPECT_TRUE(downloadFolder::isVideo(QLatin1String(name))) << name;
  for (const char* name : {"mp4", ".mp4", "a.mp4.part", "a.mp3", "a.", "a.mp44", ""})
    EXPECT_FALSE(downloadFolder::isVideo(QLatin1String(name))) << name;
}

} // namespace
} // namespace vellum
