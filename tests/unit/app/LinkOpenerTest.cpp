#include "app/LinkOpener.h"
#include "net/NetError.h"
#include "world/MainThread.h"
#include "world/SeededTorrent.h"
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;
namespace {

struct LinkOpenerTest : testing::Test, MainThread, LinkOpener::Surroundings {
  QString torrentDir() override { return folder.filePath(QStringLiteral("torrents")); }
  void torrentStored() override { ++stored; }
  bool openWithDesktop(const QString&) override { return hasClient; }

  static Flow<QByteArray> fetch(QByteArray bytes, QUrl url, std::chrono::milliseconds timeout) {
    if (timeout != std::chrono::seconds(25) || url.host() != QLatin1String("h"))
      throw NetError::http(404);
    co_return bytes;
  }
  QString path(const char* name, const QByteArray& bytes) {
    const QString made = folder.filePath(QLatin1String(name));
    QFile file(made);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    return made;
  }
  // What came of it: a name, or a notice.
  QString outcome() {
    turnUntil([&] { return navigation.inspector() || navigation.notice(); });
    const QString text = navigation.inspector() ? navigation.inspector()->name
                                                : navigation.notice().value_or(QString());
    last = navigation.inspector();
    navigation.setInspector(std::nullopt);
    navigation.setNotice(std::nullopt);
    return text;
  }

  IoPool pool;
  QTemporaryDir folder;
  const QByteArray torrent =
      SeededTorrent::make(QStringLiteral("film.mkv"),
                          {{QStringLiteral("film.mkv"), ByteVector(100'000)}}, 65536)
          .torrentFile();
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

const QString kBad = QStringLiteral("Couldn't read torrent: Not a valid .torrent file");

TEST_F(LinkOpenerTest, WhatTheSystemHandsOverIsInspectedOrDropped) {
  const QString magnet = QStringLiteral("magnet:?dn=M&xt=urn:btih:") + QString(40, u'a');
  opener.open(magnet);
  EXPECT_EQ(outcome(), QStringLiteral("M"));
  EXPECT_FALSE(last->fileUrl);
  opener.open(QStringLiteral("magnet:?dn=M"));
  EXPECT_EQ(outcome(), QStringLiteral("That doesn't look like a valid magnet link."));

  const QString good = path("Movie.TORRENT", torrent);
  for (const QString& link : {good, QUrl::fromLocalFile(good).toString()}) {
    opener.open(link);
    EXPECT_EQ(outcome(), QStringLiteral("film.mkv"));
    EXPECT_EQ(last->videos, 1);
    EXPECT_EQ(last->fileUrl, QUrl::fromLocalFile(good));
  }
  opener.open(QStringLiteral("https://h/web.torrent?a=b"));
  EXPECT_EQ(outcome(), QStringLiteral("film.mkv"));
  EXPECT_EQ(last->fileUrl, QUrl::fromLocalFile(torrentDir() + QStringLiteral("/web.torrent")));
  opener.open(path("noise.torrent", "noise"));
  EXPECT_EQ(outcome(), kBad);
  opener.open(folder.filePath(QStringLiteral("missing.torrent")));
  EXPECT_TRUE(outcome().startsWith(QStringLiteral("Couldn't read torrent: ")));
  for (const QString& dropped : {path("Movie.txt", torrent), magnet.toUpper(), QString()})
    opener.open(dropped);
  QCoreApplication::processEvents();
  EXPECT_FALSE(navigation.inspector() || navigation.notice());
}

TEST_F(LinkOpenerTest, RemoteFilesAreKeptAndInspected) {
  opener.inspectTorrentUrl(QUrl(QStringLiteral("http://h/a/x.y.torrent?id=1")));
  EXPECT_EQ(outcome(), QStringLiteral("film.mkv"));
  QFile kept(torrentDir() + QStringLiteral("/x.y.torrent"));
  ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
  EXPECT_EQ(kept.readAll(), torrent);
  EXPECT_EQ(last->fileUrl, QUrl::fromLocalFile(kept.fileName()));
  EXPECT_EQ(stored, 1);
  remote = "noise";
  opener.inspectTorrentUrl(QUrl(QStringLiteral("http://h/n.torrent")));
  EXPECT_EQ(outcome(), kBad);
  EXPECT_TRUE(QFile::exists(torrentDir() + QStringLiteral("/n.torrent")));
  opener.inspectTorrentUrl(QUrl(QStringLiteral("http://other/n.torrent")));
  EXPECT_EQ(outcome(), QStringLiteral("Couldn't read torrent: HTTP 404"));
  EXPECT_EQ(stored, 1);
  ASSERT_TRUE(kept.remove() && QFile::remove(torrentDir() + QStringLiteral("/n.torrent")));
  ASSERT_TRUE(QDir().rmdir(torrentDir()));
  path("torrents", "in the way"); // what cannot be kept can still be inspected
  remote = torrent;
  opener.inspectTorrentUrl(QUrl(QStringLiteral("http://h/x.torrent")));
  EXPECT_EQ(outcome(), QStringLiteral("film.mkv"));
}

TEST_F(LinkOpenerTest, SaysWhenNoProgramTakesALink) {
  opener.openExternally(QStringLiteral("magnet:?xt=x"));
  EXPECT_EQ(outcome(), QStringLiteral("No app on this Mac is registered to open magnet links. "
                                      "Install a BitTorrent client to use it."));
  opener.openExternally(QStringLiteral("file:///x.torrent"));
  EXPECT_TRUE(outcome().contains(QStringLiteral("to open .torrent files.")));
  hasClient = true;
  opener.openExternally(QStringLiteral("magnet:?xt=x"));
  EXPECT_FALSE(navigation.notice());
}

} // namespace
} // namespace vellum::test
