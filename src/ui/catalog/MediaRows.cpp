#include "ui/catalog/MediaRows.h"
#include "base/Fmt.h"
#include "base/Text.h"
#include <algorithm>
#include <iterator>

namespace vellum::ui {

namespace {

MediaRow rowOf(const MediaItem& item) {
  const QString title = oneLine(item.title);
  return {.key = item.id,
          .title = title.isEmpty() ? oneLine(item.id) : title,
          .subtitle = byline(item),
          .poster = item.thumbnailURL()};
}

MediaRow rowOf(const HistoryEntry& entry, bool withProgress) {
  MediaRow row{.key = entry.key,
               .title = oneLine(entry.title),
               .subtitle = {},
               .poster = webAddress(entry.thumbnail.value_or(QString())).value_or(QUrl())};
  if (!withProgress) return row;
  row.subtitle = Fmt::time(entry.position);
  if (entry.duration > 0) {
    row.subtitle += QStringLiteral(" / ") + Fmt::time(entry.duration);
    row.progress = std::clamp(entry.position / entry.duration, 0.0, 1.0);
  }
  return row;
}

MediaRow rowOf(const LocalVideo& video) {
  return {.key = video.path,
          .title = oneLine(video.name),
          .subtitle = formatByteCount(video.size),
          .poster = {}};
}

template <class Values, class Make>
MediaRows made(const Values& values, Make make) {
  MediaRows rows;
  rows.reserve(values.size());
  std::transform(values.begin(), values.end(), std::back_inserter(rows), make);
  return rows;
}

} // namespace

QString byline(const MediaItem& item) {
  QStringList parts{oneLine(item.year.value_or(QString())),
                    oneLine(item.creator.value_or(QString()))};
  parts.removeAll(QString());
  return parts.join(QStringLiteral(" · "));
}

std::optional<QUrl> webAddress(const QString& text) {
  const QUrl url(text, QUrl::StrictMode);
  const bool isWeb = url.scheme() == u"http" || url.scheme() == u"https";
  if (!url.isValid() || !isWeb || url.host().isEmpty()) return std::nullopt;
  return url;
}

MediaRows rowsOf(const MediaItems& items) {
  return made(items, [](const MediaItem& item) { return rowOf(item); });
}
MediaRows rowsOf(const HistoryEntries& entries, bool withProgress) {
  return made(entries,
              [withProgress](const HistoryEntry& entry) { return rowOf(entry, withProgress); });
}
MediaRows rowsOf(const LocalVideos& videos) {
  return made(videos, [](const LocalVideo& video) { return rowOf(video); });
}

} // namespace vellum::ui
