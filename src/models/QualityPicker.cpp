#include "models/QualityPicker.h"
#include <algorithm>
#include <cstdlib>
#include <utility>

namespace vellum {

namespace {

std::optional<int> rung(const QString& label) {
  const auto height = QualityPicker::rank(label);
  if (!height) return std::nullopt;
  const auto& ladder = QualityPicker::ladder;
  return static_cast<int>(std::find(ladder.begin(), ladder.end(), *height) - ladder.begin());
}

qint64 seedersOf(const TorrentResult& result) { return result.seeders.value_or(0); }

std::optional<TorrentResult> best(const TorrentResults& results) {
  const auto most = std::max_element(
      results.begin(), results.end(),
      [](const TorrentResult& a, const TorrentResult& b) { return seedersOf(a) < seedersOf(b); });
  if (most == results.end()) return std::nullopt;
  return *most;
}

} // namespace

std::optional<int> QualityPicker::rank(const QString& label) {
  const QString lower = label.toLower();
  if (lower == u"480p" || lower == u"sd") return 480;
  if (lower == u"720p" || lower == u"hd") return 720;
  if (lower == u"1080p") return 1080;
  if (lower == u"2160p" || lower == u"4k") return 2160;
  return std::nullopt;
}

std::optional<TorrentResult> QualityPicker::pick(const QString& preferred,
                                                 const TorrentResults& from) {
  const auto wanted = rung(preferred);
  if (!wanted) return best(from);
  using Order = std::pair<int, int>; // distance and rung: the smallest wins, then the most seeders
  const TorrentResult* nearest = nullptr;
  Order least;
  for (const TorrentResult& result : from) {
    const auto own = rung(result.quality());
    if (!own) continue;
    const Order order{std::abs(*own - *wanted), *own};
    const bool isNearer = nearest == nullptr || order < least ||
                          (order == least && seedersOf(result) > seedersOf(*nearest));
    if (!isNearer) continue;
    nearest = &result;
    least = order;
  }
  if (nearest == nullptr) return best(from);
  return *nearest;
}

TorrentResults QualityPicker::variants(const TorrentResult& of, const TorrentResults& in) {
  TorrentResults found;
  if (of.baseTitle)
    std::copy_if(in.begin(), in.end(), std::back_inserter(found),
                 [&](const TorrentResult& other) { return other.baseTitle == of.baseTitle; });
  if (found.empty()) return {of};
  std::stable_sort(found.begin(), found.end(), [](const TorrentResult& a, const TorrentResult& b) {
    return rank(a.quality()).value_or(0) < rank(b.quality()).value_or(0);
  });
  return found;
}

} // namespace vellum
