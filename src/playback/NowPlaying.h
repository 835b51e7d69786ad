// What plays: what the screens show about it, and the row of the history that it belongs to.
#pragma once
#include <QString>
#include <QUrl>
#include <optional>

namespace vellum {

struct NowPlaying {
  QString key; // of the history entry, or a pending key while a stream opens
  QString title;
  std::optional<QUrl> thumbnail; // poster for the mini player

  friend bool operator==(const NowPlaying&, const NowPlaying&) = default;
};

} // namespace vellum
