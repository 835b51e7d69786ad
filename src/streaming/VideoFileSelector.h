// Which file of a torrent is the film, and which files are its subtitles. Pure; any thread.
#pragma once
#include "formats/TorrentMeta.h"
#include <vector>

namespace vellum {

struct VideoFileSelector {
  struct Outcome {
    enum class Kind { Single, Choose, None };
    Kind kind = Kind::None;
    // Single: the one file. Choose: the candidates in the order to show them.
    std::vector<int> files;
    bool operator==(const Outcome&) const = default;
  };

  static Outcome select(const std::vector<TorrentFileEntry>& files);
  // Indexes in file order.
  static std::vector<int> candidates(const std::vector<TorrentFileEntry>& files);
  static std::vector<int> subtitles(const std::vector<TorrentFileEntry>& files);
};

} // namespace vellum
