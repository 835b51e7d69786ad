#include "cli/StreamMode.h"
#include "app/AppState.h"
#include "cli/StreamCommand.h"
#include <QDir>
#include <asio/signal_set.hpp>
#include <csignal>

namespace vellum {

namespace {

// Cancels the flows at the first SIGINT or SIGTERM.
class StopSignals {
public:
  StopSignals(Runtime& runtime, FlowGroup& flows) : m_signals(runtime.pool.io(), SIGINT, SIGTERM) {
    m_signals.async_wait([&runtime, flows](asio::error_code error, int) mutable {
      if (!error) runtime.main.post([flows]() mutable { flows.cancelAll(); });
    });
  }
  ~StopSignals() { m_signals.cancel(); }
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

private:
  asio::signal_set m_signals;
};

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
  const StopSignals signals(runtime, flows);
  flows.spawn(runAndQuit(command));
  return QCoreApplication::exec();
}

} // namespace vellum
