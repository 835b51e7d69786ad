#include "desktop/linux/Mpris.h"
#include "platform/ChildProcess.h"
#include "platform/Programs.h"
#include "platform/linux/SleepInhibitor.h"
#include "world/MainThread.h"
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

namespace vellum::test {

using namespace Qt::StringLiterals;
using namespace world;
namespace {

// A message bus of the test's own: never the user's.
struct BusTest : ::testing::Test, MainThread {
  ~BusTest() override {
    for (const QString& name : connected) QDBusConnection::disconnectFromBus(name);
    daemon.terminate();
    EXPECT_TRUE(turnUntil([&] { return !daemon.isRunning(); }));
  }
  QDBusConnection connect(const char* who) {
    const QString name = connected.emplaceBack(QLatin1String(who));
    EXPECT_TRUE(turnUntil([&] { // as soon as the daemon listens
      QDBusConnection::disconnectFromBus(name);
      return QDBusConnection::connectToBus(address, name).isConnected();
    }));
    return QDBusConnection(name);
  }
  // Whatever has been sent on these connections so far has arrived.
  static void settle(std::initializer_list<QDBusConnection> connections) {
    for (const QDBusConnection& bus : connections) bus.interface()->isServiceRegistered(bus.name());
    QCoreApplication::processEvents();
  }

  QTemporaryDir folder;
  const QString address = u"unix:path="_s + folder.filePath(u"bus"_s);
  platform::ChildProcess daemon;
  const bool isStarted =
      daemon.launch(platform::findProgram(u"dbus-daemon"_s),
                    (u"--session --nofork --nosyslog --address="_s + address).split(u' '));
  QStringList connected;
  QDBusConnection desktop = connect("desktop");
  QDBusConnection ours = connect("ours");
};

const QString kProperties = u"org.freedesktop.DBus.Properties"_s;

class Listener : public QObject {
  Q_OBJECT

public:
  QVariantMap changed; // of all announcements together
  QList<qlonglong> jumps;

public Q_SLOTS:
  void hear(const QDBusMessage& message) {
    const QVariantList said = message.arguments();
    if (message.member() == u"Seeked")
      jumps += said[0].toLongLong();
    else
      changed.insert(qdbus_cast<QVariantMap>(said[1]));
  }
};

struct MprisTest : BusTest {
  MprisTest() {
    desktop.connect({}, path, kProperties, u"PropertiesChanged"_s, &listener,
                    SLOT(hear(QDBusMessage)));
    desktop.connect({}, path, interface, u"Seeked"_s, &listener, SLOT(hear(QDBusMessage)));
    const auto note = [this](const char* wish) {
      return [this, wish](auto... seconds) {
        commands += wish;
        ((commands += " " + std::to_string(std::lround(seconds * 10))), ...);
      };
    };
    QObject::connect(&player, &MediaControls::play, &app, note("play"));
    QObject::connect(&player, &MediaControls::pause, &app, note("pause"));
    QObject::connect(&player, &MediaControls::toggle, &app, note("toggle"));
    QObject::connect(&player, &MediaControls::stop, &app, note("stop"));
    QObject::connect(&player, &MediaControls::raise, &app, note("raise"));
    QObject::connect(&player, &MediaControls::seek, &app, note("seek"));
    QObject::connect(&player, &MediaControls::seekBy, &app, note("seekBy"));
    QObject::connect(&player, &MediaControls::setVolume, &app, note("volume"));
    EXPECT_TRUE(turnUntil([&] { return names() == QStringList{name}; }));
  }
  // Those of players on the bus; asked of the daemon, which answers without us.
  QStringList names() {
    QStringList found = desktop.interface()->registeredServiceNames().value().filter(name);
    found.sort();
    return found;
  }
  QVariantList call(const QString& of, const char* method, const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(name, path, of, QLatin1String(method));
    message.setArguments(arguments);
    const auto reply = desktop.asyncCall(message);
    EXPECT_TRUE(turnUntil([&] { return reply.isFinished(); }));
    return reply.reply().arguments();
  }
  // What becomes of a wish of the desktop's.
  std::string asked(const char* method, const QVariantList& arguments = {}) {
    commands.clear();
    call(method == std::string("Set") ? kProperties : interface, method, arguments);
    return commands;
  }
  // What is announced when that is shown.
  QVariantMap announced(const MediaStatus& status) {
    listener.changed.clear();
    player.show(status);
    properties = qdbus_cast<QVariantMap>(call(kProperties, "GetAll", {interface}).value(0));
    return listener.changed;
  }
  static MediaStatus film(double position, double duration = 5400) {
    return {true,     true,    u"„Film“ 映画"_s, QUrl(u"http://127.0.0.1/poster a.jpg"_s),
            position, duration};
  }

  const QString name = QLatin1String(Mpris::kName), path = QLatin1String(Mpris::kPath),
                interface = QLatin1String(Mpris::kPlayer);
  Mpris player{ours};
  Listener listener;
  QVariantMap properties; // as the desktop has read them last
  std::string commands;
};

TEST_F(MprisTest, ShowsWhatPlaysAndAnnouncesWhatHasChanged) {
  const QString canSeek = u"CanSeek"_s, state = u"PlaybackStatus"_s;
  EXPECT_EQ(announced(film(61, 0))[state], u"Playing"_s);
  EXPECT_FALSE(listener.changed.contains(canSeek));
  EXPECT_EQ(announced(film(61, 1))[canSeek], true);
  EXPECT_EQ(qdbus_cast<QVariantMap>(properties[u"Metadata"_s]),
            (QVariantMap{{u"mpris:trackid"_s, QVariant::fromValue(player.track())},
                         {u"mpris:length"_s, 1'000'000LL},
                         {u"mpris:artUrl"_s, u"http://127.0.0.1/poster%20a.jpg"_s},
                         {u"xesam:title"_s, film(0).title}}));
  announced(film(61.5));
  EXPECT_EQ(announced(film(62)), QVariantMap()); // it goes on
  MediaStatus paused = film(62);
  paused.isPlaying = false;
  EXPECT_EQ(announced(paused), (QVariantMap{{state, u"Paused"_s}}));
  paused.position = 30;
  EXPECT_EQ(announced(paused), QVariantMap());
  EXPECT_EQ(listener.jumps, QList<qlonglong>{30'000'000});
  EXPECT_EQ(properties[u"Position"_s], 30'000'000);
  for (const auto& [rate, bound] : {std::pair(2.0, "MaximumRate"), std::pair(0.5, "MinimumRate")}) {
    paused.rate = rate;
    EXPECT_EQ(announced(paused)[QLatin1String(bound)], rate);
    EXPECT_EQ(properties[QLatin1String(bound)], rate);
  }
  EXPECT_EQ(announced({})[state], u"Stopped"_s);
}

TEST_F(MprisTest, PassesOnWhatIsAskedWithinTheFilm) {
  const auto volume = [&](double value) {
    return QVariantList{interface, u"Volume"_s, QVariant::fromValue(QDBusVariant(value))};
  };
  const auto place = [](int track, qlonglong microseconds) {
    const QDBusObjectPath film(u"/org/vellum/track/%1"_s.arg(track));
    return QVariantList{QVariant::fromValue(film), microseconds};
  };
  const auto by = [](qlonglong seconds) { return QVariantList{seconds * 1'000'000}; };
  for (const char* method : {"Play", "Pause", "PlayPause", "Stop"}) EXPECT_EQ(asked(method), "");
  EXPECT_EQ(asked("Set", volume(1)), "");
  player.show(film(60, 0)); // whose duration is not known yet
  EXPECT_EQ(asked("Seek", by(10)), "");
  player.show(film(60));
  const std::tuple<const char*, QVariantList, const char*> cases[] = {
      {"Play", {}, "play"},
      {"Pause", {}, "pause"},
      {"PlayPause", {}, "toggle"},
      {"Stop", {}, "stop"},
      {"Next", {}, ""},
      {"Set", volume(0.5), "volume 5"},
      {"Set", volume(7), "volume 10"},
      {"Set", volume(NAN), ""},
      {"Seek", by(10), "seekBy 100"},
      {"Seek", by(-90), "seekBy -600"},
      {"Seek", by(9999), "seekBy 53400"},
      {"SetPosition", place(1, -1), ""},
      {"SetPosition", place(1, 0), "seek 0"},
      {"SetPosition", place(1, 5'400'000'000), "seek 54000"},
      {"SetPosition", place(1, 5'400'000'001), ""},
      {"SetPosition", place(2, 1'000'000), ""}, // of a film to come
  };
  for (const auto& [method, arguments, expected] : cases)
    EXPECT_EQ(asked(method, arguments), expected) << method;
  commands.clear();
  call(u"org.mpris.MediaPlayer2"_s, "Raise", {});
  EXPECT_EQ(commands, "raise");
}

TEST_F(MprisTest, ASecondOneTakesANameWithASuffixAndGivesItBack) {
  const QDBusConnection bus = connect("second");
  auto second = std::make_unique<Mpris>(bus);
  const auto suffix = u".instance%1"_s.arg(QCoreApplication::applicationPid());
  EXPECT_TRUE(turnUntil([&] { return names() == QStringList{name, name + suffix}; }));
  settle({bus});
  second.reset();
  EXPECT_TRUE(turnUntil([&] { return names() == QStringList{name}; }));
}

// The desktop's screen saver and its login manager.
struct Inhibitors final : QDBusVirtualObject {
  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    log += message.member();
    for (const QVariant& argument : message.arguments()) log += u' ' + argument.toString();
    if (message.isReplyRequired()) bus.send(message.createReply(answer));
    return true;
  }
  QVariant answer = 7U;
  QString log;
};

TEST_F(BusTest, TheScreenIsHeldByTheScreenSaverOrElseTheLoginManagerAndLetGo) {
  Inhibitors desk;
  const auto toOurs = [this] { return ours; };
  platform::SleepInhibitor sleep(toOurs, toOurs);
  const QString why = u"film"_s;
  const auto logs = [&](const char* expected) {
    return turnUntil([&] { return desk.log == QLatin1String(expected); });
  };
  const auto serve = [&](const char* service, const char* path) {
    desktop.registerVirtualObject(QLatin1String(path), &desk);
    EXPECT_TRUE(desktop.registerService(QLatin1String(service)));
  };
  serve("org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver");
  sleep.hold(why);
  sleep.release(); // before the answer has come
  EXPECT_TRUE(logs("Inhibit Vellum filmUnInhibit 7")) << desk.log.toStdString();
  desktop.unregisterService(u"org.freedesktop.ScreenSaver"_s);
  serve("org.freedesktop.login1", "/org/freedesktop/login1");
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  desk.answer = QVariant::fromValue(QDBusUnixFileDescriptor(ends[1])); // a copy
  close(ends[1]);
  desk.log.clear();
  sleep.hold(why);
  EXPECT_TRUE(logs("Inhibit idle Vellum film block")) << desk.log.toStdString();
  desk.answer.clear();
  settle({desktop, ours});
  pollfd reader{ends[0], POLLIN, 0};
  EXPECT_EQ(poll(&reader, 1, 0), 0); // somebody holds it
  sleep.release();
  EXPECT_TRUE(turnUntil([&] { return poll(&reader, 1, 0) != 0; }));
  close(ends[0]);
}

} // namespace
} // namespace vellum::test

#include "BusTest.moc"
