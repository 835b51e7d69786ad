// What plays and how, as the player screen and the mini player show and steer it.
#pragma once
#include "ui/player/StreamModel.h"
#include <QStringList>
#include <qqmlintegration.h>

namespace vellum::ui {

// Main thread. Every value is read from the player, its subtitles and the coordinator. The entries
// of a menu are told as they are written in it, and chosen by their place in it.
class PlayerModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Given to the screens")
  Q_PROPERTY(vellum::VideoPlayerManager* player READ player CONSTANT FINAL)
  Q_PROPERTY(vellum::ui::StreamModel* stream READ stream CONSTANT FINAL)
  Q_PROPERTY(bool isWaiting READ isWaiting NOTIFY isWaitingChanged FINAL)
  // Of an item that is no stream; empty without one.
  Q_PROPERTY(QString error READ error NOTIFY errorChanged FINAL)
  Q_PROPERTY(bool isSilent READ isSilent NOTIFY isSilentChanged FINAL) // muted, or at volume 0
  Q_PROPERTY(QStringList audioOptions READ audioOptions NOTIFY audioChanged FINAL)
  Q_PROPERTY(int audioIndex READ audioIndex NOTIFY audioChanged FINAL)
  Q_PROPERTY(QStringList speeds READ speeds NOTIFY speedChanged FINAL)
  Q_PROPERTY(int speedIndex READ speedIndex NOTIFY speedChanged FINAL)
  Q_PROPERTY(QStringList aspects READ aspects CONSTANT FINAL)
  Q_PROPERTY(int aspectIndex READ aspectIndex NOTIFY aspectChanged FINAL)
  Q_PROPERTY(QStringList subtitles READ subtitles NOTIFY subtitlesChanged FINAL) // the first is off
  Q_PROPERTY(int subtitleIndex READ subtitleIndex NOTIFY subtitlesChanged FINAL)
  Q_PROPERTY(QString subtitleError READ subtitleError NOTIFY subtitleErrorChanged FINAL)
  Q_PROPERTY(QString subtitleText READ subtitleText NOTIFY subtitleTextChanged FINAL) // to show now

public:
  // Both outlive it.
  PlayerModel(Playback& playback, Navigation& navigation);

  VideoPlayerManager* player() const { return &m_playback.player; }
  StreamModel* stream() { return &m_stream; }
  bool isWaiting() const { return player()->isBuffering() && !m_stream.isBeforePlaying(); }
  QString error() const { return m_stream.exists() ? QString() : player()->error(); }
  bool isSilent() const { return player()->isMuted() || player()->volume() <= 0; }
  QStringList audioOptions() const;
  int audioIndex() const;
  QStringList speeds() const;
  int speedIndex() const; // -1 for a rate that the menu does not have
  QStringList aspects() const;
  int aspectIndex() const { return static_cast<int>(player()->aspect()); }
  QStringList subtitles() const;
  int subtitleIndex() const;
  QString subtitleError() const { return m_playback.subtitles.error().value_or(QString()); }
  QString subtitleText() const { return m_playback.subtitles.currentText().value_or(QString()); }

  Q_INVOKABLE QString timeText(double seconds) const;
  Q_INVOKABLE void toggle() { player()->toggle(); }
  Q_INVOKABLE void skip(double seconds) { player()->seek(player()->currentTime() + seconds); }
  Q_INVOKABLE void setVolume(double volume); // above 0 it is heard, too
  Q_INVOKABLE void toggleMuted() { player()->setMuted(!player()->isMuted()); }
  // Places that the menu does not have choose nothing.
  Q_INVOKABLE void chooseAudio(int index);
  Q_INVOKABLE void chooseSpeed(int index);
  Q_INVOKABLE void chooseAspect(int index);
  Q_INVOKABLE void chooseSubtitle(int index);
  Q_INVOKABLE void addSubtitleFile(const QUrl& file) { m_playback.subtitles.addLocal(file); }

  // Leaves the screen; what plays goes on.
  Q_INVOKABLE void goBack() { m_navigation.setShowPlayer(false); }
  // After an error: from where it happened.
  Q_INVOKABLE void retry();
  // Ends what plays from the mini player, whatever screen is shown.
  Q_INVOKABLE void closeMini();

Q_SIGNALS:
  void isWaitingChanged();
  void errorChanged();
  void isSilentChanged();
  void audioChanged();
  void speedChanged();
  void aspectChanged();
  void subtitlesChanged();
  void subtitleErrorChanged();
  void subtitleTextChanged();

private:
  Playback& m_playback;
  Navigation& m_navigation;
  StreamModel m_stream;
};

} // namespace vellum::ui
