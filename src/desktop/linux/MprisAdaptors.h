// The two interfaces of MPRIS: names, types and cases are those of its standard. QtDBus calls
// them on the main thread.
#pragma once
#include "desktop/linux/Mpris.h"
#include <QDBusAbstractAdaptor>
#include <QStringList>

namespace vellum {

class MprisRoot final : public QDBusAbstractAdaptor {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
  Q_PROPERTY(bool CanQuit READ no)
  Q_PROPERTY(bool CanRaise READ yes)
  Q_PROPERTY(bool HasTrackList READ no)
  Q_PROPERTY(QString Identity READ identity)
  Q_PROPERTY(QString DesktopEntry READ desktopEntry)
  Q_PROPERTY(QStringList SupportedUriSchemes READ none)
  Q_PROPERTY(QStringList SupportedMimeTypes READ none)

public:
  explicit MprisRoot(Mpris& player);

  bool no() const { return false; }
  bool yes() const { return true; }
  QString identity() const { return QStringLiteral("Vellum"); }
  QString desktopEntry() const { return QStringLiteral("vellum"); }
  QStringList none() const { return {}; }

public Q_SLOTS:
  void Raise();
  void Quit() {}

private:
  Mpris& m_player;
};

class MprisPlayer final : public QDBusAbstractAdaptor {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
  Q_PROPERTY(QString PlaybackStatus READ playbackStatus)
  Q_PROPERTY(double Rate READ rate WRITE ignoreRate)
  Q_PROPERTY(double MinimumRate READ minimumRate)
  Q_PROPERTY(double MaximumRate READ maximumRate)
  Q_PROPERTY(QVariantMap Metadata READ metadata)
  Q_PROPERTY(double Volume READ volume WRITE setVolume)
  Q_PROPERTY(qlonglong Position READ position)
  Q_PROPERTY(bool CanGoNext READ no)
  Q_PROPERTY(bool CanGoPrevious READ no)
  Q_PROPERTY(bool CanPlay READ isLoaded)
  Q_PROPERTY(bool CanPause READ isLoaded)
  Q_PROPERTY(bool CanSeek READ canSeek)
  Q_PROPERTY(bool CanControl READ yes)

public:
  explicit MprisPlayer(Mpris& player);

  bool no() const { return false; }
  bool yes() const { return true; }
  QString playbackStatus() const { return m_player.playbackStatus(); }
  double rate() const { return m_player.status().rate; }
  double minimumRate() const { return std::min(1.0, rate()); }
  double maximumRate() const { return std::max(1.0, rate()); }
  void ignoreRate(double /*rate*/) {}
  QVariantMap metadata() const { return m_player.metadata(); }
  double volume() const { return m_player.status().volume; }
  void setVolume(double volume);
  qlonglong position() const; // microseconds
  bool isLoaded() const { return m_player.status().isLoaded; }
  bool canSeek() const { return isLoaded() && m_player.status().duration > 0; }

public Q_SLOTS:
  void Next() {}
  void Previous() {}
  void Play();
  void Pause();
  void PlayPause();
  void Stop();
  void Seek(qlonglong offset); // microseconds
  void SetPosition(const QDBusObjectPath& track, qlonglong position);
  void OpenUri(const QString& /*uri*/) {}

Q_SIGNALS:
  void Seeked(qlonglong position); // microseconds

private:
  Mpris& m_player;
};

} // namespace vellum
