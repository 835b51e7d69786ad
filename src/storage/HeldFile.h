// Locks that tell a file in use from one that may go, within a process and between processes.
#pragma once
#include <QString>

namespace vellum {

// Opens a file for reading and writing, made with its folder if it is missing, and marks it as in
// use until the descriptor is closed. -1 if it cannot be opened. Any thread; it may have to wait
// for a removal that is under way.
int openForUse(const QString& path);

// The right to remove a file: nobody uses it, and whoever opens it meanwhile waits, and then gets a
// new one. Any thread. The space of a removed file is freed with this, which may take its time.
class RemovalRight {
public:
  // A file that is not there, or may not be opened, is not in use.
  explicit RemovalRight(const QString& path);
  ~RemovalRight();
  RemovalRight(const RemovalRight&) = delete;
  RemovalRight& operator=(const RemovalRight&) = delete;

  bool isInUse() const { return m_isInUse; } // by somebody else: hands off
  bool isThere() const { return m_isThere; }

private:
  int m_file = -1;
  bool m_isInUse = false;
  bool m_isThere = false;
};

// Nothing happens to a file in use, nor if it cannot be removed.
void removeUnlessInUse(const QString& path);

} // namespace vellum
