// The player as the desktop shows and steers it: media keys, headsets, the player on a lock screen.
#pragma once
#include <QObject>
#include <QUrl>
#include <memory>

namespace vellum {

// What the desktop shows of the player.
struct MediaStatus {
  bool isLoaded = false; // otherwise nothing else counts
  bool isPlaying = false;
  QString title;
  QUrl artwork;
  double position = 0; // seconds
  double duration = 0; // seconds, 0 while unknown
  double rate = 1;
  double volume = 1; // 0 to 1

  bool operator==(const MediaStatus&) const = default;
};

// Whether the same film went on somewhere else between two statuses, by more than it could have
// played in between (the player tells of every half second that it plays). Pure.
bool isJump(const MediaStatus& before, const MediaStatus& now);

// Main thread; never waits for the desktop. The commands are wishes: what comes of them shows in
// the next status. None comes while nothing is loaded, except raise().
class MediaControls : public QObject {
  Q_OBJECT

public:
  // The one of this system; without a desktop it shows nothing and asks nothing.
  static std::unique_ptr<MediaControls> make();

  virtual void show(const MediaStatus& status) = 0;

Q_SIGNALS:
  void play();
  void pause();
  void toggle();
  void seek(double seconds);   // from the beginning; within the film
  void seekBy(double seconds); // within the film
  void stop();
  void setVolume(double volume); // 0 to 1
  void raise();                  // bring the window to the front
};

} // namespace vellum
