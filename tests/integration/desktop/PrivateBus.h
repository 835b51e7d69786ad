// A message bus of the test's own: never the user's.
#pragma once
#include "StartedProgram.h"
#include <QDBusConnection>
#include <QTemporaryDir>

namespace vellum::test {

// Connections end with it.
class PrivateBus {
public:
  ~PrivateBus() {
    for (const QString& name : m_names) QDBusConnection::disconnectFromBus(name);
  }
  QDBusConnection connect(const char* name) {
    m_names += QLatin1String(name);
    return QDBusConnection::connectToBus(m_address, QLatin1String(name));
  }
  const QString& address() const { return m_address; }

private:
  QTemporaryDir m_folder; // a daemon that is killed leaves its socket
  StartedProgram m_daemon{
      {QStringLiteral("dbus-daemon"), QStringLiteral("--session"), QStringLiteral("--nofork"),
       QStringLiteral("--nosyslog"),
       QStringLiteral("--address=unix:path=") + m_folder.filePath(QStringLiteral("bus")),
       QStringLiteral("--print-address")}};
  QString m_address = QString::fromUtf8(m_daemon.line());
  QStringList m_names;
};

} // namespace vellum::test
