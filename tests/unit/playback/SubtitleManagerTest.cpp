#include "playback/SubtitleManager.h"
#include "Script.h"
#include "net/NetError.h"
#include "world/MainThread.h"
#include <QFile>
#include <QTemporaryDir>
#include <map>

namespace vellum::test {

using namespace world;
namespace {

using namespace std::chrono_literals;

SubtitleTrack remote(const char* name) {
  return {text(name), QUrl(text("https://subs.example/") + text(name) + text("?x=.ass"))};
}

struct SubtitleManagerTest : testing::Test, MainThread {
  SubtitleManagerTest() { make(); }
  void make() {
    pool.emplace();
    subtitles.emplace(main, *pool, [this](QUrl url, std::chrono::milliseconds timeout) {
      EXPECT_TRUE(!main.isCurrentThread() && timeout == 20s);
      return fetch(*this, url.fileName());
    });
  }
  static Flow<QByteArray> fetch(SubtitleManagerTest& self, QString name) {
    if (name == u"late") {
      // Deaf to its cancellation, so that late answers really come.
      co_await asio::this_coro::reset_cancellation_state(asio::disable_cancellation());
      self.isAsked = true;
      while (self.isAsked) co_await sleepFor(1ms);
    }
    const auto answer = self.answers.find(name);
    if (answer == self.answers.end()) throw NetError::http(404);
    co_return answer->second;
  }
  void load(const SubtitleTrack& track) {
    subtitles->select(track);
    EXPECT_TRUE(turnUntil([&] { return subtitles->error() || !subtitles->cues().empty(); }));
  }
  std::string shown(double time) {
    subtitles->update(time);
    return subtitles->currentText().value_or(text("-")).toStdString();
  }
  std::string error() const { return subtitles->error().value_or(text("-")).toStdString(); }

  // What the network answers, by the track's name; everything else fails. Set before it is asked.
  std::map<QString, QByteArray> answers;
  std::atomic<bool> isAsked = false; // for "late", which waits until it is false again
  std::optional<IoPool> pool;
  std::optional<SubtitleManager> subtitles;
};

TEST_F(SubtitleManagerTest, ShowsTheTextAtThePlayhead) {
  int published = 0;
  QObject::connect(&*subtitles, &SubtitleManager::currentTextChanged, [&] { ++published; });
  // A moment, two that touch, one that has no time, one below them all.
  answers[text("a.srt")] = "0:4 --> 0:4\nM\n\n0:1 --> 0:2\n&lt;<b>A</b>\n\n0:2 --> 0:3\n&lt;A\n\n"
                           "0:6 --> 0:5\nnone\n\n0:1 --> 0:9\n\xe9\n\n0:5 --> 0:6\nlast";
  load(remote("a.srt"));
  EXPECT_FALSE(subtitles->currentText()) << "only a playhead shows anything";
  published = 0;
  const std::tuple<double, const char*, int> steps[] = {
      {0.99, "-", 0},        {1, "&lt;A", 1},       {2, "&lt;A", 1}, {3, "&lt;A", 1},
      {3.01, "\xc3\xa9", 2}, {3.99, "\xc3\xa9", 2}, {4, "M", 3},     {4.01, "\xc3\xa9", 4},
      {5.5, "\xc3\xa9", 4},  {9, "\xc3\xa9", 4},    {9.01, "-", 5},  {6, "\xc3\xa9", 6},
      {std::nan(""), "-", 7}};
  for (const auto& [time, text, count] : steps) {
    EXPECT_EQ(shown(time), text) << time;
    EXPECT_EQ(published, count) << time;
  }
  EXPECT_EQ(shown(1), "&lt;A");
  subtitles->select(subtitles->selected());
  EXPECT_FALSE(subtitles->currentText());
  EXPECT_EQ(shown(1), "-") << "not before the file has been read again";
}

TEST_F(SubtitleManagerTest, ReadsEachFileInItsFormatOrSaysWhyNot) {
  const QTemporaryDir home;
  const QByteArray ass = "Dialogue: 0,0:1,0:2,,,,,,,A",
                   large(SubtitleManager::kLargestFile + 1, 'x');
  const auto local = [&](const char* name, const QByteArray& bytes = {}) {
    QFile file(home.filePath(text(name)));
    if (!bytes.isEmpty()) EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) > 0);
    return QUrl::fromLocalFile(file.fileName());
  };
  answers[text("web.ass")] = ass;
  answers[text("huge.srt")] = large;
  const std::string tooLarge = std::string("Subtitles failed: ") + NetError::tooLarge().what();
  const std::pair<SubtitleTrack, std::string> rows[] = {
      {{text("1"), local("b c#%41?.SSA", ass)}, "-"},
      {{text("2"), local("none", "0:1 --> 0:2\n\xe9")}, "-"},
      {{text("5 %1"), local("b.srt", ass)}, "No subtitle cues found in 5 %1"},
      {{text("8"), QUrl::fromLocalFile(home.path())}, "Subtitles failed: This is not a file."},
      {{text("9"), local("large.srt", large)}, tooLarge},
      {remote("web.ass"), "-"},
      {remote("gone.srt"), "Subtitles failed: HTTP 404"},
      {remote("huge.srt"), tooLarge}};
  for (const auto& [track, sentence] : rows) {
    load(track);
    EXPECT_EQ(error(), sentence);
    EXPECT_EQ(subtitles->cues().size(), error() == "-" ? 1U : 0U);
  }
  subtitles->select(std::nullopt);
  EXPECT_EQ(error(), "-");
}

TEST_F(SubtitleManagerTest, KeepsTracksAndAddsAFileOnce) {
  const SubtitleTrack mine = remote("my file.srt");
  answers[mine.name] = "0:1 --> 0:2\nA";
  subtitles->reset({remote("a")});
  for (int i = 0; i < 2; ++i) {
    subtitles->addLocal(mine.url);
    EXPECT_EQ(subtitles->tracks(), (SubtitleTracks{remote("a"), mine}));
    EXPECT_EQ(subtitles->selected(), mine);
    ASSERT_TRUE(turnUntil([&] { return shown(1) == "A"; }));
  }
  subtitles->reset({});
  EXPECT_TRUE(subtitles->tracks().empty() && !subtitles->selected() && shown(1) == "-");
}

TEST_F(SubtitleManagerTest, ALateAnswerWritesNothing) {
  answers[text("late")] = "0:1 --> 0:2\nlate";
  answers[text("new")] = "0:1 --> 0:2\nnew";
  for (const bool isGone : {false, true}) {
    subtitles->select(remote("late"));
    ASSERT_TRUE(turnUntil([&] { return isAsked.load(); }));
    isGone ? subtitles.reset() : load(remote("new"));
    isAsked = false;
    pool.reset(); // ends when the last flow has, its way back to the main thread included
    if (!isGone) EXPECT_EQ(shown(1), "new");
    subtitles.reset();
    make();
  }
}

} // namespace
} // namespace vellum::test
