#include "main/WindowMode.h"
#include "app/MediaSession.h"
#include "app/StopSignals.h"
#include "desktop/LaunchArguments.h"
#include "desktop/SingleInstance.h"
#include "main/StartupPhases.h"
#include "ui/controls/Look.h"
#include "ui/language/Language.h"
#include "ui/window/MainWindow.h"
#include <QDir>
#include <QFileOpenEvent>
#include <QGuiApplication>
#include <QIcon>
#include <QOpenGLContext>
#include <QQuickWindow>
#include <cstdio>

namespace vellum {

namespace {

// Links that the system hands to a running program (macOS).
class OpenedBySystem final : public QObject {
public:
  explicit OpenedBySystem(LinkOpener& links) : m_links(links) { qGuiApp->installEventFilter(this); }

protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() != QEvent::FileOpen) return QObject::eventFilter(object, event);
    const auto* opened = static_cast<QFileOpenEvent*>(event); // by its type
    const QUrl url = opened->url();
    m_links.open(url.isLocalFile() ? opened->file() : url.toString(QUrl::FullyEncoded));
    return true;
  }

private:
  LinkOpener& m_links;
};

// The picture is drawn with OpenGL, or by the processor where there is none.
void chooseRenderer() {
  QOpenGLContext context;
  QQuickWindow::setGraphicsApi(context.create() ? QSGRendererInterface::OpenGL
                                                : QSGRendererInterface::Software);
}

int complain(const QString& sentence) {
  std::fprintf(stderr, "%s\n", qUtf8Printable(sentence));
  return 1;
}

int show(const QStringList& links, const QStringList& defaultTrackers, SingleInstance& instance) {
  Runtime runtime;
  AppState app(runtime, {defaultTrackers, {}, {}});
  WindowState state(runtime, app);
  const auto controls = MediaControls::make();
  StayAwake stayAwake;
  MediaSession session(state, *controls, stayAwake);
  startup::reached("services");
  ui::MainWindow window(runtime, state);
  if (window.window() == nullptr) return complain(QStringLiteral("The window could not be made."));
  startup::reached("window");
  startup::watch(*window.window());

  const OpenedBySystem opened(state.links);
  const auto open = [&](const QStringList& what) {
    for (const QString& link : what) state.links.open(link);
    window.raise();
  };
  QObject::connect(&instance, &SingleInstance::opened, qGuiApp, open);
  QObject::connect(&session, &MediaSession::windowWanted, qGuiApp, [&] { window.raise(); });
  const StopSignals signals(runtime, [] { QGuiApplication::quit(); });
  if (!links.isEmpty()) open(links);

  const int result = QGuiApplication::exec();
  state.playback.coordinator.saveNow();
  return result;
}

} // namespace

bool hasDisplay() {
#ifdef Q_OS_MACOS
  return true;
#else
  return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
         qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
#endif
}

int runWindowMode(int argc, char** argv, const QStringList& links,
                  const QStringList& defaultTrackers) {
  startup::reached("main");
  QGuiApplication application(argc, argv);
  speak(application);
  QGuiApplication::setDesktopFileName(QStringLiteral("vellum"));
#ifndef Q_OS_MACOS // has it from the bundle
  QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/vellum.svg")));
#endif
  const QStringList openable = openableLinks(links, QDir::currentPath());
  SingleInstance instance;
  switch (instance.start(openable)) {
  case SingleInstance::Start::First: break;
  case SingleInstance::Start::HandedOver: return 0;
  case SingleInstance::Start::Unanswered:
    return complain(QStringLiteral("Vellum is running already, but it does not answer."));
  }
  startup::reached("desktop");
  chooseRenderer();
  prepareLook(application);
  startup::reached("look");
  return show(openable, defaultTrackers, instance);
}

} // namespace vellum
