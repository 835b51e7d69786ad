#include "engine/SessionStorage.h"
#include "storage/HeldFile.h"
#include <QDir>
#include <cerrno>
#include <unistd.h>
#include <utility>

namespace vellum {

QString SessionStorage::payloadIn(const QString& directory) {
  return directory + QStringLiteral("/payload.dat");
}

void SessionStorage::makeDirectory() const { QDir().mkpath(m_directory); }

void SessionStorage::open(std::int64_t total) {
  close();
  m_file = openForUse(payloadIn(m_directory));
  // A file system without room for the length still takes pieces as far as they go.
  if (m_file >= 0) std::ignore = ::ftruncate(m_file, total);
}

void SessionStorage::close() {
  if (m_file >= 0) ::close(m_file);
  m_file = -1;
}

bool SessionStorage::write(std::int64_t offset, ByteSpan bytes) {
  if (m_file < 0) return false;
  while (!bytes.empty()) {
    const ssize_t wrote = ::pwrite(m_file, bytes.data(), bytes.size(), offset);
    if (wrote < 0 && errno == EINTR) continue;
    if (wrote <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(wrote));
    offset += wrote;
  }
  return true;
}

bool SessionStorage::read(std::int64_t offset, std::span<std::byte> into) {
  return readSome(offset, into) == into.size();
}

std::size_t SessionStorage::readSome(std::int64_t offset, std::span<std::byte> into) const {
  if (m_file < 0) return 0;
  std::size_t done = 0;
  while (done < into.size()) {
    const ssize_t got = ::pread(m_file, into.data() + done, into.size() - done,
                                offset + static_cast<std::int64_t>(done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

} // namespace vellum
