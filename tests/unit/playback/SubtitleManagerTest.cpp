#include "playback/SubtitleManager.h"
#include "net/NetError.h"
#include "world/MainThread.h"
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <map>
#include <sys/stat.h>

namespace vellum::test {

using namespace world;
namespace {

using namespace std::chrono_literals;

QString text(const char* latin1) { return QString::fromLatin1(latin1); }

SubtitleTrack remote(const char* name) {
  return {text(name), QUrl(text("https://subs.example/") + text(name) + text("?x=.ass"))};
}

struct SubtitleManagerTest : testing::Test, MainThread {
  SubtitleManagerTest() { make(); }
  void make() {
    pool.emplace();
    subtitles.emplace(main, *pool, [this](QUrl url, std::chrono::milliseconds timeout) {
      return fetch(*this, std::move(url), timeout);
    });
  }
  // What the network answers, by the track's name; everything else fails. Set before it is asked.
  std::map<QString, QByteArray> answers;
  std::map<QString, std::atomic<bool>> held; // answers that wait until it is false
  std::atomic<int> asked = 0;

  static Flow<QByteArray> fetch(SubtitleManagerTest& self, QUrl url,
                                std::chrono::milliseconds timeout) {
    EXPECT_TRUE(!self.main.isCurrentThread() && timeout == 20s);
    ++self.asked;
    const auto gate = self.held.find(url.fileName());
    // Deaf to its cancellation, so that late answers really come.
    if (gate != self.held.end())
      co_await asio::this_coro::reset_cancellation_state(asio::disable_cancellation());
    while (gate != self.held.end() && gate->second) co_await sleepFor(1ms);
    const auto answer = self.answers.find(url.fileName());
    if (answer == self.answers.end()) throw NetError::http(404);
    co_return answer->second;
  }
  QUrl write(const char* name, const QByteArray& bytes) {
    QFile file(home.filePath(text(name)));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    return QUrl::fromLocalFile(file.fileName());
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

  QTemporaryDir home;
  std::optional<IoPool> pool;
  std::optional<SubtitleManager> subtitles;
};

TEST_F(SubtitleManagerTest, ShowsTheTextAtThePlayhead) {
  int published = 0;
  QObject::connect(&*subtitles, &SubtitleManager::currentTextChanged, [&] { ++published; });
  answers[text("a.srt")] = "0:1 --> 0:2\n&lt;<b>A</b>\n\n0:2 --> 0:3\n&lt;A\n\n0:1 --> 0:9\nB";
  load(remote("a.srt"));
  EXPECT_EQ(error(), "-");
  EXPECT_FALSE(subtitles->currentText()) << "only a playhead shows anything";
  published = 0;
  const std::tuple<double, const char*, int> steps[] = {
      {0.99, "-", 0}, {1, "&lt;A", 1}, {2.5, "&lt;A", 1}, {3, "&lt;A", 1},       {3.01, "B", 2},
      {9, "B", 2},    {9.01, "-", 3},  {5, "B", 4},       {std::nan(""), "-", 5}};
  for (const auto& [time, text, count] : steps) {
    EXPECT_EQ(shown(time), text) << time;
    EXPECT_EQ(published, count) << time;
  }
  EXPECT_EQ(shown(1), "&lt;A");
  subtitles->select(subtitles->selected());
  EXPECT_FALSE(subtitles->currentText());
  EXPECT_EQ(shown(1), "-") << "not before the file has been read again";
  subtitles->select(std::nullopt);
  EXPECT_FALSE(subtitles->selected());
}

TEST_F(SubtitleManagerTest, ReadsEachFileInItsFormatOrSaysWhyNot) {
  const std::string tooLarge = std::string("Subtitles failed: ") + NetError::tooLarge().what();
  const QByteArray ass = "Dialogue: 0,0:1,0:2,,,,,,,A";
  ASSERT_EQ(mkfifo(qPrintable(home.filePath(text("pipe.srt"))), 0600), 0);
  const auto local = [&](const char* name) {
    return QUrl::fromLocalFile(home.filePath(text(name)));
  };
  QFile large(write("large.srt", {}).toLocalFile());
  ASSERT_TRUE(large.open(QIODevice::ReadWrite) && large.resize(SubtitleManager::kLargestFile + 1));
  answers[text("web.ass")] = ass;
  answers[text("huge.srt")] = QByteArray(SubtitleManager::kLargestFile + 1, 'x');
  const std::pair<SubtitleTrack, std::string> rows[] = {
      {{text("1"), write("a.SSA", ass)}, "-"},
      {{text("2"), write("b c#%41?.ass", ass)}, "-"},
      {{text("3"), write("none", "0:1 --> 0:2\n\xe9")}, "-"},
      {{text("5 %1"), write("b.srt", ass)}, "No subtitle cues found in 5 %1"},
      {{text("7"), local("gone.srt")}, "Subtitles failed: No such file or directory"},
      {{text("8"), local("pipe.srt")}, "Subtitles failed: This is not a file."},
      {{text("9"), local("large.srt")}, tooLarge},
      {remote("web.ass"), "-"},
      {remote("gone.srt"), "Subtitles failed: HTTP 404"},
      {remote("huge.srt"), tooLarge}};
  for (const auto& [track, sentence] : rows) {
    load(track);
    EXPECT_EQ(error(), sentence);
    EXPECT_EQ(subtitles->cues().size(), error() == "-" ? 1U : 0U);
    EXPECT_EQ(subtitles->selected(), track);
  }
  subtitles->select(std::nullopt);
  EXPECT_EQ(error(), "-");
}

TEST_F(SubtitleManagerTest, KeepsTracksAndAddsAFileOnce) {
  const SubtitleTrack mine{text("my file.srt"), write("my file.srt", "0:1 --> 0:2\nA")};
  subtitles->reset({remote("a")});
  subtitles->addLocal(mine.url);
  subtitles->select(std::nullopt);
  subtitles->addLocal(mine.url);
  EXPECT_EQ(subtitles->tracks(), (SubtitleTracks{remote("a"), mine}));
  EXPECT_EQ(subtitles->selected(), mine);
  ASSERT_TRUE(turnUntil([&] { return shown(1) == "A"; }));
  subtitles->reset({});
  EXPECT_TRUE(subtitles->tracks().empty() && !subtitles->selected() && !subtitles->currentText() &&
              subtitles->cues().empty());
}

TEST_F(SubtitleManagerTest, ALateAnswerOrFailureWritesNothing) {
  answers[text("late")] = "0:1 --> 0:2\nlate";
  answers[text("new")] = "0:1 --> 0:2\nnew";
  enum class Then { Reset, Off, Other, Gone };
  for (const char* name : {"late", "late failure"})
    for (const Then then : {Then::Reset, Then::Off, Then::Other, Then::Gone}) {
      held[text(name)] = true;
      asked = 0;
      subtitles->select(remote(name));
      ASSERT_TRUE(turnUntil([&] { return asked == 1; }));
      if (then == Then::Reset) subtitles->reset({remote("new")});
      if (then == Then::Off) subtitles->select(std::nullopt);
      if (then == Then::Other) load(remote("new"));
      if (then == Then::Gone) subtitles.reset();
      held[text(name)] = false;
      pool.reset(); // ends when the last flow has, its way back to the main thread included
      if (then != Then::Gone) {
        EXPECT_EQ(error(), "-");
        EXPECT_EQ(shown(1), then == Then::Other ? "new" : "-");
      }
      subtitles.reset();
      make();
    }
}

} // namespace
} // namespace vellum::test
