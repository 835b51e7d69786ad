#include "PlaybackWorld.h"
#include "Script.h"
#include "formats/TorrentMetadata.h"

namespace vellum::test {
namespace {

constexpr std::int64_t kFilmSize = 1'000'000'000;
const QString kHash(40, u'a');

std::vector<TorrentFileEntry> files(const char* names) {
  std::vector<TorrentFileEntry> files;
  for (const QString& name : text(names).split(u' '))
    files.push_back({name, name.endsWith(text(".mkv")) ? kFilmSize : 1000});
  return files;
}
const std::vector<TorrentFileEntry> kFilm =
    files("dir/film.mkv dir/en.sub dir/en.srt dir/de.vtt extra/en.srt");

// What the flow reads of the session, what the user does, and what the player tells.
struct PlaybackTest : PlaybackWorld, Scripted {
  void step(const QString& word, double value) override {
    SessionSnapshot& snap = session->snap;
    if (word == u"film") snap = {}, snap.meta = meta(kFilm);
    if (word == u"nothing") snap = {}, snap.meta = meta(files("readme.txt"));
    if (word == u"two") snap = {}, snap.meta = meta(files("a.mkv b.mkv"));
    if (word == u"peers") snap.peers = int(value);
    if (word == u"quiet") snap.secondsSinceProgress = value;
    if (word == u"ready") snap.streamReady = true;
    if (word == u"pass") pass(value);
    if (word == u"press") coordinator->playFromSearchResult(result(value == 2 ? "b" : "a", "T"));
    if (word == u"play")
      step(text("film"), 0), step(text("press"), value), turn(), snap.streamReady = true, pass(0.4);
    if (word == u"pick")
      coordinator->pickFile(value == 9 ? std::nullopt : std::optional(int(value)));
    if (word == u"retry") coordinator->retry();
    if (word == u"end") coordinator->endStream();
    if (word == u"close") coordinator->close();
    if (word == u"wait") buffering = value != 0;
    if (word == u"time") coordinator->playerTime(time = value);
    if (word == u"finish") coordinator->playerFinished();
    if (word == u"fail") coordinator->playerFailed();
    turn();
  }
  // What happened since; the stream; the rows; what plays and the position in the newest row.
  std::string then() override {
    if (const auto file = std::exchange(session->selected, {}))
      events += text("select %1").arg(*file);
    if (const int times = std::exchange(presented, 0)) events += text("shown %1").arg(times);
    QString shown = text("-");
    if (const auto& now = coordinator->stream()) {
      const char* const stages[] = {"connecting", "metadata", "selecting", "buffering", "playing"};
      shown = now->title + u' ' + text(stages[int(now->stage)]);
      if (!now->choices.empty()) shown += text(" asks %1").arg(now->choices.size());
      if (now->notice) shown += u' ' + now->notice->section(u' ', 0, 2);
      if (now->failure) shown += text(" failed: ") + now->failure->text().section(u' ', 0, 2);
    }
    QStringList rows;
    const char* const kinds[] = {":failed", ":starting", ":playing"};
    for (const auto& [key, row] : coordinator->rowStates().asKeyValueRange())
      rows += key.first(1) + text(kinds[int(row.kind)]);
    rows.sort();
    QString plays = coordinator->nowPlaying() ? coordinator->nowPlaying()->key : text("-");
    plays.replace(kHash, text("a")).replace(QString(40, u'b'), text("b"));
    if (!library.history().empty()) plays += text(" @%1").arg(library.history().front().position);
    return (takeEvents().join(u'|') + text("; ") + shown + text("; ") + rows.join(u' ') +
            text("; ") + plays)
        .toStdString();
  }
  std::string taken() { return takeEvents().join(u'|').toStdString(); }
};

TEST_F(PlaybackTest, TheEntryChoosesTheVariantAndAsksAboutDeadTorrents) {
  TorrentResults list;
  for (const char* title : {"F 480p", "F 720p", "F 1080p", "F 2160p", "G 480p", "G 720p"}) {
    list.push_back(result(&"bcdefg"[list.size()], title, list.size() == 3 ? 0 : 5));
    list.back().baseTitle = text(title).first(1);
  }
  coordinator->setAllResults([&] { return list; });
  const auto pressed = [&](std::size_t row, const std::optional<QString>& quality = {},
                           bool skipVariants = false, bool ignoreZeroSeeders = false) {
    coordinator->playFromSearchResult(list[row], quality, skipVariants, ignoreZeroSeeders);
    return stream().title.toStdString();
  };
  EXPECT_EQ(pressed(0), "F 1080p");
  EXPECT_EQ(pressed(0, text("720p")), "F 720p");
  EXPECT_EQ(pressed(0, text("8K")), "F 1080p");
  EXPECT_EQ(pressed(0, {}, true), "F 480p");
  EXPECT_EQ(pressed(4), "G 720p");
  EXPECT_EQ(pressed(0, text("2160p")), "G 720p") << "what runs goes on";
  ASSERT_TRUE(coordinator->zeroSeedPrompt());
  EXPECT_EQ(coordinator->zeroSeedPrompt()->result, list[3]);
  EXPECT_EQ(coordinator->zeroSeedPrompt()->quality, text("2160p"));
  coordinator->clearZeroSeedPrompt();
  pressed(3, {}, true, true);
  turn();
  coordinator->retry(); // the variant itself, without a question
  EXPECT_EQ(stream().title, text("F 2160p"));
  EXPECT_FALSE(coordinator->zeroSeedPrompt());
}

TEST_F(PlaybackTest, PlayOnARowThatPlaysOnlyShowsItAndOnAnotherEndsIt) {
  script(R"(
    play      -> stop|acquire aaaa T 0|load film.mkv 0|select 0|shown 2; T playing; a:playing; a|dir/film.mkv @0
    press     -> shown 1; T playing; a:playing; a|dir/film.mkv @0
    time 3, film, press 2 -> release|stop|acquire bbbb T 0|select 0|shown 1; T buffering; b:starting; pending|b @3
    press 2   -> release|stop|acquire bbbb T 0|select 0|shown 1; T buffering; b:starting; pending|b @3
    play      -> release|stop|acquire aaaa T 0|load film.mkv 0|select 0|shown 2; T playing; a:playing; a|dir/film.mkv @0
    retry     -> release|stop|acquire aaaa T 0|load film.mkv 0|select 0|shown 2; T playing; a:playing; a|dir/film.mkv @0
    time 3, close -> release|stop; -; ; - @3
    retry     -> ; -; ; - @3)");
  EXPECT_FALSE(coordinator->activeSession() || coordinator->activeRowKey());
  EXPECT_EQ(terminated, 7) << "an external player ends with its stream";
}

TEST_F(PlaybackTest, TheHashComesFromMagnetThenHashThenTorrentFile) {
  const char* nothing = "This result has";
  const QByteArray torrent = "d4:infod6:lengthi5e4:name5:a.mkv12:piece lengthi16384e6:pieces20:"
                             "aaaaaaaaaaaaaaaaaaaaee";
  const QByteArray c = "magnet:?xt=urn:btih:" + QByteArray(40, 'c') + "&tr=udp://t:1";
  // Magnet, hash, what the address of a file answers; the last events; the failure.
  const std::tuple<QByteArray, QString, QByteArray, std::string, const char*> rows[] = {
      {c, kHash, "404", "stop|acquire cccc T 1", ""},
      {"magnet:?dn=x", kHash, "404", "stop|acquire aaaa T 0", ""},
      {{}, text("zz"), "no file", "stop|fetch h 25", nothing},
      {{}, {}, torrent, "stop|fetch h 25|acquire b22c T 0", ""},
      {{}, {}, "404", "stop|fetch h 25", "Couldn't download the"},
      {{}, {}, {}, "stop", nothing}};
  for (const auto& [magnet, hash, file, last, failure] : rows) {
    TorrentResult pressed = result("a", "T");
    pressed.magnet = magnet.isNull() ? std::nullopt : std::optional(text(magnet));
    pressed.infoHash = hash.isNull() ? std::nullopt : std::optional(hash);
    if (!file.isNull()) pressed.torrentURL = QUrl(text("http://h/t.torrent"));
    torrentFile = file;
    fetchError = file == "404" ? std::optional(NetError::http(404)) : std::nullopt;
    coordinator->playFromSearchResult(pressed);
    turn();
    EXPECT_TRUE(taken().ends_with(last)) << last;
    EXPECT_EQ(failureText().section(u' ', 0, 2), text(failure));
  }
}

TEST_F(PlaybackTest, BothDiskChecksHoldAtTheirExactBytes) {
  const std::int64_t needed = kFilmSize + 4000;
  const char* forFilm = "Not enough free disk space for the cache (1 GB needed).";
  const std::pair<std::int64_t, const char*> rows[] = {
      {314572799, "Not enough free disk space for the streaming cache (less than 300 MB free)."},
      {314572800, forFilm},
      {needed + 209715199, forFilm},
      {needed + 209715200, ""}};
  for (const auto& [free, sentence] : rows) {
    freeBytes = free;
    script("film, press");
    EXPECT_EQ(failureText(), QLatin1String(sentence)) << free;
  }
  EXPECT_EQ(session->selectedSubtitles, std::vector<int>({1, 2, 3, 4}));
}

TEST_F(PlaybackTest, MetadataIsWaitedForAMinute) {
  TorrentResult row = result("a", "T");
  row.magnet = text("magnet:?xt=urn:btih:") + kHash +
               text("&x.pe=h&x.pe=h:1909&y.pe=h:2&x.pe=h:70000&x.pe=h:+3&x.pe=h:x&x.pe=[::1]:2");
  coordinator->playFromSearchResult(row);
  turn();
  EXPECT_EQ(session->peers, (std::vector<PeerAddr>{{text("h"), 1909}, {text("[::1]"), 2}}));
  script(R"(
    peers 1             -> *
    pass 0.4            -> ; T metadata; a:starting; pending|a
    peers 0, pass 59.6  -> ; T connecting; a:starting; pending|a
    pass 0.4            -> ; T connecting failed: Couldn't fetch the; a:failed; pending|a
    nothing, retry      -> release|stop|acquire aaaa T 0|shown 1; T selecting failed: No playable video; a:failed; pending|a)");
  EXPECT_TRUE(sleepers.empty());
}

TEST_F(PlaybackTest, TheFileQuestionIsAnsweredOnceOrEndsTheFlow) {
  const std::pair<const char*, std::optional<int>> rows[] = {
      {"pick 1", 1}, {"pick 0", 0}, {"pick 2", {}}, {"pick -1", {}}, {"pick 9", {}}, {"end", {}}};
  for (const auto& [answer, file] : rows) {
    script("two, press -> *");
    script("two -> ; T selecting asks 2; a:starting; pending|a");
    EXPECT_EQ(stream().choices[1], (StreamChoice{1, text("b.mkv"), kFilmSize}));
    script(answer);
    script("pick 0, pass 1");
    EXPECT_EQ(session->selected, file) << answer;
    EXPECT_EQ(sleepers.empty(), !file) << "who is not answered goes";
    if (coordinator->stream()) EXPECT_TRUE(stream().choices.empty());
  }
}

TEST_F(PlaybackTest, AStreamStallsOnlyWithoutPeersAndWithoutBlocks) {
  script(R"(
    film, press -> *
    quiet 100, pass 45           -> ; T buffering; a:starting; pending|a
    peers 1, pass 100            -> ; T buffering; a:starting; pending|a
    peers 0, quiet 45, pass 46   -> ; T buffering; a:starting; pending|a
    quiet 45.1, pass 0.4         -> ; T buffering failed: The stream stalled; a:failed; pending|a
    end                          -> release; -; a:failed; pending|a)");
  session->address.reset();
  script("play 2 -> stop|acquire bbbb T 0|select 0|shown 1; T buffering failed: Couldn't start "
         "the; a:failed b:failed; pending|b");
}

TEST_F(PlaybackTest, HandsOverAndResumesFromTheHistory) {
  const std::tuple<double, double, double> rows[] = {
      {10, 0, 0}, {10.5, 0, 10.5}, {10.5, 1, 0}, {95, 100, 0}, {94.9, 100, 94.9}};
  for (const auto& [position, duration, startAt] : rows) {
    HistoryEntry old;
    old.key = kHash + text("|dir/film.mkv");
    old.position = position;
    old.duration = duration;
    library.record(old);
    script("play");
    EXPECT_TRUE(taken().ends_with("load film.mkv " + QString::number(startAt).toStdString()));
    const HistoryEntry row = library.history().front();
    EXPECT_EQ(row.itemID, kHash);
    EXPECT_EQ(row.source, makeMagnet(kHash, text("T")));
    EXPECT_EQ(row.duration, duration);
    subtitles.add({});
    coordinator->cancel();
    EXPECT_TRUE(subtitles.tracks().empty());
  }
}

TEST_F(PlaybackTest, SavesEveryFiveSecondsAndForgetsOnClosingAsItDoes) {
  script("play -> *");
  length = 100;
  script(R"(
    time 4.9       -> ; T playing; a:playing; a|dir/film.mkv @0
    time 5         -> ; T playing; a:playing; a|dir/film.mkv @5
    time 9.9       -> ; T playing; a:playing; a|dir/film.mkv @5
    time 0.1       -> ; T playing; a:playing; a|dir/film.mkv @5
    time 60        -> ; T playing; a:playing; a|dir/film.mkv @60
    time 54.9      -> ; T playing; a:playing; a|dir/film.mkv @54.9
    finish         -> ; T playing; a:playing; a|dir/film.mkv @0
    time 60, close -> release|stop; -; ; - @0)"); // the player's last word is a 0
  EXPECT_EQ(library.history().front().duration, 100);
}

TEST_F(PlaybackTest, TheMonitorTellsWhyThePlayerWaits) {
  script(R"(
    play -> *
    wait 1, peers 0, quiet 99, pass 1    -> ; T playing; a:playing; a|dir/film.mkv @0
    pass 20                              -> ; T playing; a:playing; a|dir/film.mkv @0
    pass 1                               -> ; T playing Stream stalled —; a:playing; a|dir/film.mkv @0
    peers 1, quiet 15, pass 1            -> ; T playing; a:playing; a|dir/film.mkv @0
    quiet 15.1, pass 1                   -> ; T playing Waiting for data; a:playing; a|dir/film.mkv @0
    wait 0, pass 1                       -> ; T playing; a:playing; a|dir/film.mkv @0
    wait 1, peers 0, pass 1              -> ; T playing; a:playing; a|dir/film.mkv @0
    quiet 0, pass 20                     -> ; T playing; a:playing; a|dir/film.mkv @0
    wait 0, pass 1                       -> ; T playing; a:playing; a|dir/film.mkv @0)");
}

TEST_F(PlaybackTest, SubtitlesArriveOneByOneAndOnlyTheFirstIsSwitchedOn) {
  script("play, pass 1");
  EXPECT_TRUE(subtitles.tracks().empty());
  session->complete = {3};
  pass(1);
  ASSERT_EQ(subtitles.tracks().size(), 1U);
  EXPECT_EQ(subtitles.selected()->name, text("de.vtt"));
  session->complete = {1, 2, 3, 4}; // pictures of text are no text; one has the other's name
  pass(1);
  ASSERT_EQ(subtitles.tracks().size(), 2U);
  EXPECT_EQ(subtitles.tracks()[1].name, text("en.srt"));
  EXPECT_EQ(subtitles.selected()->name, text("de.vtt"));
  EXPECT_EQ(session->extracted.first(), folder.path() + text("/subs/de.vtt"));
  EXPECT_EQ(session->extracted.size(), 4) << "each once";
}

TEST_F(PlaybackTest, AFailedPlayerLeadsToMpvThenVlcThenAFailure) {
  // Where mpv is, whether it starts, whether there is VLC; what happens, with "@" for the address.
  const std::tuple<const char*, const char*, bool, bool, std::string> rows[] = {
      {"/usr/local/bin/mpv", "/x", true, true,
       "/usr/local/bin/mpv --force-window=yes @|stop|clearError; T playing Playing in mpv"},
      {"", "/x", false, true,
       "/x --force-window=yes @|vlc @|stop|clearError; T playing Playing in VLC"},
      {"", "", true, true, "vlc @|stop|clearError; T playing Playing in VLC"},
      {"", "", true, false, "; T playing failed: This video's format"}};
  for (const auto& [place, found, starts, vlc, happens] : rows) {
    executable = text(place);
    onPath = text(found);
    launches = starts;
    hasVlc = vlc;
    script("end, film, press, fail, ready"); // it has nothing of this stream to fail with
    script("pass 0.4 -> *");
    script("fail");
    const QString seen = text(then().c_str()).replace(session->address->toString(), text("@"));
    EXPECT_EQ(seen.section(text("; "), 0, 1).toStdString(), happens);
  }
  hasVlc = true;
  script("fail"); // one decision for a failure
  EXPECT_EQ(taken(), "");
  script("end, fail -> release; -; a:failed; a|dir/film.mkv @0"); // nor for a plain file
}

TEST_F(PlaybackTest, ResumesRowsOfTheHistory) {
  HistoryEntry entry;
  entry.itemID = text("item");
  entry.title = text("T");
  entry.source = text("https://h/a%20b.mp4");
  entry.thumbnail = text("https://h/p.jpg");
  const std::pair<const char*, const char*> keys[] = {
      {"item|a|b", "item|a|b"}, {"|i|n", "item|n"}, {"plain", "item|plain"}, {"x|", "item|x"}};
  for (const auto& [key, kept] : keys) {
    entry.key = text(key);
    coordinator->play(entry);
    EXPECT_EQ(then(), "load a b.mp4 0; -; ; " + std::string(kept) + " @0");
  }
  EXPECT_EQ(coordinator->nowPlaying()->thumbnail, QUrl(*entry.thumbnail));
  // What plays is saved before another takes its place, which starts at its own position.
  script("time 3");
  entry.key = text("item|a|b");
  entry.position = 50;
  library.record(entry);
  coordinator->play(entry);
  EXPECT_EQ(then(), "load a b.mp4 50; -; ; item|a|b @0"); // the player's first word
  EXPECT_EQ(library.entry(text("item|x"))->position, 3);
  entry.source = text("magnet:?xt=urn:btih:") + kHash;
  entry.itemID = kHash;
  coordinator->play(entry);
  turn();
  EXPECT_EQ(then(), "stop|acquire aaaa T 0|shown 1; T connecting; a:starting; pending|a @0");
}

TEST_F(PlaybackTest, TheCoordinatorMayGoAtEveryWait) {
  for (int wait = 0; wait < 5; ++wait) {
    session->snap = {};
    coordinator.emplace(main.executor(),
                        PlaybackCoordinator::Services{*this, *this, subtitles, library, players});
    coordinator->playFromSearchResult(result("a", "T"));       // 0: not begun
    if (wait > 0) turn();                                      // 1: metadata
    if (wait > 1) session->snap.meta = meta(kFilm), pass(0.4); // 2: buffering
    session->snap.streamReady = true;
    if (wait > 2) sleepers.back().second->try_send(asio::error_code(), 0); // 3: about to hand over
    if (wait > 3) sleepers.clear(), turn();                                // 4: monitor
    taken();
    coordinator.reset();
    pass(5);
    EXPECT_TRUE(sleepers.empty()) << wait;
    EXPECT_EQ(taken(), wait == 0 ? "" : "release") << wait;
  }
}

} // namespace
} // namespace vellum::test
