// The subtitle tracks of what plays, the one in use, and the text to show at the playhead.
#pragma once
#include "base/IoPool.h"
#include "base/MainLoop.h"
#include "net/FetchData.h"
#include "playback/SubtitleTimeline.h"
#include <QObject>

namespace vellum {

struct SubtitleTrack {
  QString name; // what the menu shows
  QUrl url;     // a local file or an address
  bool operator==(const SubtitleTrack&) const = default;
};
using SubtitleTracks = std::vector<SubtitleTrack>;

// Lives on the main thread; files are fetched, read and parsed on a worker. Each selection and each
// reset forgets the one before: whatever still comes of it, a text or a failure, changes nothing.
class SubtitleManager final : public QObject {
  Q_OBJECT

public:
  static constexpr std::chrono::seconds kFetchTimeout{20};
  static constexpr qint64 kLargestFile = 32 * 1024 * 1024; // bytes

  // Loop and pool outlive it.
  SubtitleManager(MainLoop& main, IoPool& pool, FetchData fetch);
  ~SubtitleManager() override;

  const SubtitleTracks& tracks() const { return m_tracks; }
  const std::optional<SubtitleTrack>& selected() const { return m_selected; }
  // Plain text: whoever shows it does not look for markup in it. Nothing shows nothing.
  const std::optional<QString>& currentText() const { return m_currentText; }
  const std::optional<QString>& error() const { return m_error; }
  const SubtitleCues& cues() const { return m_timeline->cues(); }

  // Starts over, with nothing selected.
  void reset(SubtitleTracks tracks);
  // Appends a track.
  void add(const SubtitleTrack& track);
  // Selects a file of the user's choice, which becomes a track unless it is one.
  void addLocal(const QUrl& url);
  // Nothing means off. Texts come with the next update() after the file has been read.
  void select(const std::optional<SubtitleTrack>& track);
  // The playhead, in seconds.
  void update(double time);

Q_SIGNALS:
  void tracksChanged();
  void selectedChanged();
  void currentTextChanged();
  void errorChanged();

private:
  using Timeline = std::shared_ptr<const SubtitleTimeline>;
  // What a load came to: cues, or else the sentence of a failure.
  struct Loaded {
    Timeline timeline;
    QString failure;
  };

  static Flow<Timeline> read(QUrl url, FetchData fetch);
  // `done` runs on the main thread, and not at all once the load is no longer wanted.
  static Flow<> load(std::weak_ptr<bool> wanted, Flow<Timeline> timeline, WorkerStrand strand,
                     std::function<void(Loaded)> done);
  void show(const Loaded& loaded, const QString& name);
  void replaceTimeline(Timeline timeline);

  IoPool& m_pool;
  FetchData m_fetch;
  FlowGroup m_flows;
  std::shared_ptr<bool> m_wanted; // held while its load is

  SubtitleTracks m_tracks;
  std::optional<SubtitleTrack> m_selected;
  std::optional<QString> m_currentText;
  std::optional<QString> m_error;
  Timeline m_timeline = std::make_shared<SubtitleTimeline>(); // never null
};

} // namespace vellum
