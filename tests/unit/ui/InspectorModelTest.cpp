#include "ui/torrents/InspectorModel.h"
#include "world/MainThread.h"
#include <gtest/gtest.h>

namespace vellum::ui {

using namespace world;
namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

struct InspectorModelTest : testing::Test, world::MainThread, LinkOpener::Surroundings {
  QString torrentDir() override { return {}; }
  void torrentStored() override {}
  bool openWithDesktop(const QString& link) override {
    events += text("open ") + link;
    return true;
  }
  static TorrentInfo torrent() {
    TorrentInfo info;
    info.name = text("A\nname");
    info.infoHash = text("abc");
    info.magnet = text("magnet:?a");
    info.fileUrl = QUrl::fromLocalFile(text("/x y.torrent"));
    info.trackers = {text("t"), text("u")};
    info.files = {{text("d/Film.MKV"), 2000},
                  {text("d/sample.mp4"), 1},
                  {text("d/film.srt"), 1},
                  {text("mkv"), 1}};
    info.videos = 2; // as whoever read the file has counted
    return info;
  }
  void pressAll() {
    model.copyMagnet();
    model.openMagnet();
    model.openFile();
    model.revealFile();
  }

  IoPool pool;
  Navigation navigation;
  LinkOpener links{main, pool, FetchData(), navigation, *this};
  QStringList events;
  InspectorModel model{{navigation, links,
                        [this](const QString& copied) { events += text("copy ") + copied; },
                        [this](const QString& path) { events += text("reveal ") + path; }}};
};

TEST_F(InspectorModelTest, TellsAFileFromALinkAndKeepsTheLastForItsWayOut) {
  EXPECT_FALSE(model.isShown());
  pressAll();
  EXPECT_TRUE(events.isEmpty());

  navigation.setInspector(torrent());
  EXPECT_TRUE(model.isShown());
  EXPECT_EQ(model.name(), text("A\uFFFDname"));
  EXPECT_EQ(model.hashText(), text("Info hash: abc"));
  EXPECT_EQ(model.countText(), text("4 file(s) · 2 video · 2 tracker(s)"));
  QStringList rows;
  for (int i = 0; i < model.rowCount(); ++i)
    rows += model.data(model.index(i), InspectorModel::NameRole).toString() + u' ' +
            model.data(model.index(i), InspectorModel::KindRole).toString();
  EXPECT_EQ(rows.join(u'|'),
            text("d/Film.MKV video|d/sample.mp4 video|d/film.srt subtitles|mkv other"));
  pressAll();
  EXPECT_EQ(events.join(u'|'),
            text("copy magnet:?a|open magnet:?a|open /x y.torrent|reveal /x y.torrent"));

  events.clear();
  links.inspectMagnet(text("magnet:?xt=urn:btih:%1").arg(QString(40, u'a')));
  EXPECT_EQ(model.rowCount(), 0);
  EXPECT_FALSE(model.hasFile());
  pressAll();
  EXPECT_EQ(events.size(), 2);

  model.close();
  EXPECT_FALSE(model.isShown() || navigation.inspector());
  EXPECT_EQ(model.hashText(), text("Info hash: ") + QString(40, u'a'));
}

} // namespace
} // namespace vellum::ui
