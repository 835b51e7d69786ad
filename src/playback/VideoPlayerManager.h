// The video player behind published values: no screen sees a player's own times and states.
#pragma once
#include "playback/MpvCore.h"
#include "playback/MpvTracks.h"
#include <QObject>
#include <QUrl>

namespace vellum {

class MpvPicture;

// Main thread. Nothing here waits for the player: what is asked for shows in the published values,
// at once where they are the user's choice, otherwise as soon as the player tells. What it tells
// late about an item that has been replaced is passed over.
class VideoPlayerManager final : public QObject, private MpvCore::Listener {
  Q_OBJECT
  Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged)
  Q_PROPERTY(bool isBuffering READ isBuffering NOTIFY isBufferingChanged)
  Q_PROPERTY(double currentTime READ currentTime NOTIFY currentTimeChanged)
  Q_PROPERTY(double duration READ duration NOTIFY durationChanged)
  Q_PROPERTY(double bufferedTo READ bufferedTo NOTIFY bufferedToChanged)
  Q_PROPERTY(QString error READ error NOTIFY errorChanged)
  Q_PROPERTY(float rate READ rate WRITE setRate NOTIFY rateChanged)
  Q_PROPERTY(AspectMode aspect READ aspect WRITE setAspect NOTIFY aspectChanged)
  Q_PROPERTY(float volume READ volume WRITE setVolume NOTIFY volumeChanged)
  Q_PROPERTY(bool isMuted READ isMuted WRITE setMuted NOTIFY isMutedChanged)
  Q_PROPERTY(QUrl currentURL READ currentURL NOTIFY currentURLChanged)

public:
  enum class AspectMode { Fit, Fill, Stretch };
  Q_ENUM(AspectMode)
  static constexpr AspectMode kAspectModes[] = {AspectMode::Fit, AspectMode::Fill,
                                                AspectMode::Stretch};
  static QString aspectName(AspectMode mode); // "Fit", "Fill", "Stretch"

  // The loop outlives it.
  explicit VideoPlayerManager(MainLoop& main, AudioOutput audio = AudioOutput::Automatic);
  ~VideoPlayerManager() override;

  // Not paused; also while it waits for data, which isBuffering tells.
  bool isPlaying() const { return m_isPlaying; }
  bool isBuffering() const { return m_isBuffering; }
  double currentTime() const { return m_currentTime; } // seconds; told every 0.5 s of playback
  double duration() const { return m_duration; }       // seconds; 0 while unknown
  double bufferedTo() const { return m_bufferedTo; }   // seconds
  QString error() const { return m_error; }            // null unless the item failed
  float rate() const { return m_rate; }
  AspectMode aspect() const { return m_aspect; }
  float volume() const { return m_volume; } // 0 to 1
  bool isMuted() const { return m_isMuted; }
  const QList<AudioOption>& audioOptions() const { return m_audio.options; }
  const std::optional<AudioOption>& selectedAudio() const { return m_audio.selected; }
  QUrl currentURL() const { return m_currentURL; } // empty if nothing is loaded

  // Plays the item from startAt (seconds), from the beginning if that is 1.0 or less. Files and
  // "http" and "https" addresses only; anything else fails.
  void load(const QUrl& url, double startAt);
  Q_INVOKABLE void toggle();
  // Exact. Before an item is ready, it is where the item will begin.
  Q_INVOKABLE void seek(double to);
  void setRate(float rate);
  Q_INVOKABLE void adjustVolume(float delta);
  void setVolume(float volume); // held between 0 and 1
  void setMuted(bool muted);
  void setAspect(AspectMode aspect);
  void selectAudio(const AudioOption& option);
  void stop();
  void clearError();

  // For the items that show it. The player opens an item only when somebody has begun to draw.
  std::shared_ptr<MpvPicture> picture() const { return m_picture; }

Q_SIGNALS:
  void isPlayingChanged();
  void isBufferingChanged();
  // At every write, also of the same value: who saves positions counts on it.
  void currentTimeChanged(double seconds);
  void durationChanged();
  void bufferedToChanged();
  void errorChanged();
  void rateChanged();
  void aspectChanged();
  void volumeChanged();
  void isMutedChanged();
  void audioChanged(); // the options or which one is selected
  void currentURLChanged();
  // The item has played to its end, where it stays loaded and paused.
  void finished();

private:
  enum class Item { None, Opening, Ready };
  enum class Question : std::uint8_t { Load = 1, Duration, Tracks, Seek, Time, End };
  enum class Observed : std::uint8_t { Time = 1, CacheEnd, CoreIdle, AtEnd };

  void onReply(std::uint64_t request, const std::optional<QVariant>& result) override;
  void onStarted(std::int64_t entry) override;
  void onLoaded() override;
  void onFailed(std::int64_t entry, const QString& text) override;
  void onRestarted() override;
  void onProperty(std::uint64_t observer, const QVariant& value) override;

  std::uint64_t request(Question question) const;
  void answer(Question question, const std::optional<QVariant>& result);
  void ask(Question question, const char* property);
  void open();
  void refuse();
  void fail(const QString& text);
  void moved(const QVariant& time);
  void setAtEnd(bool atEnd);
  void endOrFail();
  void tick(const QVariant& time);
  void publishStatus();
  void setCurrentTime(double seconds);
  void setError(const QString& error);
  void setAudio(AudioTracks audio);
  template <class T>
  void publish(T& field, const T& value, void (VideoPlayerManager::*changed)());

  // The published values.
  bool m_isPlaying = false;
  bool m_isBuffering = false;
  double m_currentTime = 0;
  double m_duration = 0;
  double m_bufferedTo = 0;
  QString m_error;
  float m_rate = 1;
  AspectMode m_aspect = AspectMode::Fit;
  float m_volume = 1;
  bool m_isMuted = false;
  AudioTracks m_audio;
  QUrl m_currentURL;

  // The item.
  Item m_item = Item::None;
  std::uint64_t m_generation = 0;      // of items; a reply with another one is late
  std::optional<std::int64_t> m_entry; // the player's number of the item
  bool m_isAsked = false;              // the player has been asked to open it
  bool m_isStarted = false;            // and has begun
  double m_pendingStart = 0;           // seconds
  std::optional<double> m_pendingSeek; // asked for before it was ready

  // What the player does.
  bool m_wantsToPlay = false;
  bool m_isCoreIdle = true; // it shows nothing new
  bool m_isAtEnd = false;
  bool m_isSeeking = false; // times told now may be of before
  double m_cacheEnd = 0;    // seconds

  std::shared_ptr<MpvHandle> m_handle;
  std::shared_ptr<MpvPicture> m_picture;
  MpvCore m_core;
};

} // namespace vellum
