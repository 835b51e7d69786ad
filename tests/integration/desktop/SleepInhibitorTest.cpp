#include "platform/linux/SleepInhibitor.h"
#include "PrivateBus.h"
#include <QDBusUnixFileDescriptor>
#include <poll.h>
#include <unistd.h>

namespace vellum::test {
namespace {

// What the desktops' screen savers do.
class ScreenSaver : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

public:
  std::string log;

public Q_SLOTS:
  uint Inhibit(const QString& application, const QString& reason) {
    log += "+" + (application + u':' + reason).toStdString();
    return ++m_cookie;
  }
  void UnInhibit(uint cookie) { log += "-" + std::to_string(cookie); }

private:
  uint m_cookie = 6;
};

class LoginManager : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
  LoginManager() { EXPECT_EQ(pipe(m_pipe), 0); }
  ~LoginManager() override { close(m_pipe[0]); }
  // Whether somebody still holds the descriptor that was handed out.
  bool isHeld() const {
    pollfd reader{m_pipe[0], POLLIN, 0};
    return poll(&reader, 1, 0) == 0;
  }
  QString asked;

public Q_SLOTS:
  QDBusUnixFileDescriptor Inhibit(const QString& what, const QString& who, const QString& why,
                                  const QString& mode) {
    asked = what + u' ' + who + u' ' + why + u' ' + mode;
    const QDBusUnixFileDescriptor lock(m_pipe[1]); // a copy
    close(m_pipe[1]);
    return lock;
  }

private:
  int m_pipe[2] = {-1, -1};
};

struct SleepInhibitorTest : ::testing::Test, MainThread {
  void serve(QObject& object, const char* service, const char* path) {
    ASSERT_TRUE(
        desktop.registerObject(QLatin1String(path), &object, QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(desktop.registerService(QLatin1String(service)));
  }
  PrivateBus bus;
  QDBusConnection desktop = bus.connect("desktop");
  QDBusConnection ours = bus.connect("ours");
  platform::SleepInhibitor::Bus toOurs = [this] { return ours; };
  const QString why = QStringLiteral("film");
};

TEST_F(SleepInhibitorTest, HoldsAndLetsGoOfTheScreenSaver) {
  ScreenSaver saver;
  serve(saver, "org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver");
  platform::SleepInhibitor sleep(toOurs, toOurs);
  sleep.hold(why);
  sleep.hold(why);
  sleep.release(); // before the answer has come
  sleep.release();
  EXPECT_TRUE(turnUntil([&] { return saver.log == "+Vellum:film-7"; })) << saver.log;
  sleep.hold(why);
  EXPECT_TRUE(turnUntil([&] { return saver.log == "+Vellum:film-7+Vellum:film"; })) << saver.log;
  turnUntil([] { return false; }, std::chrono::seconds(0));
  sleep.release();
  EXPECT_TRUE(turnUntil([&] { return saver.log == "+Vellum:film-7+Vellum:film-8"; })) << saver.log;
}

TEST_F(SleepInhibitorTest, FallsBackToTheLoginManager) {
  LoginManager login;
  serve(login, "org.freedesktop.login1", "/org/freedesktop/login1");
  platform::SleepInhibitor sleep(toOurs, toOurs);
  sleep.hold(why);
  ASSERT_TRUE(turnUntil([&] { return !login.asked.isEmpty(); }));
  EXPECT_EQ(login.asked, QStringLiteral("idle Vellum film block"));
  EXPECT_TRUE(login.isHeld());
  sleep.release();
  EXPECT_TRUE(turnUntil([&] { return !login.isHeld(); }));
}

TEST_F(SleepInhibitorTest, IsSilentWithoutABus) {
  int asked = 0;
  const auto nowhere = [&asked] {
    ++asked;
    return QDBusConnection::connectToBus(QStringLiteral("unix:path=/nonexistent"),
                                         QStringLiteral("nowhere"));
  };
  platform::SleepInhibitor sleep(nowhere, nowhere);
  sleep.hold(why);
  EXPECT_TRUE(turnUntil([&] { return asked == 2; })); // both buses have been tried
  sleep.release();
  QDBusConnection::disconnectFromBus(QStringLiteral("nowhere"));
}

} // namespace
} // namespace vellum::test

#include "SleepInhibitorTest.moc"
