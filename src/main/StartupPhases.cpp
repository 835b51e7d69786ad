#include "main/StartupPhases.h"
#include <QQuickWindow>
#include <QTimer>
#include <chrono>
#include <cstdio>

namespace vellum::startup {

namespace {
bool isAsked() {
  static const bool asked = qEnvironmentVariableIsSet("VELLUM_STARTUP");
  return asked;
}
} // namespace

void reached(const char* phase) {
  if (!isAsked()) return;
  const std::chrono::duration<double> now = std::chrono::steady_clock::now().time_since_epoch();
  std::fprintf(stderr, "PHASE %s %.6f\n", phase, now.count());
}

void watch(QQuickWindow& window) {
  if (!isAsked()) return;
  const auto shown = [&window] {
    reached("picture");
    // A timer without delay comes after everything that waits already.
    QTimer::singleShot(0, &window, [] { reached("usable"); });
  };
  // The drawing thread says so.
  QObject::connect(&window, &QQuickWindow::frameSwapped, &window, shown,
                   Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
}

} // namespace vellum::startup
