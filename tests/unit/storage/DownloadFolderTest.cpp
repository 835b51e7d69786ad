#include "storage/DownloadFolder.h"
#include "base/ReplaceFile.h"
#include <QFile>
#include <QTemporaryDir>
#include <array>
#include <gtest/gtest.h>

namespace vellum::downloadFolder {
namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

TEST(DownloadFolderTest, AFileIsNamedByTheLastComponentOfItsAddress) {
  using Case = std::pair<const char*, const char*>;
  for (const auto& [url, name] :
       {Case{"http://h/a/film.mp4", "film.mp4"},
        Case{"http://h/a/my%20film.mp4?x=/y#z/w", "my film.mp4"},
        Case{"http://h/a%2Fb.mp4", "a_b.mp4"}, Case{"http://h/%2e%2e%2f%2e%2e%2fetc", ".._.._etc"},
        Case{"http://h/%C3%BC.mp4", "ü.mp4"}, Case{"http://h/%FF.mp4", "%FF.mp4"},
        Case{"http://h/100%25.mp4", "100%.mp4"}, Case{"http://h/a%00b.mp4", "a_b.mp4"},
        Case{"http://h/a%0Ab%7F%C2%85.mp4", "a_b__.mp4"}, Case{"http://h/film/", "film"},
        Case{"http://h//", "_"}, Case{"http://h/", "_"}, Case{"http://h", ""}})
    EXPECT_EQ(fileName(QUrl(QLatin1String(url))).toStdString(), name) << url;

  const auto named = [](char16_t code) {
    return fileName(QUrl(text("http://h/a") + QChar(code) + text("b.mp4")));
  };
  // Marks, separators and overrides of direction, at the edges of their ranges.
  for (const char16_t code : {0x061C, 0x200E, 0x200F, 0x2028, 0x202E, 0x2066, 0x2069})
    EXPECT_EQ(named(code), text("a_b.mp4")) << int(code);
  for (const char16_t code : {0x061D, 0x200D, 0x2010, 0x2027, 0x202F, 0x206A}) // joiners belong
    EXPECT_EQ(named(code), text("a") + QChar(code) + text("b.mp4")) << int(code);
}

TEST(DownloadFolderTest, TheFirstFreeNumberIsPutBeforeTheExtensionAndTheStemIsCutToFit) {
  const auto times = [](int n, const char* part) { return text(part).repeated(n).toStdString(); };
  const auto x = [&](int n) { return times(n, "x"); };
  using Case = std::array<std::string, 3>;
  for (const auto& [name, taken, free] :
       {Case{"film.mp4", "film", "film.mp4"}, Case{"film.mp4", "film.mp4|film 1.mp4", "film 2.mp4"},
        Case{"film.mp4", "film.mp4|film 2.mp4", "film 1.mp4"},
        Case{"film 1.mp4", "film 1.mp4", "film 1 1.mp4"}, Case{"a.b", "a.b", "a 1.b"},
        Case{"a.tar.gz", "a.tar.gz", "a.tar 1.gz"}, Case{"film", "film", "film 1."},
        Case{"film.", "film.", "film. 1."}, Case{".mp4", ".mp4", ".mp4 1."},
        Case{"..", "..", ".. 1."}, Case{"", "|", " 1."},
        // No extension is longer than 40 characters.
        Case{"a." + x(40), "a." + x(40), "a 1." + x(40)},
        Case{"a." + x(41), "a." + x(41), "a." + x(41) + " 1."},
        // No name has more than 255 bytes.
        Case{x(251) + ".mp4", "film", x(251) + ".mp4"},
        Case{x(252) + ".mp4", "film", x(251) + ".mp4"},
        Case{x(252) + ".mp4", x(251) + ".mp4", x(249) + " 1.mp4"},
        Case{times(126, "ü") + ".mp4", "film", times(125, "ü") + ".mp4"},
        Case{times(63, "😀") + ".mp4", times(62, "😀") + ".mp4", times(62, "😀") + " 1.mp4"},
        Case{x(300), "film", x(255)}, Case{"a." + x(300), "film", "a." + x(253)}})
    for (const char* folder : {"/d", "/d/"}) {
      const auto isTaken = [names = text(taken.c_str()).split(u'|')](const QString& path) {
        return path.startsWith(text("/d/")) && names.contains(path.mid(3));
      };
      EXPECT_EQ(freePath(text(folder), text(name.c_str()), isTaken).toStdString(), "/d/" + free);
    }
}

TEST(DownloadFolderTest, ListsTheFilmsAtItsTopLevelNewestFirst) {
  const QTemporaryDir home;
  const QString folder = home.filePath(text("not/there/yet"));
  EXPECT_TRUE(list(folder).empty());
  ASSERT_FALSE(make(folder));
  for (const char* name :
       {"a.mp4", "a.M4V", "a.mov", "a.mkv", "b.a.AVI", "a.webm", "a.ogv", // seven films, and others
        "mp4", ".mp4", ".c.mp4", "a.mp4.part", "a.mp3", "a.", "a.mp44", "sub.mp4/f.mp4"})
    EXPECT_TRUE(replaceFile(folder + u'/' + text(name), "mine", Privacy::Everybody));
  for (const char* lost : {"/lost.avi", "/lost2.avi"}) // they lead nowhere, and have no age
    ASSERT_TRUE(QFile::link(text("/nowhere"), folder + text(lost)));
  const SavedFiles saved = list(folder);
  ASSERT_EQ(saved.size(), 9);
  for (std::size_t i = 0; i < 7; ++i) {
    EXPECT_EQ(saved[i].size, 4);
    EXPECT_GE(saved[i].added, saved[i + 1].added);
  }
  EXPECT_EQ(saved[7],
            (SavedFile{QUrl::fromLocalFile(folder + text("/lost.avi")), 0, kDistantPast}));
  EXPECT_EQ(saved[8].url.fileName(), text("lost2.avi"));
  EXPECT_EQ(make(folder + text("/mp4/x")), text("Not a directory"));
  EXPECT_EQ(make(text("relative")), text("No such file or directory"));
}

} // namespace
} // namespace vellum::downloadFolder
