// A small file cut out of a torrent that is still arriving.
#pragma once
#include "base/Flow.h"
#include "streaming/StreamSource.h"
#include <QString>

namespace vellum {

inline constexpr std::int64_t kExtractLimit = 0x2000000; // bytes; larger files are not for memory

// Writes one file to `destination`, making its folder and replacing what is there; false unless the
// file is complete, below the limit, and could be written. Runs where it is awaited: a worker.
Flow<bool> extractFile(std::shared_ptr<StreamSource> source, std::int64_t file,
                       QString destination);

} // namespace vellum
