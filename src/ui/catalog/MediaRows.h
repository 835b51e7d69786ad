// What the catalog's screens write about films, and what of it is text from outside. Pure.
#pragma once
#include "models/HistoryEntry.h"
#include "models/MediaItem.h"
#include "ui/catalog/MediaList.h"

namespace vellum::ui {

// A video on this disk.
struct LocalVideo {
  QString name;
  QString path;
  qint64 size = 0; // bytes
  bool operator==(const LocalVideo&) const = default;
};

using LocalVideos = std::vector<LocalVideo>;

// "1957 · Ingmar Bergman"; empty if nothing is known.
QString byline(const MediaItem& item);
// An http or https address with a host; nothing for anything else.
std::optional<QUrl> webAddress(const QString& text);

MediaRows rowsOf(const MediaItems& items);
// Those without progress are what was seen, those with it what goes on.
MediaRows rowsOf(const HistoryEntries& entries, bool withProgress);
MediaRows rowsOf(const LocalVideos& videos);

} // namespace vellum::ui
