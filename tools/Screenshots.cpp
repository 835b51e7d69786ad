// Pictures of every state of every screen, each at the smallest and at a common size.
//   vellum-screenshots FOLDER [WORD]   with a word, only the groups whose name begins with it
#include "tools/WindowWorld.h"
#include "ui/controls/Look.h"
#include "ui/language/Language.h"
#include "world/CatalogItems.h"
#include "world/LoopbackSeeder.h"
#include <QDir>
#include <QGuiApplication>
#include <algorithm>
#include <cstdio>

using namespace vellum;
using namespace vellum::tools;
using namespace vellum::world;

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

class Photographer {
public:
  explicit Photographer(const QString& folder) : m_folder(folder) { m_folder.mkpath(text(".")); }

  void torrents();
  void inspector();
  void player();
  void failures();
  void catalog();
  void manage();
  void settings();

private:
  WindowState& state() { return m_world.state(); }
  Driver& see() { return m_world.drive(); }

  void shoot(const char* name, int settling = 300) {
    for (const QSize size : {QSize(980, 640), QSize(1440, 900)}) {
      m_world.window().resize(size);
      QTest::qWait(settling);
      const QString file = text("%1-%2.png").arg(text(name)).arg(size.width());
      if (!see().settle().save(m_folder.filePath(file)))
        std::fprintf(stderr, "not saved: %s\n", name);
    }
  }
  template <class Condition>
  static void wait(Condition holds, int limit = 20'000) {
    if (!QTest::qWaitFor(holds, limit)) std::fprintf(stderr, "waited in vain\n");
  }
  void submit(const char* words) {
    see().focus(text("searchField"));
    see().press(Qt::Key_A, Qt::ControlModifier);
    see().type(words);
    see().press(Qt::Key_Return);
  }
  void open(const char* section) { see().click(text("section-") + text(section)); }
  TorrentResult row(const SeededTorrent& torrent, const QStringList& peers) const {
    TorrentResult made;
    made.infoHash = toHex(torrent.infoHash);
    made.id = *made.infoHash;
    made.title = torrent.name;
    made.magnet = torrent.magnet({}, peers);
    return made;
  }
  void play(const SeededTorrent& torrent, const LoopbackSeeder* seeder) {
    const QString peer = text("127.0.0.1:%1").arg(seeder ? seeder->port() : 9);
    state().playback.coordinator.playFromSearchResult(row(torrent, {peer}), {}, true, true);
  }
  void fail(const char* name, int limit) {
    wait([&] { return see().shows(text("streamFailure")) || see().shows(text("failureText")); },
         limit);
    shoot(name);
    state().stop();
  }
  bool reaches(StreamStage stage) {
    const auto& stream = state().playback.coordinator.stream();
    return stream && stream->stage == stage;
  }
  SeededTorrent film() const;

  QDir m_folder;
  WindowWorld m_world;
};

SeededTorrent Photographer::film() const {
  return SeededTorrent::fromDisk(m_world.filmFolder().toStdString(), 65536);
}

void Photographer::torrents() {
  open("torrents");
  wait([&] { return see().shows(text("searchField")); });
  shoot("torrents-before");
  submit("demo");
  wait([&] { return !state().app.aggregator.isSearching(); });
  shoot("torrents-results");
  see().press(Qt::Key_Tab);
  see().tabTo(text("resultList"));
  see().press(Qt::Key_Down);
  shoot("torrents-selected");
  for (const char* control : {"resolutionPicker", "formatPicker", "maxSizePicker", "sourcesButton",
                              "actionsButton", "variantsButton", "playbackMenuButton"}) {
    see().click(text(control));
    shoot((QByteArray("torrents-") + control).constData());
    see().press(Qt::Key_Escape);
    QTest::qWait(300);
  }
  submit("film");
  wait([&] { return !state().app.aggregator.isSearching(); });
  shoot("torrents-many");
  submit("trailer");
  wait([&] { return !state().app.aggregator.isSearching(); });
  see().click(text("playButton"));
  shoot("alert-seeders");
  see().press(Qt::Key_Escape);
  submit("nothing that anybody has");
  wait([&] { return !state().app.aggregator.isSearching(); });
  shoot("torrents-empty");

  ProviderConfig slow;
  slow.name = text("Slow");
  slow.kind = ProviderKind::Apibay;
  slow.baseURL = m_world.indexer("webpage").replace(text("/webpage"), text("/slow"));
  state().app.registry.add(slow);
  submit("demonstration");
  shoot("torrents-searching", 150);
  for (const ProviderConfig& config : state().app.settings.providers())
    state().app.registry.setEnabled(config.id, false);
  open("home");
  open("torrents");
  shoot("torrents-no-providers");
}

void Photographer::inspector() {
  open("torrents");
  state().links.open(m_world.magnet());
  shoot("inspector-magnet", 600);
  state().links.open(m_world.torrentFile());
  shoot("inspector-file", 600);
  state().navigation.setInspector({});
  state().links.inspectMagnet(text("not a link"));
  shoot("alert-notice", 600);
  state().navigation.setNotice({});
}

void Photographer::player() {
  SeederOptions slow;
  slow.uploadRate = 400'000;
  slow.servesMetadata = false;
  {
    const LoopbackSeeder mute(film(), slow);
    play(film(), nullptr);
    shoot("player-connecting", 600);
    state().stop();
    play(film(), &mute);
    wait([&] { return reaches(StreamStage::Metadata); });
    shoot("player-metadata");
    state().stop();
  }
  slow.servesMetadata = true;
  {
    const LoopbackSeeder seeder(film(), slow);
    play(film(), &seeder);
    wait([&] { return reaches(StreamStage::Buffering); });
    shoot("player-buffering", 900);
    see().press(Qt::Key_Escape);
    shoot("mini-buffering");
    state().stop();
  }
  const ByteVector noise(3'000'000, std::byte{'x'});
  std::vector<TestFile> episodes;
  for (int i = 1; i <= 24; ++i)
    episodes.push_back(
        {text("A Series/Season 1/A.Series.S01E%1.A.Title.mkv").arg(i, 2, 10, QChar(u'0')), noise});
  const auto series = SeededTorrent::make(text("A Series"), episodes, 262144);
  const LoopbackSeeder many(series);
  play(series, &many);
  wait([&] { return see().shows(text("streamChoices")); });
  shoot("player-choices");
  state().stop();

  const LoopbackSeeder seeder(film());
  play(film(), &seeder);
  VideoPlayerManager& player = state().playback.player;
  wait([&] { return player.currentTime() > 0.5; });
  wait([&] { return see().shows(text("subtitleText")); });
  shoot("player-playing", 600);
  for (const char* menu : {"speed", "aspect", "subtitles"}) {
    see().click(text(menu));
    shoot((QByteArray("player-menu-") + menu).constData());
    see().press(Qt::Key_Escape);
    QTest::qWait(300);
  }
  see().press(Qt::Key_Space);
  wait([&] { return !player.isPlaying(); });
  shoot("player-paused");
  see().press(Qt::Key_Escape);
  shoot("mini-paused");
  state().stop();
}

void Photographer::failures() {
  qputenv("PATH", m_folder.path().toUtf8()); // no player to hand over to
  const auto noVideo = SeededTorrent::make(
      text("Words"), {{text("a.txt"), ByteVector(1000)}, {text("b.txt"), ByteVector(2000)}}, 16384);
  const LoopbackSeeder words(noVideo);
  play(noVideo, &words);
  fail("failure-no-video", 20'000);
  const auto noise =
      SeededTorrent::make(text("Noise"),
                          {{text("noise.mkv"), ByteVector(3'000'000, std::byte{'x'})},
                           {text("b.txt"), ByteVector(2000)}},
                          16384);
  const LoopbackSeeder noisy(noise);
  play(noise, &noisy);
  fail("failure-unsupported", 30'000);
  TorrentResult nothing;
  nothing.id = text("x");
  nothing.title = text("Nothing to stream");
  state().playback.coordinator.playFromSearchResult(nothing, {}, true, true);
  fail("failure-other", 5000);
  const QString cache = state().app.settings.cachePath();
  state().app.settings.setCachePath(text("/proc"));
  play(noise, &noisy);
  fail("failure-disk", 5000);
  state().app.settings.setCachePath(cache);

  QFile broken(m_folder.filePath(text("broken.mp4")));
  if (!broken.open(QIODevice::WriteOnly) || broken.write(QByteArray(100'000, 'x')) < 0)
    std::fprintf(stderr, "no broken film\n");
  broken.close();
  state().entries.playLocal(QUrl::fromLocalFile(broken.fileName()));
  wait([&] { return see().shows(text("errorCard")); });
  shoot("player-error-card");
  state().stop();
  broken.remove();

  play(film(), nullptr);
  fail("failure-no-metadata", 70'000);
  SeederOptions dying;
  dying.closeAfter = 200'000;
  dying.uploadRate = 400'000;
  const LoopbackSeeder gone(film(), dying);
  play(film(), &gone);
  fail("failure-stalled", 120'000);
}

void Photographer::catalog() {
  shoot("home-loading", 20);
  wait([&] { return !state().app.catalog.featured().empty(); });
  shoot("home", 1200);
  open("discover");
  wait([&] { return !state().app.catalog.discoverResults().empty(); });
  shoot("discover-grid", 1200);
  see().click(text("listButton"));
  shoot("discover-list", 800);
  see().click(text("gridButton"));
  open("search");
  shoot("search-before");
  submit("vellum");
  wait([&] { return !state().app.catalog.searching(); });
  shoot("search-results", 800);
  submit("nothing that anybody has");
  wait([&] { return !state().app.catalog.searching(); });
  shoot("search-empty");

  // One of each kind: that plays, that is restricted, without a film, with MKV files alone.
  for (const CatalogItem& kind : inventedItems({})) {
    const bool isMkvOnly = std::ranges::none_of(kind.files, [](const CatalogItemFile& file) {
      return file.name.endsWith(text(".mp4")) || file.name.endsWith(text(".ogv"));
    });
    if (kind.id != text("VellumDemoFilm") && !kind.restricted && !isMkvOnly) continue;
    MediaItem item; // as the torrent search hands it on: with little more than its name
    item.id = kind.id;
    item.title = kind.title;
    item.year = QString::number(kind.year);
    state().navigation.setSelectedItem(item);
    shoot((QByteArray("item-") + kind.id.toUtf8()).constData(), 1500);
    state().navigation.setSelectedItem({});
    QTest::qWait(300);
  }
}

void Photographer::manage() {
  open("library");
  shoot("library-empty");
  open("downloads");
  shoot("downloads-empty");
  MediaItem item;
  item.id = text("VellumDemoFilm");
  item.title = text("Vellum Demo Film");
  const QString base = m_world.indexer("webpage").remove(text("/webpage"));
  ArchiveFile file;
  file.name = text("Vellum.Test.Film.480p.mp4");
  file.url = QUrl(base + text("/download/VellumDemoFilm/") + file.name);
  state().entries.download(file, item, state().app.downloads);
  file.url = QUrl(base + text("/download/VellumDemoFilm/missing.mp4"));
  state().entries.download(file, item, state().app.downloads);
  const SeededTorrent torrent = film();
  const LoopbackSeeder seeder(torrent);
  play(torrent, &seeder);
  wait([&] { return state().playback.player.currentTime() > 0.5; });
  see().press(Qt::Key_Space);
  see().press(Qt::Key_Escape);
  open("downloads");
  shoot("downloads", 1000);
  open("library");
  shoot("library", 1000);
  state().stop();
  see().press(Qt::Key_Tab);
  see().click(text("pageAction"));
  shoot("library-clear-history", 500);
  see().press(Qt::Key_Escape);
  QTest::qWait(300);
  settings();
}

void Photographer::settings() {
  open("settings");
  shoot("settings", 600);
  see().click(text("editButton"));
  shoot("settings-edit", 600);
  see().click(text("mirrorsEditor"));
  for (const QString& mirror : {text("http://127.0.0.1:1"), m_world.indexer("webpage")}) {
    see().type(mirror.toUtf8().constData());
    see().press(Qt::Key_Return);
  }
  see().type("not an address");
  shoot("settings-mirrors", 300);
  see().click(text("testButton"));
  shoot("settings-testing", 50);
  wait([&] { return see().shows(text("result")); });
  shoot("settings-tested", 600);
  see().click(text("trashButton"));
  shoot("settings-remove", 600);
  see().press(Qt::Key_Escape);
  QTest::qWait(300);
  see().focus(text("addProviderButton"));
  shoot("settings-lower", 600);
  see().press(Qt::Key_Return);
  shoot("settings-add-provider", 600);
  see().press(Qt::Key_Escape);
  QTest::qWait(300);
  QQuickItem* scroll = see().item(text("settingsScroll"));
  scroll->setProperty("contentY", scroll->property("contentHeight").toDouble() - scroll->height());
  shoot("settings-end", 600);
}

} // namespace

int main(int argc, char** argv) {
  QGuiApplication app(argc, argv);
  speak(app);
  prepareLook(app);
  if (argc < 2) return EXIT_FAILURE;
  const QString only = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QString();
  const std::pair<const char*, void (Photographer::*)()> groups[] = {
      {"torrents", &Photographer::torrents}, {"inspector", &Photographer::inspector},
      {"player", &Photographer::player},     {"failures", &Photographer::failures},
      {"catalog", &Photographer::catalog},   {"manage", &Photographer::manage}};
  for (const auto& [name, take] : groups) {
    if (!text(name).startsWith(only)) continue;
    Photographer photographer(QString::fromLocal8Bit(argv[1]));
    (photographer.*take)();
  }
  return EXIT_SUCCESS;
}
