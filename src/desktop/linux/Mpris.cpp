#include "desktop/linux/Mpris.h"
#include "desktop/linux/MprisAdaptors.h"
#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <cmath>

namespace vellum {

namespace {

QDBusMessage toBus(const char* method) {
  return QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
      QStringLiteral("org.freedesktop.DBus"), QLatin1String(method));
}

} // namespace

Mpris::Mpris(QDBusConnection bus) : m_bus(std::move(bus)) {
  new MprisRoot(*this);
  new MprisPlayer(*this);
  if (m_bus.registerObject(QLatin1String(kPath), this)) takeName(QLatin1String(kName));
}

Mpris::~Mpris() {
  m_bus.unregisterObject(QLatin1String(kPath));
  if (!m_name.isEmpty()) m_bus.send(toBus("ReleaseName") << m_name);
}

void Mpris::takeName(const QString& name) {
  constexpr uint kDoNotQueue = 4;
  constexpr uint kOwner = 1;
  const auto call = m_bus.asyncCall(toBus("RequestName") << name << kDoNotQueue);
  auto* reply = new QDBusPendingCallWatcher(call, this);
  connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply, name] {
    reply->deleteLater();
    const QDBusPendingReply<uint> answer = *reply;
    if (!answer.isValid()) return;
    if (answer.value() == kOwner)
      m_name = name;
    else if (name == QLatin1String(kName))
      takeName(name + QStringLiteral(".instance%1").arg(QCoreApplication::applicationPid()));
  });
}

QString Mpris::playbackStatus() const {
  if (!m_status.isLoaded) return QStringLiteral("Stopped");
  return m_status.isPlaying ? QStringLiteral("Playing") : QStringLiteral("Paused");
}

QDBusObjectPath Mpris::track() const {
  return QDBusObjectPath(m_status.isLoaded
                             ? QStringLiteral("/org/vellum/track/%1").arg(m_track)
                             : QStringLiteral("/org/mpris/MediaPlayer2/TrackList/NoTrack"));
}

QVariantMap Mpris::metadata() const {
  QVariantMap map{{QStringLiteral("mpris:trackid"), QVariant::fromValue(track())}};
  if (!m_status.isLoaded) return map;
  map[QStringLiteral("xesam:title")] = m_status.title;
  if (m_status.duration > 0)
    map[QStringLiteral("mpris:length")] = qlonglong(std::llround(m_status.duration * 1e6));
  if (!m_status.artwork.isEmpty())
    map[QStringLiteral("mpris:artUrl")] = QString::fromLatin1(m_status.artwork.toEncoded());
  return map;
}

// The properties whose changes are announced; Position is not among them.
QVariantMap Mpris::published() const {
  const bool canSeek = m_status.isLoaded && m_status.duration > 0;
  return {{QStringLiteral("PlaybackStatus"), playbackStatus()},
          {QStringLiteral("Metadata"), metadata()},
          {QStringLiteral("Rate"), m_status.rate},
          {QStringLiteral("MinimumRate"), std::min(1.0, m_status.rate)},
          {QStringLiteral("MaximumRate"), std::max(1.0, m_status.rate)},
          {QStringLiteral("Volume"), m_status.volume},
          {QStringLiteral("CanPlay"), m_status.isLoaded},
          {QStringLiteral("CanPause"), m_status.isLoaded},
          {QStringLiteral("CanSeek"), canSeek}};
}

void Mpris::show(const MediaStatus& status) {
  if (status == m_status) return;
  const MediaStatus before = m_status;
  const QVariantMap published_before = published();
  m_status = status.isLoaded ? status : MediaStatus{};
  if (status.isLoaded && (!before.isLoaded || before.title != status.title)) ++m_track;

  QVariantMap changed;
  const QVariantMap after = published();
  for (auto i = after.begin(); i != after.end(); ++i)
    if (published_before.value(i.key()) != i.value()) changed.insert(i.key(), i.value());
  if (!changed.isEmpty())
    m_bus.send(QDBusMessage::createSignal(QLatin1String(kPath),
                                          QStringLiteral("org.freedesktop.DBus.Properties"),
                                          QStringLiteral("PropertiesChanged"))
               << QLatin1String(kPlayer) << changed << QStringList());
  if (isJump(before, m_status)) Q_EMIT seeked(std::llround(m_status.position * 1e6));
}

std::unique_ptr<MediaControls> MediaControls::make() {
  return std::make_unique<Mpris>(QDBusConnection::sessionBus());
}

} // namespace vellum
