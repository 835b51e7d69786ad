#include "tools/WindowWorld.h"
#include "base/Addresses.h"
#include <QDir>
#include <QFileInfo>

namespace vellum::tools {

WindowWorld::WindowWorld(const QStringList& options) {
  for (const char* variable : {"http_proxy", "HTTP_PROXY", "https_proxy", "HTTPS_PROXY"})
    qunsetenv(variable);
  startWorld(options);
  qputenv("VELLUM_HOME", home().toUtf8());
  qputenv("VELLUM_CATALOG", line("CATALOG").toUtf8());
  qputenv("VELLUM_TRACKERS", line("TRACKER").toUtf8());
  startProgram();
}

WindowWorld::~WindowWorld() {
  endProgram();
  m_world.terminate();
  if (!m_world.waitForFinished(10'000)) m_world.kill();
  qunsetenv("VELLUM_HOME");
  qunsetenv("VELLUM_CATALOG");
  qunsetenv("VELLUM_TRACKERS");
}

void WindowWorld::startWorld(const QStringList& options) {
  const QString film = filmFolder();
  if (!QDir().mkpath(film) ||
      !QFile::copy(QStringLiteral(WORLD_FILM), film + QStringLiteral("/Vellum.Test.Film.480p.mp4")))
    throw std::runtime_error("the film cannot be copied");
  QFile subtitle(film + QStringLiteral("/Vellum.Test.Film.480p.en.srt"));
  if (!subtitle.open(QIODevice::WriteOnly) ||
      subtitle.write("1\n00:00:00,000 --> 00:09:00,000\nA line to read\n") < 0)
    throw std::runtime_error("the subtitle cannot be written");
  subtitle.close();

  auto environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("TMPDIR"), m_folder.path());
  m_world.setProcessEnvironment(environment);
  m_world.start(QStringLiteral(DEMO_WORLD),
                QStringList{QStringLiteral("--indexers"), QStringLiteral("--preferences"),
                            home() + QStringLiteral("/Preferences/VellumApp/preferences.json")} +
                    options + QStringList{film});
  while (!m_told.contains("MAGNET ") && m_world.waitForReadyRead(20'000))
    m_told += m_world.readAllStandardOutput();
  if (magnet().isEmpty()) throw std::runtime_error("the demo world did not start");
}

QString WindowWorld::line(const char* word) const {
  for (const QByteArray& line : m_told.split('\n'))
    if (line.startsWith(word + QByteArray(" ")))
      return QString::fromUtf8(line.mid(qsizetype(std::strlen(word)) + 1));
  return {};
}

QString WindowWorld::indexer(const char* kind) const {
  return line((QByteArray("INDEXER ") + kind).constData());
}

void WindowWorld::startProgram() {
  m_runtime.emplace();
  m_app.emplace(*m_runtime, AppState::Options{addresses::defaultTrackers(), {}, {}});
  m_state.emplace(*m_runtime, *m_app, AudioOutput::Silent);
  m_window.emplace(*m_runtime, *m_state);
  if (m_window->window() == nullptr) throw std::runtime_error("there is no window");
  QObject::connect(&m_window->engine(), &QQmlEngine::warnings,
                   [this](const QList<QQmlError>& errors) {
                     for (const QQmlError& error : errors) m_warnings += error.toString();
                   });
  m_driver.emplace(window());
  window().requestActivate();
  if (!QTest::qWaitForWindowActive(&window())) throw std::runtime_error("the window stays away");
}

void WindowWorld::endProgram() {
  m_driver.reset();
  if (m_state) m_state->playback.coordinator.saveNow();
  m_window.reset();
  m_state.reset();
  m_app.reset();
  m_runtime.reset();
}

void WindowWorld::restart() {
  endProgram();
  startProgram();
}

} // namespace vellum::tools
