// A file on its way: hidden beside its later place, and gone unless it gets there.
#pragma once
#include <QString>
#include <cstdint>
#include <memory>
#include <span>
#include <system_error>

namespace vellum {

// Any thread, one at a time. It stays open and locked as long as it lives, which tells a file of a
// running program from one that a dead program has left behind.
class PartFile {
public:
  // An empty one in `folder`; nothing, and the reason in `error`, if that fails.
  static std::shared_ptr<PartFile> create(const QString& folder, std::error_code& error);
  // Removes it, unless it was moved into place.
  ~PartFile();
  PartFile(const PartFile&) = delete;
  PartFile& operator=(const PartFile&) = delete;

  std::int64_t size() const { return m_size; } // bytes
  // Each gives the reason why it failed. What a failed append has written stays.
  std::error_code append(std::span<const char> bytes);
  std::error_code clear();
  // Returns when everything is on the disk, so that no loss of power cuts a moved file short.
  std::error_code sync();
  // Gives it its name at once and as a whole; std::errc::file_exists, and nothing changed, if there
  // is anything of that name.
  std::error_code moveTo(const QString& path);

  // Removes the files of this kind in `folder` that no running program holds, and nothing else.
  static void clearLeftovers(const QString& folder);
  // How moveTo works on volumes without hard links: the name is taken by an empty file first.
  static std::error_code renameToFreeName(const QString& from, const QString& to);

private:
  PartFile(int descriptor, QString path) : m_descriptor(descriptor), m_path(std::move(path)) {}

  const int m_descriptor;
  const QString m_path;
  std::int64_t m_size = 0;
  bool m_isInPlace = false;
};

} // namespace vellum
