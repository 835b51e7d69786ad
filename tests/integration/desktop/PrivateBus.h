// A message bus of the test's own: never the user's.
#pragma once
#include "support/MainThread.h"
#include <QDBusConnection>
#include <QProcess>
#include <QProcessEnvironment>
#include <gtest/gtest.h>

namespace vellum::test {

// Connections end with it.
class PrivateBus {
public:
  PrivateBus() {
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--session"), QStringLiteral("--nofork"),
                    QStringLiteral("--nosyslog"), QStringLiteral("--print-address")});
    m_daemon.waitForReadyRead();
    m_address = QString::fromUtf8(m_daemon.readLine().trimmed());
    EXPECT_FALSE(m_address.isEmpty()) << "dbus-daemon (package dbus) did not start";
  }
  ~PrivateBus() {
    for (const QString& name : m_names) QDBusConnection::disconnectFromBus(name);
    m_daemon.kill();
    m_daemon.waitForFinished();
  }
  QDBusConnection connect(const char* name) {
    m_names += QLatin1String(name);
    return QDBusConnection::connectToBus(m_address, QLatin1String(name));
  }
  const QString& address() const { return m_address; }

private:
  QProcess m_daemon;
  QString m_address;
  QStringList m_names;
};

} // namespace vellum::test
