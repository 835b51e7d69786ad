// The folder where the starts of one user's program meet: a lock, and the name of a socket.
#pragma once
#include <QString>
#include <optional>

namespace vellum {

// The folder itself if a socket's address can name one in it (108 bytes), otherwise a short one for
// it below the temporary folder. It is the user's own and closed to everybody else (mode 0700);
// nothing if such a one cannot be had.
std::optional<QString> meetingPlace(const QString& folder);
QString meetingSocket(const QString& place);

// A lock that the kernel opens when the process ends, however it ends.
class ProcessLock final {
public:
  ProcessLock() = default;
  ~ProcessLock();
  ProcessLock(const ProcessLock&) = delete;
  ProcessLock& operator=(const ProcessLock&) = delete;

  enum class Result { Taken, Held, Failed };
  Result take(const QString& place);

private:
  int m_descriptor = -1;
};

} // namespace vellum
