#include "playback/MpvTracks.h"
#include <QCoreApplication>
#include <QLocale>
#include <QVariantMap>

namespace vellum {

namespace {

// In the film's own word if the code is unknown; empty for none.
QString languageName(const QString& code) {
  if (code.isEmpty() || code == QStringLiteral("und")) return {};
  const auto language = QLocale::codeToLanguage(code.section(u'-', 0, 0));
  return language == QLocale::AnyLanguage ? code : QLocale::languageToString(language);
}

QString nameOf(const QVariantMap& track, qint64 number) {
  const QString title = track.value(QStringLiteral("title")).toString().simplified();
  const QString language = languageName(track.value(QStringLiteral("lang")).toString());
  if (title.isEmpty() && language.isEmpty())
    return QCoreApplication::translate("AudioTracks", "Track %1").arg(number);
  if (title.isEmpty()) return language;
  if (language.isEmpty() || title.contains(language, Qt::CaseInsensitive)) return title;
  return QStringLiteral("%1 (%2)").arg(language, title);
}

} // namespace

AudioTracks audioTracksOf(const QVariant& trackList) {
  AudioTracks audio;
  const QVariantList tracks = trackList.toList();
  for (const auto& entry : tracks) {
    const QVariantMap track = entry.toMap();
    if (track.value(QStringLiteral("type")) != QStringLiteral("audio")) continue;
    const qint64 id = track.value(QStringLiteral("id")).toLongLong();
    audio.options.append(AudioOption{.id = id, .name = nameOf(track, id)});
    if (track.value(QStringLiteral("selected")).toBool()) audio.selected = audio.options.last();
  }
  return audio;
}

} // namespace vellum
