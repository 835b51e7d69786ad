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

// A leading point makes a hidden name, not an extension, and no extension fills half a name.
NameParts split(const QString& name) {
  constexpr qsizetype kLongestExtension = 40;
  const qsizetype dot = name.lastIndexOf(u'.');
  if (dot < 1 || dot == name.size() - 1) return {name, {}};
  if (name.size() - dot - 1 > kLongestExtension) return {name, {}};
  return {name.left(dot), name.mid(dot + 1)};
}

// What would hide in a name, or show it in another order than it has.
bool isInvisible(QChar character) {
  const char16_t code = character.unicode();
  return character.category() == QChar::Other_Control || code == 0x061C ||
         (code >= 0x200E && code <= 0x200F) || (code >= 0x2028 && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069);
}

// The stem with what follows it, cut so that file systems take it as a name. No character is cut.
QString fitting(const QString& stem, const QString& end) {
  constexpr qsizetype kLongest = 255; // bytes
  const QByteArray whole = stem.toUtf8();
  const qsizetype room = std::max<qsizetype>(0, kLongest - end.toUtf8().size());
  if (whole.size() <= room) return stem + end;
  qsizetype length = room;
  while (length > 0 && (static_cast<unsigned char>(whole[length]) & 0xC0) == 0x80) --length;
  return QString::fromUtf8(whole.left(length)) + end;
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
  const auto isUnfit = [](QChar each) { return each == u'/' || isInvisible(each); };
  std::replace_if(name.begin(), name.end(), isUnfit, QChar(u'_'));
  return name;
}

QString numbered(const QString& name, int n) {
  const auto [stem, extension] = split(name);
  return fitting(stem, u' ' + QString::number(n) + u'.' + extension);
}

QString freePath(const QString& folder, const QString& name,
                 const std::function<bool(const QString& path)>& isTaken) {
  const QString root = folder.endsWith(u'/') ? folder : folder + u'/';
  const auto [stem, extension] = split(name);
  QString path = root + fitting(stem, name.mid(stem.size()));
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
