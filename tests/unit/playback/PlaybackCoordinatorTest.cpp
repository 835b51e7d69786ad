#include "PlaybackWorld.h"
#include "formats/TorrentMetadata.h"

namespace vellum::test {
namespace {

using PlaybackTest = PlaybackWorld;
using Stage = StreamStage;
using Kind = RowState::Kind;

constexpr std::int64_t kFilmSize = 1'000'000'000;
const std::vector<TorrentFileEntry> kFilm{{QStringLiteral("dir/film.mkv"), kFilmSize},
                                          {QStringLiteral("dir/en.srt"), 1000},
                                          {QStringLiteral("dir/de.vtt"), 2000}};
const QString kHash(40, u'a');

QString sentence(const char* utf8) { return QString::fromUtf8(utf8); }

// From a pressed Play to the buffering stage.
void bufferTheFilm(PlaybackWorld& world) {
  world.session->snap.meta = PlaybackWorld::meta(kFilm);
  world.coordinator->playFromSearchResult(PlaybackWorld::result("a", "Film"));
  world.turn();
  ASSERT_TRUE(world.coordinator->stream());
  ASSERT_EQ(world.stream().stage, Stage::Buffering);
}
void playTheFilm(PlaybackWorld& world) {
  bufferTheFilm(world);
  world.session->snap.streamReady = true;
  world.pass(0.4);
  ASSERT_EQ(world.stream().stage, Stage::Playing);
  world.takeEvents();
}

TEST_F(PlaybackTest, TheEntryChoosesTheVariantAndAsksAboutDeadTorrents) {
  TorrentResults list;
  for (const char* title : {"F 480p", "F 720p", "F 1080p", "F 2160p"}) {
    list.push_back(result(&"bcde"[list.size()], title, list.size() == 3 ? 0 : 5));
    list.back().baseTitle = QStringLiteral("F");
  }
  coordinator->setAllResults([&] { return list; });
  struct Case {
    std::optional<QString> quality;
    bool skip;
    const char* played;
  };
  for (const auto& [quality, skip, played] :
       {Case{{}, false, "F 1080p"}, Case{QStringLiteral("720p"), false, "F 720p"},
        Case{QStringLiteral("8K"), false, "F 1080p"}, Case{{}, true, "F 480p"}}) {
    coordinator->playFromSearchResult(list[0], quality, skip);
    EXPECT_EQ(stream().title, QLatin1String(played));
  }
  EXPECT_EQ(presented, 4);
  const StreamState before = stream();
  coordinator->playFromSearchResult(list[0], QStringLiteral("2160p"));
  ASSERT_TRUE(coordinator->zeroSeedPrompt());
  EXPECT_EQ(coordinator->zeroSeedPrompt()->result, list[3]);
  EXPECT_EQ(coordinator->zeroSeedPrompt()->quality, QStringLiteral("2160p"));
  EXPECT_EQ(stream(), before); // what runs goes on
  coordinator->playFromSearchResult(list[3], {}, true, true);
  EXPECT_EQ(stream().title, QStringLiteral("F 2160p"));
  coordinator->playFromSearchResult(result("f", "unknown", {}));
  EXPECT_EQ(stream().title, QStringLiteral("unknown"));
}

TEST_F(PlaybackTest, PlayOnARowThatPlaysOnlyShowsIt) {
  const TorrentResult film = result("a", "Film");
  playTheFilm(*this);
  const int before = presented;
  coordinator->playFromSearchResult(film);
  EXPECT_EQ(presented, before + 1);
  EXPECT_TRUE(takeEvents().isEmpty());
  session->snap = {};
  coordinator->playFromSearchResult(result("b", "Other")); // starting
  coordinator->playFromSearchResult(result("b", "Other")); // starts over
  turn();
  EXPECT_EQ(takeEvents().join(u'|'), QStringLiteral("release|stop|stop|acquire bbbb Other 0"));
  EXPECT_FALSE(coordinator->rowStates().contains(kHash));
}

TEST_F(PlaybackTest, TheHashComesFromMagnetThenHashThenTorrentFile) {
  const QString base32 = QStringLiteral("magnet:?xt=urn:btih:") + QString(32, u'a');
  const char* nothing = "This result has no magnet link or torrent file to stream.";
  struct Case {
    const char* magnet;
    QString hash;
    bool hasTorrent;
    const char* event; // the last one
    const char* failure;
  };
  const QByteArray c = "magnet:?xt=urn:btih:" + QByteArray(40, 'c') + "&tr=udp://t:1";
  for (const auto& [magnet, hash, hasTorrent, event, failure] :
       {Case{c, kHash, true, "acquire cccc T 1", ""},
        Case{"magnet:?dn=x", kHash, true, "acquire aaaa T 0", ""},
        Case{"", QStringLiteral("zz"), true, "fetch h 25", nothing},
        Case{"", {}, false, "stop", nothing}}) {
    TorrentResult row = result("a", "T");
    row.magnet = *magnet != 0 ? std::optional(QString::fromLatin1(magnet)) : std::nullopt;
    row.infoHash = hash.isEmpty() ? std::nullopt : std::optional(hash);
    if (hasTorrent) row.torrentURL = QUrl(QStringLiteral("http://h/t.torrent"));
    coordinator->playFromSearchResult(row);
    turn();
    EXPECT_EQ(takeEvents().last(), QLatin1String(event)) << magnet;
    EXPECT_EQ(failureText(), QLatin1String(failure));
  }
  fetchError = NetError::http(404);
  TorrentResult row = result("a", "T");
  row.infoHash.reset();
  row.torrentURL = QUrl(QStringLiteral("http://h/t.torrent"));
  coordinator->playFromSearchResult(row);
  turn();
  EXPECT_EQ(failureText(), QStringLiteral("Couldn't download the .torrent file: HTTP 404"));
  EXPECT_EQ(coordinator->rowStates().value(row.id), (RowState{Kind::Failed, failureText()}));
}

TEST_F(PlaybackTest, BothDiskChecksHoldAtTheirExactBytes) {
  session->snap.meta = meta(kFilm);
  const std::int64_t needed = kFilmSize + 3000;
  struct Case {
    std::int64_t free;
    const char* failure;
  };
  for (const auto& [free, failure] :
       {Case{314572799,
             "Not enough free disk space for the streaming cache (less than 300 MB free)."},
        Case{314572800, "Not enough free disk space for the cache (1 GB needed)."},
        Case{needed + 209715199, "Not enough free disk space for the cache (1 GB needed)."},
        Case{needed + 209715200, ""}}) {
    freeBytes = free;
    coordinator->playFromSearchResult(result("a", "Film"));
    turn();
    EXPECT_EQ(failureText(), QLatin1String(failure)) << free;
  }
  EXPECT_EQ(stream().stage, Stage::Buffering);
  EXPECT_EQ(session->selected, 0);
  EXPECT_EQ(session->selectedSubtitles, std::vector<int>({1, 2}));
}

TEST_F(PlaybackTest, MetadataIsWaitedForAMinute) {
  TorrentResult row = result("a", "Film");
  row.magnet = QStringLiteral("magnet:?xt=urn:btih:") + kHash +
               QStringLiteral("&x.pe=h:1&x.pe=h&x.pe=[::1]:2");
  coordinator->playFromSearchResult(row);
  turn();
  EXPECT_EQ(session->peers,
            (std::vector<PeerAddr>{{QStringLiteral("h"), 1}, {QStringLiteral("[::1]"), 2}}));
  EXPECT_EQ(stream().stage, Stage::Connecting);
  session->snap.peers = 2;
  pass(0.4);
  EXPECT_EQ(stream().stage, Stage::Metadata);
  session->snap.peers = 0;
  pass(59.6);
  EXPECT_EQ(stream().stage, Stage::Connecting); // sixty seconds sharp
  EXPECT_FALSE(stream().failure);
  pass(0.4);
  EXPECT_EQ(stream().failure, (StreamFailure{StreamFailure::Kind::NoMetadata, {}}));
  pass(10);
  EXPECT_TRUE(sleepers.empty());
  coordinator->retry();
  session->snap.meta = meta({{QStringLiteral("readme.txt"), 5}});
  turn();
  EXPECT_EQ(stream().failure, (StreamFailure{StreamFailure::Kind::NoVideo, {}}));
}

TEST_F(PlaybackTest, TheFileQuestionIsAnsweredOnceOrEndsTheFlow) {
  session->snap.meta =
      meta({{QStringLiteral("a.mkv"), kFilmSize}, {QStringLiteral("b.mkv"), kFilmSize}});
  const auto ask = [&] {
    coordinator->playFromSearchResult(result("a", "Film"));
    turn();
    return stream().choices.size();
  };
  ASSERT_EQ(ask(), 2U);
  coordinator->pickFile(1);
  coordinator->pickFile(0);
  turn();
  EXPECT_EQ(session->selected, 1);
  EXPECT_TRUE(stream().choices.empty());
  session->selected.reset();
  for (const bool byAnswer : {true, false}) {
    ASSERT_EQ(ask(), 2U);
    if (byAnswer)
      coordinator->pickFile(std::nullopt);
    else
      coordinator->endStream();
    turn();
    pass(1);
    EXPECT_FALSE(session->selected);
    EXPECT_TRUE(sleepers.empty());
  }
}

TEST_F(PlaybackTest, AStreamStallsOnlyWithoutPeersAndWithoutBlocks) {
  bufferTheFilm(*this);
  const auto fails = [&] { return stream().failure.has_value(); };
  session->snap.secondsSinceProgress = 100;
  pass(45);
  EXPECT_FALSE(fails()); // not more than 45 seconds
  session->snap.peers = 1;
  session->snap.streamProgress = 0.5;
  pass(100); // peers that deliver nothing are waited for
  EXPECT_EQ(stream().progress, 0.5);
  session->snap.peers = 0;
  session->snap.secondsSinceProgress = 45;
  pass(46);
  EXPECT_FALSE(fails());
  session->snap.secondsSinceProgress = 45.1;
  pass(0.4);
  EXPECT_EQ(stream().failure, (StreamFailure{StreamFailure::Kind::Stalled, {}}));
  const QString text = coordinator->rowStates().value(kHash).text;
  coordinator->endStream();
  EXPECT_FALSE(coordinator->stream());
  EXPECT_EQ(coordinator->rowStates().value(kHash).text, text); // until the next Play
}

TEST_F(PlaybackTest, HandsOverInOrderAndResumesFromTheHistory) {
  const QString key = kHash + QStringLiteral("|dir/film.mkv");
  struct Case {
    double position, duration, startAt;
  };
  for (const auto& [position, duration, startAt] :
       {Case{10, 0, 0}, Case{10.5, 0, 10.5}, Case{95, 100, 0}, Case{94.9, 100, 94.9}}) {
    HistoryEntry old;
    old.key = key;
    old.position = position;
    old.duration = duration;
    library.record(old);
    bufferTheFilm(*this);
    EXPECT_EQ(coordinator->nowPlaying()->key, QStringLiteral("pending|") + kHash);
    session->snap.streamReady = true;
    const int before = presented;
    takeEvents();
    pass(0.4);
    EXPECT_EQ(takeEvents().join(u'|'), QStringLiteral("load film.mkv %1").arg(startAt));
    EXPECT_EQ(coordinator->nowPlaying()->key, key);
    EXPECT_EQ(coordinator->rowStates().value(kHash).kind, Kind::Playing);
    EXPECT_EQ(presented, before + 1);
    const HistoryEntry row = library.history().front();
    EXPECT_EQ(row.itemID, kHash);
    EXPECT_EQ(row.source, makeMagnet(kHash, QStringLiteral("Film")));
    EXPECT_EQ(row.duration, duration);
    EXPECT_FALSE(row.isLocal);
    session->snap.streamReady = false;
    coordinator->close();
    EXPECT_EQ(takeEvents().join(u'|'), QStringLiteral("release|stop"));
    EXPECT_FALSE(coordinator->nowPlaying() || coordinator->activeSession());
  }
  bufferTheFilm(*this);
  session->address.reset();
  session->snap.streamReady = true;
  pass(0.4);
  EXPECT_EQ(failureText(), QStringLiteral("Couldn't start the local streaming server."));
}

TEST_F(PlaybackTest, SavesEveryFiveSecondsAndForgetsOnClosingAsItDoes) {
  playTheFilm(*this);
  const auto saved = [&] { return library.history().front().position; };
  length = 100;
  const auto play = [&](double at) {
    time = at;
    coordinator->playerTime(at);
    return saved();
  };
  EXPECT_EQ(play(4.9), 0);
  EXPECT_EQ(play(5.0), 5.0);
  EXPECT_EQ(play(9.9), 5.0);
  EXPECT_EQ(play(4.9), 5.0);
  EXPECT_EQ(play(60), 60);
  EXPECT_EQ(play(54.9), 54.9); // backwards too
  coordinator->playerFinished();
  EXPECT_EQ(saved(), 0);
  EXPECT_EQ(play(60), 60);
  coordinator->close(); // the player's last word is a 0
  EXPECT_EQ(saved(), 0);
}

TEST_F(PlaybackTest, TheMonitorTellsWhyThePlayerWaits) {
  playTheFilm(*this);
  struct Round {
    double seconds;
    bool buffering;
    int peers;
    double sinceProgress;
    const char* notice;
  };
  for (const auto& [seconds, waits, peers, sinceProgress, notice] :
       {Round{1, true, 0, 99, ""}, Round{20, true, 0, 99, ""},
        Round{1, true, 0, 99, "Stream stalled — no peers connected"}, Round{1, true, 1, 15, ""},
        Round{1, true, 1, 15.1, "Waiting for data from peers…"}, Round{1, false, 1, 99, ""},
        Round{1, true, 0, 99, ""}, Round{20, true, 0, 0, ""}}) {
    buffering = waits;
    session->snap.peers = peers;
    session->snap.secondsSinceProgress = sinceProgress;
    pass(seconds);
    EXPECT_EQ(stream().notice.value_or(QString()), sentence(notice)) << seconds;
    EXPECT_EQ(stream().peers, peers);
  }
}

TEST_F(PlaybackTest, SubtitlesArriveOneByOneAndTheFirstIsSwitchedOn) {
  playTheFilm(*this);
  pass(1);
  EXPECT_TRUE(subtitles.tracks().empty());
  session->complete = {2};
  pass(1);
  ASSERT_EQ(subtitles.tracks().size(), 1U);
  EXPECT_EQ(subtitles.selected()->name, QStringLiteral("de.vtt"));
  session->complete = {1, 2};
  pass(1);
  EXPECT_EQ(subtitles.tracks().size(), 2U);
  EXPECT_EQ(subtitles.selected()->name, QStringLiteral("de.vtt"));
  EXPECT_EQ(session->extracted, QStringList({folder.path() + QStringLiteral("/subs/de.vtt"),
                                             folder.path() + QStringLiteral("/subs/en.srt")}));
}

TEST_F(PlaybackTest, AFailedPlayerLeadsToMpvThenVlcThenAFailure) {
  const QString url = session->address->toString();
  struct Case {
    const char* executable;
    const char* onPath;
    bool launches, hasVlc;
    QString events;
  };
  const QString stopped = QStringLiteral("stop|clearError");
  const auto mpv = [&](const char* at) {
    return QLatin1String(at) + QStringLiteral(" --force-window=yes ") + url;
  };
  for (const auto& [path, found, starts, vlc, expected] :
       {Case{"/usr/local/bin/mpv", "/usr/bin/mpv", true, true,
             mpv("/usr/local/bin/mpv") + u'|' + stopped},
        Case{"", "/usr/bin/mpv", true, true, mpv("/usr/bin/mpv") + u'|' + stopped},
        Case{"/opt/homebrew/bin/mpv", "/usr/bin/mpv", false, true,
             mpv("/opt/homebrew/bin/mpv") + QStringLiteral("|vlc ") + url + u'|' + stopped},
        Case{"", "", true, true, QStringLiteral("vlc ") + url + u'|' + stopped},
        Case{"", "", true, false, QString()}}) {
    coordinator->endStream();
    session->snap.streamReady = false;
    playTheFilm(*this);
    executable = QLatin1String(path);
    onPath = QLatin1String(found);
    launches = starts;
    hasVlc = vlc;
    coordinator->playerFailed();
    EXPECT_EQ(takeEvents().join(u'|'), expected);
    if (!expected.isEmpty()) {
      EXPECT_TRUE(stream().notice->startsWith(expected.contains(QStringLiteral("vlc"))
                                                  ? QStringLiteral("Playing in VLC (")
                                                  : QStringLiteral("Playing in mpv (")));
      pass(1);
      EXPECT_FALSE(stream().notice); // the monitor goes on
    }
  }
  EXPECT_EQ(stream().failure, (StreamFailure{StreamFailure::Kind::Unsupported, {}}));
  hasVlc = true;
  coordinator->playerFailed(); // one decision for a failure
  EXPECT_TRUE(takeEvents().isEmpty());
  coordinator->endStream();
  takeEvents();
  coordinator->playerFailed(); // a plain file: nobody else is asked
  EXPECT_TRUE(takeEvents().isEmpty());
}

TEST_F(PlaybackTest, ResumesRowsOfTheHistory) {
  HistoryEntry entry;
  entry.itemID = QStringLiteral("item");
  entry.key = QStringLiteral("item|a|b.mp4");
  entry.title = QStringLiteral("T");
  entry.source = QStringLiteral("https://h/a%20b.mp4");
  entry.position = 50;
  library.record(entry);
  coordinator->play(entry);
  EXPECT_EQ(takeEvents().join(u'|'), QStringLiteral("load a b.mp4 50"));
  EXPECT_EQ(coordinator->nowPlaying()->key, entry.key);
  entry.key = QStringLiteral("plain");
  entry.source = QStringLiteral("/tmp/x y.mp4");
  entry.isLocal = true;
  coordinator->play(entry);
  EXPECT_EQ(library.history().front().key, QStringLiteral("item|plain"));
  EXPECT_EQ(library.history().front().source, entry.source);
  EXPECT_TRUE(library.history().front().isLocal);
  entry.isLocal = false;
  entry.source.clear();
  takeEvents();
  coordinator->play(entry);
  EXPECT_TRUE(takeEvents().isEmpty());
  entry.source = QStringLiteral("magnet:?xt=urn:btih:") + kHash;
  entry.itemID = kHash;
  coordinator->play(entry);
  turn();
  EXPECT_EQ(takeEvents().last(), QStringLiteral("acquire aaaa T 0"));
}

// Whatever the flow waits for, its end and the coordinator's are quiet.
TEST_F(PlaybackTest, CanBeCancelledAtEveryWait) {
  for (const bool destroyed : {false, true})
    for (int step = 0; step < 5; ++step) {
      session->snap = {};
      TorrentResult row = result("a", "Film");
      if (!coordinator) {
        coordinator.emplace(main.executor(), PlaybackCoordinator::Services{*this, *this, subtitles,
                                                                           library, players});
      }
      coordinator->playFromSearchResult(row);                             // 0: not begun
      if (step > 0) turn();                                               // 1: metadata
      if (step > 1) session->snap.meta = meta(kFilm), pass(0.4);          // 2: buffering
      if (step > 2) session->snap.streamReady = true, clock.advance(0.4); // 3: about to hand over
      if (step > 3) pass(0.4);                                            // 4: monitor
      if (step == 3)
        for (auto& sleeper : std::exchange(sleepers, {})) sleeper.wake({});
      takeEvents();
      if (destroyed)
        coordinator.reset();
      else
        coordinator->endStream();
      turn();
      pass(5);
      EXPECT_TRUE(sleepers.empty()) << step;
      EXPECT_FALSE(takeEvents().join(u'|').contains(QStringLiteral("load"))) << step;
    }
}

} // namespace
} // namespace vellum::test
