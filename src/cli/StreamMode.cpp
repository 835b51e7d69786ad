#include "cli/StreamMode.h"
#include "app/AppState.h"
#include "cli/StreamCommand.h"
#include <QDir>
#include <asio/signal_set.hpp>
#include <csignal>

namespace vellum {

namespace {

// Cancels the flows at the first SIGINT or SIGTERM; a second one ends the process as usual, should
// the orderly way take too long.
class StopSignals {
public:
  StopSignals(Runtime& runtime, const FlowGroup& flows)
      : m_strand(runtime.pool.makeStrand()),
        m_signals(std::make_shared<asio::signal_set>(m_strand, SIGINT, SIGTERM)) {
    m_signals->async_wait([&runtime, flows, signals = m_signals](asio::error_code error, int) {
      if (error) return;
      signals->clear();
      runtime.main.post([group = flows]() mutable { group.cancelAll(); });
    });
  }
  ~StopSignals() {
    asio::post(m_strand, [signals = m_signals] { signals->cancel(); });
  }
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

private:
  Strand m_strand;
  std::shared_ptr<asio::signal_set> m_signals; // on the strand
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
  // From within the main loop: a loop that has not begun cannot be ended.
  runtime.main.post([&flows, &command] { flows.spawn(runAndQuit(command)); });
  return QCoreApplication::exec();
}

} // namespace vellum
