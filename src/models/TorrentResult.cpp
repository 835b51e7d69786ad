#include "models/TorrentResult.h"
#include <array>

namespace vellum {

namespace {

struct Token {
  const char* text;
  const char* label;
};
// The first that occurs anywhere in the title wins.
constexpr std::array<Token, 7> kQualities{{{"2160p", "2160p"},
                                           {"4k", "2160p"},
                                           {"1080p", "1080p"},
                                           {"720p", "720p"},
                                           {"480p", "480p"},
                                           {"dvdrip", "SD"},
                                           {"brrip", "HD"}}};
constexpr std::array<const char*, 7> kFormats{"mkv", "mp4", "avi", "m4v", "mov", "webm", "ogv"};
const QString kUnknown = QStringLiteral("—");

// Lowered once: a comparison that ignores case costs ten times one that does not.
bool contains(const QString& loweredTitle, const char* token) {
  return loweredTitle.contains(QLatin1String(token));
}

} // namespace

QString TorrentResult::sourceSort() const {
  QStringList sorted = sources;
  sorted.sort();
  return sorted.join(QStringLiteral(", "));
}

QString TorrentResult::quality() const {
  const QString lowered = title.toLower();
  for (const auto& [text, label] : kQualities)
    if (contains(lowered, text)) return QLatin1String(label);
  return kUnknown;
}

QString TorrentResult::format() const {
  const QString lowered = title.toLower();
  for (const char* format : kFormats)
    if (contains(lowered, format)) return QLatin1String(format);
  return archiveID ? QStringLiteral("mp4") : kUnknown;
}

} // namespace vellum
