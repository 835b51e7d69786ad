// What stands between a Qt application and Vellum's QML modules.
#pragma once

class QGuiApplication;
class QQmlEngine;

namespace vellum {

// Main thread. Call once, after the application object exists and before the first window.
void prepareLook(QGuiApplication& app);

// Main thread. Lets the engine find Vellum.Theme, Vellum.Icons, Vellum.Controls and every other
// module that is linked into the program.
void addModules(QQmlEngine& engine);

} // namespace vellum
