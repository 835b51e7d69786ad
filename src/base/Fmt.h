// Playback times, and catalog texts without their markup. Pure.
#pragma once
#include <QString>
#include <optional>

namespace vellum {

struct Fmt {
  // "0:59", "61:01" never: "1:01:01". "0:00" for what is no time.
  static QString time(double seconds);
  // Plain text, never to be read as markup again; absent if nothing is left.
  static std::optional<QString> stripHTML(const std::optional<QString>& text);
};

} // namespace vellum
