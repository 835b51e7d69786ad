#include "platform/linux/SleepInhibitor.h"
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <optional>

namespace vellum::platform {

namespace {

QDBusMessage screenSaver(const char* method) {
  const QString service = QStringLiteral("org.freedesktop.ScreenSaver");
  return QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/ScreenSaver"),
                                        service, QLatin1String(method));
}

QDBusMessage loginInhibit(const QString& reason) {
  QDBusMessage message = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
      QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
  message << QStringLiteral("idle") << QStringLiteral("Vellum") << reason
          << QStringLiteral("block");
  return message;
}

} // namespace

// It may be released before the answer has come, and is then let go as soon as it comes.
struct SleepInhibitor::Hold {
  explicit Hold(QDBusConnection connection) : session(std::move(connection)) {}

  void granted(uint number) {
    cookie = number;
    if (isReleased) release();
  }
  void granted(QDBusUnixFileDescriptor descriptor) {
    if (!isReleased) lock = std::move(descriptor);
  }
  void release() {
    isReleased = true;
    lock = {};
    if (cookie) session.send(screenSaver("UnInhibit") << *cookie);
    cookie.reset();
  }

  QDBusConnection session;
  bool isReleased = false;
  std::optional<uint> cookie;   // of the screen saver
  QDBusUnixFileDescriptor lock; // of the login manager: held while it is open
};

SleepInhibitor::SleepInhibitor(Bus session, Bus system)
    : m_session(std::move(session)), m_system(std::move(system)) {}

SleepInhibitor::~SleepInhibitor() { release(); }

void SleepInhibitor::hold(const QString& reason) {
  if (m_hold) return;
  m_hold = std::make_shared<Hold>(m_session());
  askScreenSaver(m_hold, reason);
}

void SleepInhibitor::release() {
  if (const auto hold = std::exchange(m_hold, nullptr)) hold->release();
}

void SleepInhibitor::askScreenSaver(std::shared_ptr<Hold> hold, const QString& reason) {
  // A call to nowhere would never be answered.
  if (!hold->session.isConnected()) return askLogin(std::move(hold), reason);
  auto message = screenSaver("Inhibit") << QStringLiteral("Vellum") << reason;
  auto* reply = new QDBusPendingCallWatcher(hold->session.asyncCall(message), &m_replies);
  QObject::connect(reply, &QDBusPendingCallWatcher::finished, &m_replies,
                   [this, hold, reason, reply] {
                     reply->deleteLater();
                     const QDBusPendingReply<uint> answer = *reply;
                     if (answer.isValid())
                       hold->granted(answer.value());
                     else if (!hold->isReleased)
                       askLogin(hold, reason);
                   });
}

void SleepInhibitor::askLogin(std::shared_ptr<Hold> hold, const QString& reason) {
  const QDBusConnection system = m_system();
  if (!system.isConnected()) return;
  auto* reply = new QDBusPendingCallWatcher(system.asyncCall(loginInhibit(reason)), &m_replies);
  QObject::connect(reply, &QDBusPendingCallWatcher::finished, &m_replies, [hold, reply] {
    reply->deleteLater();
    const QDBusPendingReply<QDBusUnixFileDescriptor> answer = *reply;
    if (answer.isValid()) hold->granted(answer.value());
  });
}

std::unique_ptr<DisplaySleep> DisplaySleep::make() {
  return std::make_unique<SleepInhibitor>(&QDBusConnection::sessionBus,
                                          &QDBusConnection::systemBus);
}

} // namespace vellum::platform
