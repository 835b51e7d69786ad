// A program that a test starts, talks with and ends. (The thread sanitizer cannot follow the way in
// which QProcess makes a child.)
#pragma once
#include "world/MainThread.h"
#include <QFile>
#include <QStringList>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vellum::test {

using namespace world;

// Ends with this object at the latest.
class StartedProgram {
public:
  explicit StartedProgram(const QStringList& command) {
    int input[2];
    int output[2];
    EXPECT_EQ(pipe2(input, O_CLOEXEC), 0);
    EXPECT_EQ(pipe2(output, O_CLOEXEC | O_NONBLOCK), 0);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, input[0], STDIN_FILENO);
    for (const int to : {STDOUT_FILENO, STDERR_FILENO})
      posix_spawn_file_actions_adddup2(&files, output[1], to);
    std::vector<QByteArray> texts;
    for (const QString& text : command) texts.push_back(text.toUtf8());
    std::vector<char*> argv;
    for (QByteArray& text : texts) argv.push_back(text.data());
    argv.push_back(nullptr);
    EXPECT_EQ(posix_spawnp(&m_pid, argv[0], &files, nullptr, argv.data(), environ), 0) << argv[0];
    posix_spawn_file_actions_destroy(&files);
    close(input[0]);
    close(output[1]);
    m_input = input[1];
    m_output = output[0];
  }
  ~StartedProgram() {
    end(SIGKILL);
    closeInput();
    close(m_output);
  }
  StartedProgram(const StartedProgram&) = delete;
  StartedProgram& operator=(const StartedProgram&) = delete;

  QByteArray line() {
    EXPECT_TRUE(MainThread::turnUntil([&] { return read() || m_said.contains('\n'); }))
        << m_said.toStdString();
    const qsizetype end = m_said.indexOf('\n');
    const QByteArray out = m_said.first(std::max<qsizetype>(0, end));
    m_said.remove(0, end + 1);
    return out;
  }
  // Everything until its end.
  QByteArray all() {
    EXPECT_TRUE(MainThread::turnUntil([&] { return read(); }));
    return m_said.trimmed();
  }
  void closeInput() {
    if (m_input >= 0) close(std::exchange(m_input, -1));
  }
  void end(int signal = 0) { // 0: it ends by itself
    if (m_pid <= 0) return;
    if (signal != 0) kill(m_pid, signal);
    waitpid(std::exchange(m_pid, 0), nullptr, 0);
  }

private:
  // True when there will be no more.
  bool read() {
    char bytes[4096];
    ssize_t count = 0;
    while ((count = ::read(m_output, bytes, sizeof(bytes))) > 0) m_said.append(bytes, count);
    return count == 0;
  }

  pid_t m_pid = 0;
  int m_input = -1;
  int m_output = -1;
  QByteArray m_said;
};

} // namespace vellum::test
