#include "storage/DownloadFolder.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <algorithm>
#include <array>
#include <filesystem>

namespace vellum::downloadFolder {

namespace {

constexpr std::array kVideoExtensions = {"mp4", "m4v", "mov", "mkv", "avi", "webm", "ogv"};

struct NameParts {
  QString stem;
  QString extension; // without its point
};

// A leading point makes a hidden name, not an extension.
NameParts split(const QString& name) {
  const qsizetype dot = name.lastIndexOf(u'.');
  if (dot < 1 || dot == name.size() - 1) return {name, {}};
  return {name.left(dot), name.mid(dot + 1)};
}

QString decoded(const QByteArray& component) {
  QStringDecoder utf8(QStringDecoder::Utf8);
  QString text = utf8(QByteArray::fromPercentEncoding(component));
  return utf8.hasError() ? QString::fromLatin1(component) : text;
}

QDateTime whenMade(const QFileInfo& file) {
  // Not every volume keeps the time of birth.
  for (const QDateTime& time : {file.birthTime(), file.lastModified()})
    if (time.isValid()) return time.toUTC();
  return kDistantPast;
}

} // namespace

QString fileName(const QUrl& url) {
  QByteArray path = url.path(QUrl::FullyEncoded).toLatin1();
  while (path.size() > 1 && path.endsWith('/')) path.chop(1);
  QString name = path == "/" ? QString(u'/') : decoded(path.mid(path.lastIndexOf('/') + 1));
  return name.replace(u'/', u'_').replace(QChar(u'\0'), u'_');
}

QString numbered(const QString& name, int n) {
  const auto [stem, extension] = split(name);
  return stem + u' ' + QString::number(n) + u'.' + extension;
}

QString freePath(const QString& folder, const QString& name,
                 const std::function<bool(const QString& path)>& isTaken) {
  const QString root = folder.endsWith(u'/') ? folder : folder + u'/';
  QString path = root + name;
  for (int n = 1; isTaken(path); ++n) path = root + numbered(name, n);
  return path;
}

bool isVideo(const QString& name) {
  const QString extension = split(name).extension.toLower();
  return std::any_of(kVideoExtensions.begin(), kVideoExtensions.end(),
                     [&](const char* known) { return extension == QLatin1String(known); });
}

std::optional<QString> make(const QString& folder) {
  auto error = std::make_error_code(std::errc::no_such_file_or_directory);
  if (QDir::isAbsolutePath(folder))
    std::filesystem::create_directories(QFile::encodeName(folder).toStdString(), error);
  if (!error) return std::nullopt;
  return QString::fromLocal8Bit(error.message().c_str());
}

SavedFiles list(const QString& folder) {
  SavedFiles saved;
  if (QDir::isRelativePath(folder)) return saved;
  // A link that leads nowhere is an entry, too.
  const auto entries = QDir(folder).entryInfoList(QDir::Files | QDir::System, QDir::Name);
  for (const QFileInfo& file : entries)
    if (isVideo(file.fileName()))
      saved.push_back({QUrl::fromLocalFile(file.filePath()), file.size(), whenMade(file)});
  std::stable_sort(saved.begin(), saved.end(),
                   [](const SavedFile& a, const SavedFile& b) { return a.added > b.added; });
  return saved;
}

} // namespace vellum::downloadFolder
