#include "models/MediaItem.h"
#include "base/Addresses.h"
#include <QJsonArray>
#include <algorithm>

namespace vellum {

namespace {

QUrl onCatalog(const QString& path, const QString& id) {
  const QUrl url(addresses::catalogBase() + path + percentEncodedPath(id), QUrl::StrictMode);
  return url.isValid() ? url : QUrl(addresses::catalogBase());
}

// The lower-cased text behind the last "." of the last path component; empty if there is none.
QString extensionOf(const QString& name) {
  const QString last = name.section(u'/', -1);
  const qsizetype dot = last.lastIndexOf(u'.');
  return dot < 0 ? QString() : last.sliced(dot + 1).toLower();
}

bool isOneOf(const QString& extension, std::initializer_list<const char*> list) {
  return std::any_of(list.begin(), list.end(),
                     [&](const char* one) { return extension == QLatin1String(one); });
}
bool isPlayable(const QString& extension) { return isOneOf(extension, {"mp4", "m4v", "mov"}); }
bool isOtherVideo(const QString& extension) {
  return isOneOf(extension, {"mkv", "avi", "ogv", "webm", "mpeg", "mpg", "wmv", "flv"});
}
bool isSubtitle(const QString& extension) { return isOneOf(extension, {"srt", "vtt"}); }

template <class Matches>
ArchiveFiles filesOf(const ArchiveFiles& files, Matches matches) {
  ArchiveFiles found;
  std::copy_if(files.begin(), files.end(), std::back_inserter(found),
               [&](const ArchiveFile& file) { return matches(extensionOf(file.name)); });
  return found;
}

// Reads the keys of one object; `isGood` falls with the first that is missing or has a wrong type.
struct Reader {
  const QJsonObject& object;
  bool isGood = true;

  QString text(const char* key) {
    const QJsonValue value = object.value(QLatin1String(key));
    isGood = isGood && value.isString();
    return value.toString();
  }
  std::optional<QString> optionalText(const char* key) {
    const QJsonValue value = object.value(QLatin1String(key));
    if (value.isUndefined() || value.isNull()) return std::nullopt;
    return text(key);
  }
  QStringList texts(const char* key) {
    const QJsonValue value = object.value(QLatin1String(key));
    isGood = isGood && value.isArray();
    QStringList list;
    const QJsonArray array = value.toArray();
    for (const auto& one : array) {
      isGood = isGood && one.isString();
      list.append(one.toString());
    }
    return list;
  }
  qint64 integer(const char* key) {
    constexpr qint64 kNone = -1;
    const QJsonValue value = object.value(QLatin1String(key));
    isGood = isGood && value.isDouble() && value.toInteger(kNone) == value.toInteger(0);
    return value.toInteger();
  }
};

} // namespace

QString percentEncodedPath(const QString& path) {
  return QString::fromLatin1(QUrl::toPercentEncoding(path, "/!$&'()*+,:=@"));
}

QUrl MediaItem::thumbnailURL() const { return onCatalog(QStringLiteral("/services/img/"), id); }
QUrl MediaItem::pageURL() const { return onCatalog(QStringLiteral("/details/"), id); }

QJsonObject MediaItem::toJson() const {
  QJsonObject object{{QStringLiteral("id"), id},
                     {QStringLiteral("title"), title},
                     {QStringLiteral("subjects"), QJsonArray::fromStringList(subjects)},
                     {QStringLiteral("downloads"), downloads}};
  const auto put = [&](const char* key, const std::optional<QString>& value) {
    if (value) object.insert(QLatin1String(key), *value);
  };
  put("year", year);
  put("summary", summary);
  put("creator", creator);
  put("licenseURL", licenseURL);
  return object;
}

std::optional<MediaItem> MediaItem::fromJson(const QJsonObject& object) {
  Reader reader{object};
  const MediaItem item{reader.text("id"),
                       reader.text("title"),
                       reader.optionalText("year"),
                       reader.optionalText("summary"),
                       reader.optionalText("creator"),
                       reader.texts("subjects"),
                       reader.integer("downloads"),
                       reader.optionalText("licenseURL")};
  if (!reader.isGood) return std::nullopt;
  return item;
}

ArchiveFiles ArchiveDetails::playable() const { return filesOf(files, isPlayable); }
ArchiveFiles ArchiveDetails::otherVideos() const { return filesOf(files, isOtherVideo); }
ArchiveFiles ArchiveDetails::subtitles() const { return filesOf(files, isSubtitle); }

std::optional<ArchiveFile> ArchiveDetails::torrent() const {
  for (const ArchiveFile& file : files)
    if (extensionOf(file.name) == u"torrent") return file;
  return std::nullopt;
}

} // namespace vellum
