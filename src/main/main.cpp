// The process entry: which of its faces Vellum shows.
#include "app/Runtime.h"
#include "base/Addresses.h"
#include "cli/Arguments.h"
#include "cli/SearchMode.h"
#include "cli/StreamMode.h"
#include "main/WindowMode.h"
#include "platform/Memory.h"
#include "platform/ProcessLimits.h"
#include "selftest/SelfTests.h"
#include <QCoreApplication>
#include <cstdio>

namespace {

using namespace vellum;

QStringList given(int argc, char** argv) {
  QStringList list;
  for (int i = 1; i < argc; ++i) list += QString::fromLocal8Bit(argv[i]);
  return list;
}

int print(std::FILE* to, const QString& text, int exitCode) {
  std::fprintf(to, "%s\n", qUtf8Printable(text));
  return exitCode;
}

} // namespace

int main(int argc, char** argv) {
  const TimePoint processStart = SystemClock().now();
  platform::giveMemoryBack();
  platform::raiseProcessLimits();
  QCoreApplication::setApplicationName(QStringLiteral("Vellum"));
  QCoreApplication::setApplicationVersion(QStringLiteral(VELLUM_VERSION));

  const Arguments arguments = parseArguments(given(argc, argv));
  switch (arguments.mode) {
  case Arguments::Mode::Help: return print(stdout, helpText(), 0);
  case Arguments::Mode::Version: return print(stdout, QStringLiteral("Vellum " VELLUM_VERSION), 0);
  case Arguments::Mode::Wrong: return print(stderr, arguments.error, 2);
  case Arguments::Mode::Window:
    if (hasDisplay())
      return runWindowMode(argc, argv, arguments.links, addresses::defaultTrackers());
    return print(
        stderr,
        QStringLiteral("There is no display here for a window: vellum --stream SOURCE streams "
                       "in the terminal (see vellum --help)."),
        2);
  default: break;
  }

  const QCoreApplication application(argc, argv);
  if (arguments.mode == Arguments::Mode::SelfTest) {
    Runtime runtime{QString()}; // without anything of the user's
    return runSelfTests(runtime);
  }
  Runtime runtime;
  if (arguments.mode == Arguments::Mode::Search) return runSearchMode(runtime, arguments.words);
  return runStreamMode(runtime, arguments, addresses::defaultTrackers(), processStart);
}
