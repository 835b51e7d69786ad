#include "ui/window/MainWindow.h"
#include "ui/catalog/PosterProvider.h"
#include "ui/controls/Look.h"
#include <QQuickWindow>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(Vellum_WindowPlugin)
Q_IMPORT_QML_PLUGIN(Vellum_CatalogPlugin)
Q_IMPORT_QML_PLUGIN(Vellum_ManagePlugin)
Q_IMPORT_QML_PLUGIN(Vellum_PlayerPlugin)
Q_IMPORT_QML_PLUGIN(Vellum_TorrentsPlugin)
Q_IMPORT_QML_PLUGIN(Vellum_VideoPlugin)

namespace vellum::ui {

MainWindow::MainWindow(Runtime& runtime, WindowState& window)
    : m_model(window), m_screens(runtime, window) {
  addModules(m_engine);
  m_engine.addImageProvider(PosterProvider::name(),
                            new PosterProvider(runtime.pool,
                                               runtime.http.fetcher(PosterLoader::kLargestBody),
                                               runtime.clock));
  m_engine.setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(&m_model)},
                                 {QStringLiteral("screens"), QVariant::fromValue(&m_screens)}});
  m_engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Vellum/Window/Main.qml")));
}

QQuickWindow* MainWindow::window() const {
  const auto roots = m_engine.rootObjects();
  return roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(roots.constFirst());
}

void MainWindow::raise() {
  if (QQuickWindow* shown = window()) {
    shown->setWindowStates(shown->windowStates() & ~Qt::WindowMinimized);
    shown->raise();
    shown->requestActivate();
  }
}

} // namespace vellum::ui
