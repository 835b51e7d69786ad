// The player on the session bus, as MPRIS 2.2 wants it.
#pragma once
#include "desktop/MediaControls.h"
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QVariantMap>

namespace vellum {

// Main thread. Its name on the bus is "org.mpris.MediaPlayer2.vellum", and for another Vellum on
// the same bus the same with ".instance" and the number of its process.
class Mpris final : public MediaControls {
  Q_OBJECT

public:
  static constexpr char kPath[] = "/org/mpris/MediaPlayer2";
  static constexpr char kName[] = "org.mpris.MediaPlayer2.vellum";
  static constexpr char kPlayer[] = "org.mpris.MediaPlayer2.Player";

  explicit Mpris(QDBusConnection bus);
  ~Mpris() override;

  void show(const MediaStatus& status) override;

  const MediaStatus& status() const { return m_status; }
  QString playbackStatus() const; // "Playing", "Paused", "Stopped"
  QVariantMap metadata() const;
  QDBusObjectPath track() const; // another one for each film that was loaded

Q_SIGNALS:
  void seeked(qlonglong position); // microseconds

private:
  void takeName(const QString& name);
  QVariantMap published() const;

  QDBusConnection m_bus;
  QString m_name; // empty until the bus has given it
  MediaStatus m_status;
  int m_track = 0;
};

} // namespace vellum
