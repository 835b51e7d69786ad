// A catalog entry, its files and its full record. Plain values; any thread.
#pragma once
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <optional>
#include <vector>

namespace vellum {

// A path segment or path as an address spells it: everything outside RFC 3986's path characters
// becomes %XX; "/" stays.
QString percentEncodedPath(const QString& path);

struct MediaItem {
  QString id;
  QString title;
  std::optional<QString> year;
  std::optional<QString> summary; // plain text
  std::optional<QString> creator;
  QStringList subjects;
  qint64 downloads = 0;
  std::optional<QString> licenseURL;
  bool operator==(const MediaItem&) const = default;

  // On the catalog's host; never empty.
  QUrl thumbnailURL() const;
  QUrl pageURL() const;

  // Optional keys are left out when absent.
  QJsonObject toJson() const;
  // Nothing if a required key is missing or any key has another type.
  static std::optional<MediaItem> fromJson(const QJsonObject& object);
};

using MediaItems = std::vector<MediaItem>;

struct ArchiveFile {
  QString name;               // the path inside the item, with "/"
  QString format;             // the catalog's label; may be empty
  std::optional<qint64> size; // bytes
  QUrl url;
  bool operator==(const ArchiveFile&) const = default;
};

using ArchiveFiles = std::vector<ArchiveFile>;

struct ArchiveDetails {
  MediaItem item;
  ArchiveFiles files; // the most widely playable first
  bool restricted = false;
  bool operator==(const ArchiveDetails&) const = default;

  // Each in the order of `files`.
  ArchiveFiles playable() const;              // mp4, m4v, mov: what plays everywhere
  ArchiveFiles otherVideos() const;           // to be downloaded or opened elsewhere
  ArchiveFiles subtitles() const;             // srt, vtt
  std::optional<ArchiveFile> torrent() const; // the first
};

} // namespace vellum
