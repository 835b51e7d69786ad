// "vellum --stream": a torrent to a loopback address, told on standard output line by line.
#pragma once
#include "base/Clock.h"
#include "base/Flow.h"
#include "base/IoPool.h"
#include "base/Wakeup.h"
#include "cli/Arguments.h"
#include "cli/StatusLine.h"
#include "cli/TorrentSource.h"
#include "engine/TorrentEngine.h"
#include "streaming/LocalStreamServer.h"

namespace vellum {

// Main thread. run() is one coroutine that ends with the exit code: 0 when it was cancelled (the
// user's way to end it), 1 for a failure, 2 when the question which file cannot be asked.
class StreamCommand {
public:
  // What it asks of the program; everything outlives it.
  struct Services {
    MainLoop& main;
    IoPool& pool;
    const Clock& clock;
    TimePoint processStart;
    FetchData fetch;
    TorrentEngine& engine;
    LocalStreamServer& server;
    QString folder; // where the payload will grow
    std::function<std::int64_t(const QString&)> freeSpace;
  };

  StreamCommand(const Services& services, Arguments arguments);
  ~StreamCommand();
  StreamCommand(const StreamCommand&) = delete;
  StreamCommand& operator=(const StreamCommand&) = delete;

  Flow<int> run();

private:
  // Thrown inside, caught by run() alone.
  struct Ended {
    int exitCode;
    QString sentence;
  };

  Flow<> stream();
  Flow<TorrentSource> openSource();
  void startSession(const TorrentSource& source);
  Flow<> waitForMetadata();
  Flow<int> chooseFile();
  Flow<int> ask(std::vector<int> candidates);
  void select(int file);
  Flow<> publish(int file);
  Flow<> follow();
  void tell(const QString& line);
  void showStatus(const SessionSnapshot& snapshot);
  double sinceStart() const;
  [[noreturn]] static void fail(const StreamFailure& failure);

  Services m_services;
  Arguments m_arguments;
  StatusLine m_status;
  Wakeup m_changed;
  std::shared_ptr<TorrentSession> m_session;
  std::int64_t m_wantedBytes = 0;
  bool m_sawReady = false;
  std::shared_ptr<bool> m_alive = std::make_shared<bool>(true); // for what comes late
};

} // namespace vellum
