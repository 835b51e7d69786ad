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

bool contains(const QString& title, const char* token) {
  return title.contains(QLatin1String(token), Qt::CaseInsensitive);
}

} // namespace

QString TorrentResult::sourceSort() const {
  QStringList sorted = sources;
  sorted.sort();
  return sorted.join(QStringLiteral(", "));
}

QString TorrentResult::quality() const {
  for (const auto& [text, label] : kQualities)
    if (contains(title, text)) return QLatin1String(label);
  return kUnknown;
}

QString TorrentResult::format() const {
  for (const char* format : kFormats)
    if (contains(title, format)) return QLatin1String(format);
  return archiveID ? QStringLiteral("mp4") : kUnknown;
}

} // namespace vellum
