// The process entry: which of its faces Vellum shows.
#include "app/Runtime.h"
#include "base/Addresses.h"
#include "cli/Arguments.h"
#include "cli/SearchMode.h"
#include "cli/StreamMode.h"
#include "platform/ProcessLimits.h"
#include "selftest/SelfTests.h"
#include <QCoreApplication>
#include <cstdio>

namespace {

using namespace vellum;

// Tests and demonstrations may name other trackers, or none.
QStringList defaultTrackers() {
  if (!qEnvironmentVariableIsSet("VELLUM_TRACKERS")) return addresses::defaultTrackers();
  return qEnvironmentVariable("VELLUM_TRACKERS").split(u',', Qt::SkipEmptyParts);
}

int print(std::FILE* to, const QString& text, int exitCode) {
  std::fprintf(to, "%s\n", qUtf8Printable(text));
  return exitCode;
}

} // namespace

int main(int argc, char** argv) {
  const TimePoint processStart = SystemClock().now();
  platform::raiseProcessLimits();
  const QCoreApplication application(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("Vellum"));
  QCoreApplication::setApplicationVersion(QStringLiteral(VELLUM_VERSION));

  const Arguments arguments = parseArguments(QCoreApplication::arguments().mid(1));
  switch (arguments.mode) {
  case Arguments::Mode::Help: return print(stdout, helpText(), 0);
  case Arguments::Mode::Version: return print(stdout, QStringLiteral("Vellum " VELLUM_VERSION), 0);
  case Arguments::Mode::Wrong: return print(stderr, arguments.error, 2);
  case Arguments::Mode::Window:
    return print(stderr,
                 QStringLiteral("This build of Vellum has no window yet; vellum --stream SOURCE "
                                "streams in the terminal (see vellum --help)."),
                 2);
  default: break;
  }

  Runtime runtime;
  if (arguments.mode == Arguments::Mode::SelfTest) return runSelfTests(runtime);
  if (arguments.mode == Arguments::Mode::Search) return runSearchMode(runtime, arguments.words);
  return runStreamMode(runtime, arguments, defaultTrackers(), processStart);
}
