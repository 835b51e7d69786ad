#include "app/DesktopServices.h"
#include "platform/Programs.h"

namespace vellum {

bool DesktopPrograms::isExecutable(const QString& path) const {
  return platform::isExecutable(path);
}

bool DesktopPrograms::launch(const QString& program, const QStringList& arguments) {
  return m_child.launch(program, arguments);
}

QString DesktopPrograms::findProgram(const QString& name) const {
  return platform::findProgram(name);
}

bool DesktopPrograms::openInVlc(const QUrl& url) { return platform::openInVlc(url); }

bool LinkServices::openWithDesktop(const QString& link) { return platform::openWithDesktop(link); }

} // namespace vellum
