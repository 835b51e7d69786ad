// The window in the demo world for a long time: plays, seeks, switches, searches, saves, closes,
// round after round, and watches what it holds meanwhile.
//   vellum-soak MINUTES   ends with 0 if nothing grew and nothing was left over
#include "platform/Memory.h"
#include "tools/WindowWorld.h"
#include "ui/controls/Look.h"
#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QRandomGenerator>
#include <cstdio>
#include <malloc.h>

using namespace vellum;
using namespace vellum::tools;

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

constexpr double kWarmUp = 300; // seconds, after which nothing may grow any more
constexpr double kGrowth = 1.05;

// What the process holds at one moment.
struct Sample {
  double at = 0;        // seconds since the start
  double megabytes = 0; // its own memory
  double allocated = 0; // of it, megabytes that somebody holds
  int descriptors = 0;
  int threads = 0;

  static Sample take(double at) {
    QFile file(text("/proc/self/smaps_rollup"));
    if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error("no /proc");
    Sample sample;
    sample.at = at;
    for (const QByteArray& line : file.readAll().split('\n'))
      if (line.startsWith("Anonymous:"))
        sample.megabytes = line.simplified().split(' ').value(1).toDouble() / 1000;
    const auto heap = ::mallinfo2();
    sample.allocated = double(heap.uordblks + heap.hblkhd) / 1e6;
    const auto entries = [](const char* folder) {
      return int(QDir(text(folder)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size());
    };
    sample.descriptors = entries("/proc/self/fd");
    sample.threads = entries("/proc/self/task");
    return sample;
  }
};

class Soak {
public:
  explicit Soak(double seconds) : m_seconds(seconds) { m_clock.start(); }

  bool run() {
    for (int round = 1; elapsed() < m_seconds; ++round) {
      streamTorrents();
      saveAndPlayFromCatalog();
      close();
      m_samples.push_back(Sample::take(elapsed()));
      const Sample& last = m_samples.back();
      std::printf(
          "%5.0f s, round %d: %.1f MB of its own, %.1f allocated, %d descriptors, %d threads\n",
          last.at, round, last.megabytes, last.allocated, last.descriptors, last.threads);
      std::fflush(stdout);
    }
    return report();
  }

private:
  Driver& see() { return m_world.drive(); }
  AppState& app() { return m_world.state().app; }
  VideoPlayerManager& player() { return m_world.state().playback.player; }
  double elapsed() const { return double(m_clock.elapsed()) / 1000; }

  template <class Condition>
  void expect(const char* what, Condition holds, int limit = 30'000) {
    if (QTest::qWaitFor(holds, limit)) return;
    std::printf("%5.0f s: waited in vain: %s\n", elapsed(), what);
    ++m_complaints;
  }
  void open(const char* section) { see().click(text("section-") + text(section)); }
  void submit(const char* words) {
    expect("a search field", [&] { return see().shows(text("searchField")); });
    see().focus(text("searchField"));
    see().press(Qt::Key_A, Qt::ControlModifier);
    see().type(words);
    see().press(Qt::Key_Return);
  }
  void watch(const char* what, int seeks) {
    expect(what, [&] { return player().currentTime() > 0.5 && player().duration() > 30; });
    for (int i = 0; i < seeks; ++i) {
      const double to = m_random.bounded(35.0);
      player().seek(to);
      expect("a place in the film",
             [&] { return player().currentTime() >= to && player().currentTime() < to + 10; });
      QTest::qWait(2500);
    }
  }

  // Each of the qualities in turn, the next one without closing the one before.
  void streamTorrents() {
    open("torrents");
    submit("demo");
    expect("results", [&] { return !app().aggregator.isSearching(); });
    const TorrentResults results = app().aggregator.results();
    int played = 0;
    for (const TorrentResult& result : results) {
      if (!result.title.startsWith(text("Vellum Demo Film (2026)")))
        continue; // others have no seeders
      m_world.state().playback.coordinator.playFromSearchResult(result, {}, true, true);
      expect("another stream", [&] {
        const auto& stream = m_world.state().playback.coordinator.stream();
        return stream && stream->stage == StreamStage::Playing;
      });
      watch("a stream", 3);
      ++played;
    }
    if (played < 2)
      expect(
          "two films", [] { return false; }, 0);
    see().press(Qt::Key_Escape);
    expect("the mini player", [&] { return see().shows(text("miniPlayer")); });
  }

  // While the last stream still plays in the mini player.
  void saveAndPlayFromCatalog() {
    open("search");
    submit("vellum");
    expect("a film", [&] { return !app().catalog.searching() && see().shows(text("card0")); });
    see().settle();
    see().click(text("card0"));
    expect("its page", [&] {
      return see().shows(text("saveButton0")) &&
             see().property(text("itemSheet"), "opened").toBool();
    });
    see().settle();
    see().click(text("saveButton0"));
    expect("a saved film", [&] {
      return !app().downloads.tasks().empty() &&
             app().downloads.tasks().front().state.kind == DownloadTask::State::Kind::Finished;
    });
    if (app().downloads.tasks().empty()) return;
    const QUrl saved = app().downloads.tasks().front().dest;
    m_world.state().entries.playLocal(saved);
    watch("the saved film", 2);
    m_world.state().stop();
    app().downloads.clearFinished();
    QFile::remove(saved.toLocalFile());
  }

  void close() {
    m_world.state().stop();
    open("home");
    expect("no session", [&] { return app().engine.entries().empty(); });
    expect("no file", [&] {
      const QDir streams(app().cache.torrentDir() + text("/streams"));
      const QDir saved(app().settings.downloadsPath());
      const auto all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
      return streams.entryList(all).isEmpty() && saved.entryList(all).isEmpty();
    });
  }

  // Of the samples that were taken in that time.
  double mean(double from, double to) const {
    double sum = 0;
    int count = 0;
    for (const Sample& sample : m_samples)
      if (sample.at >= from && sample.at < to) {
        sum += sample.megabytes;
        ++count;
      }
    return count == 0 ? 0 : sum / count;
  }

  bool report() {
    const double span = std::min(kWarmUp, (m_seconds - kWarmUp) / 2);
    const double first = mean(kWarmUp, kWarmUp + span);
    const double last = mean(elapsed() - span, elapsed() + 1);
    for (const QString& warning : m_world.warnings())
      std::printf("QML complained: %s\n", qUtf8Printable(warning));
    std::printf("%d rounds; after the first %.0f s %.1f MB, at the end %.1f MB; descriptors %d and "
                "%d; %d complaints\n",
                int(m_samples.size()), kWarmUp, first, last, m_samples.front().descriptors,
                m_samples.back().descriptors, m_complaints);
    std::fflush(stdout); // a leak check ends the process without it
    return m_complaints == 0 && m_world.warnings().isEmpty() && last <= first * kGrowth &&
           m_samples.back().descriptors <= m_samples.front().descriptors + 2;
  }

  const double m_seconds;
  QElapsedTimer m_clock;
  QRandomGenerator m_random{42};
  std::vector<Sample> m_samples;
  int m_complaints = 0;
  WindowWorld m_world;
};

} // namespace

int main(int argc, char** argv) {
  platform::giveMemoryBack(); // as the program does
  QGuiApplication app(argc, argv);
  prepareLook(app);
  if (argc < 2) return EXIT_FAILURE;
  return Soak(QByteArray(argv[1]).toDouble() * 60).run() ? EXIT_SUCCESS : EXIT_FAILURE;
}
