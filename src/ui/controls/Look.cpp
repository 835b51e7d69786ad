#include "ui/controls/Look.h"
#include <QFont>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QStyleHints>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(Vellum_ThemePlugin)
Q_IMPORT_QML_PLUGIN(Vellum_IconsPlugin)
Q_IMPORT_QML_PLUGIN(Vellum_ControlsPlugin)

namespace vellum {

void prepareLook(QGuiApplication& app) {
  // Whatever the platform thinks of it: tooltips hang on it too.
  app.styleHints()->setUseHoverEffects(true);
#ifndef Q_OS_MACOS
  // Its figures are all of one width, so that numbers in columns align; other scripts come from
  // whatever the system has.
  QFont font = QGuiApplication::font();
  font.setFamilies({QStringLiteral("Roboto"), font.family()});
  QGuiApplication::setFont(font);
#endif
}

void addModules(QQmlEngine& engine) { engine.addImportPath(QStringLiteral("qrc:/qt/qml")); }

} // namespace vellum
