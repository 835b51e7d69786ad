// Which quality of a film to play. Pure.
#pragma once
#include "models/TorrentResult.h"
#include <array>

namespace vellum {

struct QualityPicker {
  // Heights in lines; a position in it is a rung.
  static constexpr std::array ladder{480, 720, 1080, 2160};

  // The height that a label stands for, in any case: "720p" and "HD" are 720.
  static std::optional<int> rank(const QString& label);
  // The result on the rung nearest to the preferred one, the lower of two equally near, the one
  // with more seeders of two on one rung, the earlier of two equals. Where no rung is known, the
  // result with the most seeders. Nothing of nothing.
  static std::optional<TorrentResult> pick(const QString& preferred, const TorrentResults& from);
  // The results with the same baseTitle, by rising height; the result alone if there is none.
  static TorrentResults variants(const TorrentResult& of, const TorrentResults& in);
};

} // namespace vellum
