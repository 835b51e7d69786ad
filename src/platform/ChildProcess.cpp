#include "platform/ChildProcess.h"
#include "platform/SpawnRules.h"
#include <QFile>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <mutex>
#include <optional>
#include <sys/wait.h>
#include <thread>
#include <vector>

extern char** environ; // NOLINT: POSIX declares it nowhere

namespace vellum::platform {

// Invariant: while m_isRunning, the process id is the child's and nobody else's.
class ChildProcess::Child {
public:
  explicit Child(pid_t pid) : m_pid(pid) {}

  // On a thread of its own. The id stays taken until the lock is held, so that terminate() never
  // meets another process that got it.
  void awaitEnd() {
    siginfo_t ended;
    while (waitid(P_PID, static_cast<id_t>(m_pid), &ended, WEXITED | WNOWAIT) != 0 &&
           errno == EINTR) {
    }
    const std::scoped_lock lock(m_mutex);
    waitpid(m_pid, nullptr, 0);
    m_isRunning = false;
  }
  void terminate() {
    const std::scoped_lock lock(m_mutex);
    if (m_isRunning) kill(m_pid, SIGTERM);
  }
  bool isRunning() {
    const std::scoped_lock lock(m_mutex);
    return m_isRunning;
  }

private:
  const pid_t m_pid;
  std::mutex m_mutex; // guards m_isRunning
  bool m_isRunning = true;
};

namespace {

class SpawnSettings {
public:
  SpawnSettings() {
    posix_spawn_file_actions_init(&m_actions);
    posix_spawnattr_init(&m_attributes);
    for (const int descriptor : {0, 1, 2})
      posix_spawn_file_actions_addopen(&m_actions, descriptor, "/dev/null", O_RDWR, 0);
    // SIGPIPE is ignored here, which a child would inherit.
    sigset_t signalSet;
    sigemptyset(&signalSet);
    posix_spawnattr_setsigmask(&m_attributes, &signalSet);
    sigaddset(&signalSet, SIGPIPE);
    posix_spawnattr_setsigdefault(&m_attributes, &signalSet);
    posix_spawnattr_setpgroup(&m_attributes, 0);
    short flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP;
    keepDescriptorsFromChild(m_actions, flags);
    posix_spawnattr_setflags(&m_attributes, flags);
  }
  ~SpawnSettings() {
    posix_spawnattr_destroy(&m_attributes);
    posix_spawn_file_actions_destroy(&m_actions);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  std::optional<pid_t> spawn(const QString& program, const QStringList& arguments) {
    std::vector<QByteArray> texts{QFile::encodeName(program)};
    for (const QString& argument : arguments) texts.push_back(argument.toLocal8Bit());
    std::vector<char*> argv;
    for (QByteArray& text : texts) argv.push_back(text.data());
    argv.push_back(nullptr);
    pid_t pid = 0;
    if (posix_spawn(&pid, argv.front(), &m_actions, &m_attributes, argv.data(), environ) != 0)
      return {};
    return pid;
  }

private:
  posix_spawn_file_actions_t m_actions;
  posix_spawnattr_t m_attributes;
};

} // namespace

ChildProcess::ChildProcess() = default;
ChildProcess::~ChildProcess() = default;

bool ChildProcess::launch(const QString& program, const QStringList& arguments) {
  const auto pid = SpawnSettings().spawn(program, arguments);
  if (!pid) return false;
  m_child = std::make_shared<Child>(*pid);
  std::thread([child = m_child] { child->awaitEnd(); }).detach();
  return true;
}

void ChildProcess::terminate() {
  if (m_child) m_child->terminate();
}

bool ChildProcess::isRunning() const { return m_child && m_child->isRunning(); }

} // namespace vellum::platform
