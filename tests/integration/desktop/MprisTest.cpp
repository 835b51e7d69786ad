#include "desktop/linux/Mpris.h"
#include "PrivateBus.h"
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>

namespace vellum::test {
namespace {

// Whatever the player announces.
class Listener : public QObject {
  Q_OBJECT

public:
  QVariantMap changed; // of all announcements together
  QList<qlonglong> jumps;

public Q_SLOTS:
  void onChanged(const QString& /*interface*/, const QVariantMap& values, const QStringList&) {
    changed.insert(values);
  }
  void onSeeked(qlonglong position) { jumps += position; }
};

struct MprisTest : ::testing::Test, MainThread {
  MprisTest() {
    const auto path = QLatin1String(Mpris::kPath);
    desktop.connect({}, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                    QStringLiteral("PropertiesChanged"), &listener,
                    SLOT(onChanged(QString, QVariantMap, QStringList)));
    desktop.connect({}, path, QLatin1String(Mpris::kPlayer), QStringLiteral("Seeked"), &listener,
                    SLOT(onSeeked(qlonglong)));
    const auto note = [this](const char* name) {
      return [this, name](auto... seconds) {
        commands += name;
        ((commands += " " + std::to_string(std::lround(seconds * 10))), ...);
        commands += ";";
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
    EXPECT_TRUE(turnUntil([&] { return names().size() == 1; }));
  }

  // The names of players on the bus; asked of the daemon, which answers without us.
  QStringList names() {
    return desktop.interface()->registeredServiceNames().value().filter(
        QStringLiteral("org.mpris"));
  }
  // What the command line player control says, as shells and users see it.
  std::string playerctl(const QStringList& arguments) {
    const QStringList command{QStringLiteral("env"),
                              QStringLiteral("DBUS_SESSION_BUS_ADDRESS=") + bus.address(),
                              QStringLiteral("playerctl")};
    return StartedProgram(command + arguments).all().toStdString();
  }
  void setPosition(const QString& track, qlonglong microseconds) {
    auto call = QDBusMessage::createMethodCall(
        QLatin1String(Mpris::kName), QLatin1String(Mpris::kPath), QLatin1String(Mpris::kPlayer),
        QStringLiteral("SetPosition"));
    const auto reply =
        desktop.asyncCall(call << QVariant::fromValue(QDBusObjectPath(track)) << microseconds);
    EXPECT_TRUE(turnUntil([&] { return reply.isFinished(); }));
  }
  static MediaStatus film(double position) {
    MediaStatus status;
    status.isLoaded = status.isPlaying = true;
    status.title = QStringLiteral("Der \"Film\" – 映画");
    status.artwork = QUrl(QStringLiteral("http://127.0.0.1/poster a.jpg"));
    status.position = position;
    status.duration = 5400;
    return status;
  }

  PrivateBus bus;
  QDBusConnection desktop = bus.connect("desktop");
  Mpris player{bus.connect("ours")};
  Listener listener;
  std::string commands;
};

TEST_F(MprisTest, ShowsWhatPlays) {
  EXPECT_EQ(playerctl({QStringLiteral("status")}), "Stopped");
  player.show(film(61.5));
  EXPECT_EQ(playerctl({QStringLiteral("metadata"), QStringLiteral("--format"),
                       QStringLiteral("{{playerName}}|{{status}}|{{title}}|{{mpris:length}}|"
                                      "{{mpris:artUrl}}|{{mpris:trackid}}")}),
            "vellum|Playing|Der \"Film\" – 映画|5400000000|http://127.0.0.1/poster%20a.jpg|"
            "'/org/vellum/track/1'");
  EXPECT_TRUE(turnUntil([&] { return listener.changed.contains(QStringLiteral("CanSeek")); }));
  EXPECT_EQ(listener.changed[QStringLiteral("PlaybackStatus")], QStringLiteral("Playing"));

  listener.changed.clear();
  player.show(film(62)); // goes on: nothing to announce
  MediaStatus paused = film(62);
  paused.isPlaying = false;
  player.show(paused);
  paused.position = 30;
  player.show(paused);
  EXPECT_TRUE(turnUntil([&] { return listener.jumps == QList<qlonglong>{30'000'000}; }));
  EXPECT_EQ(listener.changed,
            (QVariantMap{{QStringLiteral("PlaybackStatus"), QStringLiteral("Paused")}}));
  EXPECT_EQ(playerctl({QStringLiteral("position")}), "30.000000");
  player.show({});
  EXPECT_EQ(playerctl({QStringLiteral("status")}), "Stopped");
}

TEST_F(MprisTest, PassesOnWhatIsAskedWithinTheFilm) {
  playerctl({QStringLiteral("play-pause")}); // nothing is loaded
  EXPECT_EQ(commands, "");
  player.show(film(60));
  const std::pair<const char*, const char*> cases[] = {
      {"play", "play;"},
      {"pause", "pause;"},
      {"play-pause", "toggle;"},
      {"stop", "stop;"},
      {"volume 0.5", "volume 5;"},
      {"volume 7", "volume 10;"},
      {"position 90", "seek 900;"},
      {"position 10+", "seekBy 100;"},
      {"position 90-", "seekBy -600;"},
      {"position 9999+", "seekBy 53400;"},
      {"position 9999", ""},
      {"next", ""},
  };
  for (const auto& [request, expected] : cases) {
    commands.clear();
    playerctl(QString::fromLatin1(request).split(u' '));
    EXPECT_EQ(commands, expected) << request;
  }
  commands.clear();
  setPosition(QStringLiteral("/org/vellum/track/1"), -1);
  setPosition(QStringLiteral("/org/vellum/track/2"), 1'000'000); // of a film to come
  EXPECT_EQ(commands, "");
  setPosition(QStringLiteral("/org/vellum/track/1"), 0);
  EXPECT_EQ(commands, "seek 0;");
}

TEST_F(MprisTest, ASecondOneTakesANameWithASuffix) {
  const auto second = std::make_unique<Mpris>(bus.connect("second"));
  ASSERT_TRUE(turnUntil([&] { return names().size() == 2; }));
  const QString suffixed = QLatin1String(Mpris::kName) +
                           QStringLiteral(".instance%1").arg(QCoreApplication::applicationPid());
  EXPECT_TRUE(names().contains(suffixed));
  EXPECT_TRUE(names().contains(QLatin1String(Mpris::kName)));
}

TEST_F(MprisTest, GivesItsNameBackAndNeedsNoBus) {
  std::make_unique<Mpris>(bus.connect("brief")).reset();
  EXPECT_EQ(names().size(), 1);
  Mpris alone(QDBusConnection(QStringLiteral("nowhere")));
  alone.show(film(1));
  alone.show(film(60));
  EXPECT_TRUE(listener.changed.isEmpty());
}

} // namespace
} // namespace vellum::test

#include "MprisTest.moc"
