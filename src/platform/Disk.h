// What the file system tells about space. Any thread.
#pragma once
#include <QString>
#include <cstdint>

namespace vellum::disk {

// Bytes that may still be written on the volume of a path; the path need not exist, its nearest
// existing parent counts. 0 if it cannot be told.
std::int64_t freeSpace(const QString& path);
// Bytes that a file really occupies: less than its size when it has holes. 0 if it is gone.
std::int64_t allocatedSize(const QString& path);

} // namespace vellum::disk
