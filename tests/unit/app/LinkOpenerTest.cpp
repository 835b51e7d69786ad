#include "app/LinkOpener.h"
#include "base/ReplaceFile.h"
#include "net/NetError.h"
#include "world/MainThread.h"
#include "world/SeededTorrent.h"
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vellum::test {

using namespace Qt::StringLiterals;
using namespace world;
namespace {

constexpr char kBad[] = "Couldn't read torrent: Not a valid .torrent file";

struct LinkOpenerTest : testing::Test, MainThread, LinkOpener::Surroundings {
  QString torrentDir() override { return folder.filePath(u"torrents"_s); }
  void torrentStored() override { ++stored; }
  bool openWithDesktop(const QString&) override { return hasClient; }

  static Flow<QByteArray> fetch(QByteArray bytes, QUrl url, std::chrono::milliseconds timeout) {
    if (timeout != std::chrono::seconds(25) || url.host() != QLatin1String("h"))
      throw NetError::http(404);
    co_return bytes;
  }
  QString write(const char* name, const QByteArray& bytes) {
    const QString path = folder.filePath(QLatin1String(name));
    EXPECT_TRUE(replaceFile(path, bytes, Privacy::Everybody));
    return path;
  }
  // What came of it: a name, or a notice.
  std::string outcome() {
    turnUntil([&] { return navigation.inspector() || navigation.notice(); });
    last = navigation.inspector();
    const QString said = last ? last->name : navigation.notice().value_or(QString());
    navigation.setInspector(std::nullopt);
    navigation.setNotice(std::nullopt);
    return said.toStdString();
  }
  std::string opened(const QString& link) {
    opener.open(link);
    return outcome();
  }
  std::string fetched(const char* url) {
    opener.inspectTorrentUrl(QUrl(QLatin1String(url)));
    return outcome();
  }

  IoPool pool;
  QTemporaryDir folder;
  const QByteArray torrent =
      SeededTorrent::make(u"Film"_s, {{u"film.mkv"_s, ByteVector(9)}}, 65536).torrentFile();
  QByteArray remote = torrent;
  Navigation navigation;
  int stored = 0;
  bool hasClient = false;
  std::optional<TorrentInfo> last;
  LinkOpener opener{main, pool,
                    [this](QUrl url, std::chrono::milliseconds timeout) {
                      return fetch(remote, std::move(url), timeout);
                    },
                    navigation, *this};
};

TEST_F(LinkOpenerTest, WhatTheSystemHandsOverIsInspectedOrDropped) {
  const QString magnet = u"magnet:?dn=M&xt=urn:btih:"_s + QString(40, u'a');
  EXPECT_EQ(opened(magnet), "M");
  EXPECT_FALSE(last->fileUrl);
  EXPECT_EQ(opened(u"magnet:?dn=M"_s), "That doesn't look like a valid magnet link.");
  const QString good = write("Movie.TORRENT", torrent);
  for (const QString& link : {good, QUrl::fromLocalFile(good).toString()}) {
    EXPECT_EQ(opened(link), "Film");
    EXPECT_EQ(last->videos, 1);
    EXPECT_EQ(last->fileUrl, QUrl::fromLocalFile(good));
  }
  EXPECT_EQ(opened(write("noise.torrent", "noise")), kBad);
  ASSERT_TRUE(QDir(folder.path()).mkdir(u"folder.torrent"_s));
  EXPECT_EQ(opened(folder.filePath(u"folder.torrent"_s)), kBad);
  EXPECT_EQ(opened(folder.filePath(u"missing.torrent"_s)),
            "Couldn't read torrent: No such file or directory");
  for (const QString& dropped : {write("Movie.txt", torrent), magnet.toUpper(), QString()})
    opener.open(dropped);
  QCoreApplication::processEvents();
  EXPECT_FALSE(navigation.inspector() || navigation.notice());
  EXPECT_EQ(stored, 0);
  EXPECT_EQ(opened(u"https://h/web.torrent?a=b"_s), "Film");
  EXPECT_EQ(stored, 1);
}

TEST_F(LinkOpenerTest, FilesOfTheWebAreKeptAndInspected) {
  EXPECT_EQ(fetched("http://h/a/x.y.torrent/?id=1"), "Film");
  QFile kept(torrentDir() + u"/x.y.torrent"_s);
  ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
  EXPECT_EQ(kept.readAll(), torrent);
  EXPECT_EQ(last->fileUrl, QUrl::fromLocalFile(kept.fileName()));
  EXPECT_EQ(fetched("http://other/n.torrent"), "Couldn't read torrent: HTTP 404");
  remote = "noise";
  EXPECT_EQ(fetched("http://h/n.torrent"), kBad);
  EXPECT_EQ(stored, 1);
  ASSERT_TRUE(QDir(torrentDir()).removeRecursively());
  write("torrents", "in the way"); // what cannot be kept can still be inspected
  remote = torrent;
  EXPECT_EQ(fetched("http://h/x.torrent"), "Film");
}

TEST_F(LinkOpenerTest, SaysWhenNoProgramTakesALink) {
  for (const auto& [link, what] : {std::pair("magnet:?xt=x", "magnet links"),
                                   std::pair("file:///x.torrent", ".torrent files")}) {
    opener.openExternally(QLatin1String(link));
    EXPECT_EQ(outcome(), std::string("No app on this Mac is registered to open ") + what +
                             ". Install a BitTorrent client to use it.");
  }
  hasClient = true;
  opener.openExternally(u"magnet:?xt=x"_s);
  EXPECT_FALSE(navigation.notice());
}

TEST(Navigation, SectionsHaveNamesAndOnlyChangesAreTold) {
  const QStringList names =
      u"home discover search torrents library downloads settings"_s.split(u' ');
  for (int i = 0; i < 7; ++i) {
    EXPECT_EQ(rawValue(SidebarSection(i)), names[i]);
    EXPECT_EQ(sidebarSection(names[i]), SidebarSection(i));
  }
  EXPECT_FALSE(sidebarSection(u"Home"_s));
  Navigation navigation;
  int told = 0;
  QObject::connect(&navigation, &Navigation::sectionChanged, [&] { ++told; });
  QObject::connect(&navigation, &Navigation::showPlayerChanged, [&] { ++told; });
  for (int i = 0; i < 2; ++i) navigation.setSection(SidebarSection::Library);
  for (int i = 0; i < 2; ++i) navigation.setShowPlayer(true);
  EXPECT_EQ(told, 2);
}

} // namespace
} // namespace vellum::test
