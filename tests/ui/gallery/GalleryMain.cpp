// The gallery of the controls: a window to try them in, or, with a folder, a picture of each page
// at the smallest and at a common size.
//   vellum-gallery           the window
//   vellum-gallery FOLDER    pictures only; QT_QPA_PLATFORM=offscreen needs no screen
#include "ui/controls/Look.h"
#include <QDeadlineTimer>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QKeyEvent>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(Vellum_GalleryPlugin)

namespace {

constexpr int settling = 1200; // ms: pictures loaded, motion over

void settle() {
  const QDeadlineTimer end(settling);
  while (!end.hasExpired()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
}

bool save(QQuickWindow& window, const QString& path) {
  settle();
  return window.grabWindow().save(path);
}

// Onto the first control of the page, so that its ring is in the picture.
void focusPage(QQuickWindow& window) {
  const auto pageCount = window.property("pages").toList().size();
  window.requestActivate();
  window.contentItem()->forceActiveFocus(Qt::TabFocusReason);
  for (qsizetype i = 0; i <= pageCount; ++i)
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent tab(type, Qt::Key_Tab, Qt::NoModifier);
      QCoreApplication::sendEvent(&window, &tab);
    }
}

bool pictures(QQuickWindow& window, const QDir& folder) {
  bool saved = folder.mkpath(QStringLiteral("."));
  const auto pageCount = window.property("pages").toList().size();
  for (const QSize size : {QSize(980, 640), QSize(1440, 900)}) {
    window.resize(size);
    for (int page = 0; page < pageCount; ++page) {
      window.setProperty("page", page);
      focusPage(window);
      const auto name = QStringLiteral("page%1-%2.png").arg(page).arg(size.width());
      saved = save(window, folder.filePath(name)) && saved;
    }
    window.setProperty("page", 0);
    for (const char* popup : {"alert", "sheet", "menu"}) {
      auto* shown = window.property(popup).value<QObject*>();
      QMetaObject::invokeMethod(shown, "open");
      const auto name = QStringLiteral("%1-%2.png").arg(QLatin1String(popup)).arg(size.width());
      saved = save(window, folder.filePath(name)) && saved;
      QMetaObject::invokeMethod(shown, "close");
    }
  }
  return saved;
}

} // namespace

int main(int argc, char** argv) {
  QGuiApplication app(argc, argv);
  vellum::prepareLook(app);
  QQmlApplicationEngine engine;
  vellum::addModules(engine);
  engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Vellum/Gallery/Gallery.qml")));
  auto* window = engine.rootObjects().isEmpty()
                     ? nullptr
                     : qobject_cast<QQuickWindow*>(engine.rootObjects().constFirst());
  if (!window) return EXIT_FAILURE;
  if (argc < 2) return QGuiApplication::exec();
  return pictures(*window, QDir(QString::fromLocal8Bit(argv[1]))) ? EXIT_SUCCESS : EXIT_FAILURE;
}
