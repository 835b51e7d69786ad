#include "app/PlayEntryPoints.h"
#include <QDir>
#include <QFileInfo>

namespace vellum {

void PlayEntryPoints::play(const ArchiveFile& file, const MediaItem& item,
                           const ArchiveFiles& subtitles) {
  SubtitleTracks tracks;
  for (const ArchiveFile& subtitle : subtitles) tracks.push_back({subtitle.name, subtitle.url});
  m_playback.endStream();
  m_playback.playUrl(file.url, item.id, item.title, file.name, item.thumbnailURL(), tracks);
  m_navigation.setSelectedItem(std::nullopt);
  m_navigation.setShowPlayer(true);
}

void PlayEntryPoints::playLocal(const QUrl& file) {
  m_playback.endStream();
  const QFileInfo info(file.toLocalFile());
  m_playback.playUrl(file, QStringLiteral("local"), info.completeBaseName(), info.fileName(),
                     std::nullopt, siblingSubtitles(file));
  m_navigation.setShowPlayer(true);
}

void PlayEntryPoints::resume(const HistoryEntry& entry) {
  if (!entry.source.startsWith(QLatin1String("magnet:"))) m_playback.endStream();
  m_playback.play(entry);
  if (entry.isLocal) m_playback.resetSubtitles(siblingSubtitles(QUrl::fromLocalFile(entry.source)));
  m_navigation.setShowPlayer(true);
}

void PlayEntryPoints::download(const ArchiveFile& file, const MediaItem& item,
                               DownloadManager& downloads) {
  if (auto refusal = downloads.start(item.title, file.url, file.size))
    return m_navigation.setNotice(std::move(refusal));
  m_navigation.setSection(SidebarSection::Downloads);
  m_navigation.setSelectedItem(std::nullopt);
}

SubtitleTracks PlayEntryPoints::siblingSubtitles(const QUrl& video) {
  const QFileInfo info(video.toLocalFile());
  const QString base = info.completeBaseName();
  SubtitleTracks tracks;
  const auto files = info.dir().entryInfoList(QDir::Files);
  for (const QFileInfo& file : files) {
    const QString extension = file.suffix().toLower();
    const bool isSubtitle = extension == u"srt" || extension == u"vtt";
    if (isSubtitle && file.fileName().startsWith(base))
      tracks.push_back({file.fileName(), QUrl::fromLocalFile(file.filePath())});
  }
  return tracks;
}

} // namespace vellum
