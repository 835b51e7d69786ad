#include "cli/StreamMode.h"
#include "app/AppState.h"
#include "app/StopSignals.h"
#include "cli/StreamCommand.h"
#include <QDir>

namespace vellum {

namespace {

Flow<> runAndQuit(StreamCommand& command) { QCoreApplication::exit(co_await command.run()); }

} // namespace

int runStreamMode(Runtime& runtime, const Arguments& arguments, const QStringList& defaultTrackers,
                  TimePoint processStart) {
  AppState::Options options;
  options.defaultTrackers = defaultTrackers;
  options.keep = arguments.keep;
  if (!arguments.directory.isEmpty())
    options.streamsDirectory = QDir::current().absoluteFilePath(arguments.directory);
  AppState state(runtime, options);

  StreamCommand::Services services{
      runtime.main,
      runtime.pool,
      runtime.clock,
      processStart,
      runtime.http.fetcher(),
      state.engine,
      runtime.server,
      arguments.directory.isEmpty() ? state.settings.cachePath() : options.streamsDirectory,
      [](const QString& path) { return CacheManager::freeSpace(path); }};
  StreamCommand command(services, arguments);
  FlowGroup flows(runtime.main.executor());
  const StopSignals signals(runtime, [group = flows]() mutable { group.cancelAll(); });
  // From within the main loop: a loop that has not begun cannot be ended.
  runtime.main.post([&flows, &command] { flows.spawn(runAndQuit(command)); });
  return QCoreApplication::exec();
}

} // namespace vellum
