#include "playback/ExternalPlayers.h"
#include <array>

namespace vellum {

namespace {
constexpr std::array kMpvPlaces{"/opt/homebrew/bin/mpv", "/usr/local/bin/mpv",
                                "/Applications/mpv.app/Contents/MacOS/mpv"};
} // namespace

QString ExternalPlayers::mpv() const {
  for (const char* place : kMpvPlaces)
    if (m_desktop.isExecutable(QLatin1String(place))) return QLatin1String(place);
  return m_desktop.findProgram(QStringLiteral("mpv"));
}

ExternalPlayers::Opened ExternalPlayers::open(const QUrl& url) {
  // An address begins with "http", so that no player can take it for an option.
  const QString address = QString::fromLatin1(url.toEncoded());
  const QString program = mpv();
  if (!program.isEmpty() &&
      m_desktop.launch(program, {QStringLiteral("--force-window=yes"), address}))
    return Opened::Mpv;
  return m_desktop.openInVlc(url) ? Opened::Vlc : Opened::None;
}

} // namespace vellum
