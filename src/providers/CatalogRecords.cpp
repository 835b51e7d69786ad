// The records of the catalog: JSON of loose types to items and files.
#include "base/Addresses.h"
#include "base/Fmt.h"
#include "base/Text.h"
#include "providers/ArchiveOrgProvider.h"
#include "providers/Json.h"
#include <QJsonArray>
#include <QLocale>
#include <algorithm>

namespace vellum {

namespace {

constexpr qsizetype kYearDigits = 4;
// What is repeated in every address of a record, or cut into many, is bounded.
constexpr qsizetype kLongestIdentifier = 255; // characters
constexpr qsizetype kLongestName = 4096;      // characters, of a file
constexpr std::size_t kMostFiles = 100'000;
constexpr qsizetype kMostSubjects = 1000;

std::optional<QString> firstOf(const QJsonObject& object, const char* key) {
  return ArchiveOrgProvider::first(object.value(QLatin1String(key)));
}

QStringList splitSubjects(const QString& text) {
  QStringList subjects;
  for (const QStringView part : QStringView(text).tokenize(u';')) {
    if (subjects.size() == kMostSubjects) break;
    subjects.append(part.trimmed().toString());
  }
  return subjects;
}

std::optional<MediaItem> searchItem(const QJsonObject& doc) {
  const auto id = firstOf(doc, "identifier");
  if (!id || id->size() > kLongestIdentifier) return std::nullopt;
  const QJsonValue subject = doc.value(QLatin1String("subject"));
  MediaItem item;
  item.id = *id;
  item.title = firstOf(doc, "title").value_or(*id);
  item.year = firstOf(doc, "year");
  item.summary = Fmt::stripHTML(firstOf(doc, "description"));
  item.creator = firstOf(doc, "creator");
  item.subjects = subject.isString() ? QStringList(subject.toString())
                                     : json::strings(subject).value_or(QStringList());
  item.downloads = parseInt64(firstOf(doc, "downloads").value_or(QString())).value_or(0);
  item.licenseURL = firstOf(doc, "licenseurl");
  return item;
}

MediaItem recordItem(const QJsonObject& metadata, const QString& id) {
  const QJsonValue subject = metadata.value(QLatin1String("subject"));
  MediaItem item;
  item.id = id;
  item.title = firstOf(metadata, "title").value_or(id);
  item.year = firstOf(metadata, "year");
  if (const auto date = firstOf(metadata, "date"); date && !item.year)
    item.year = date->left(kYearDigits);
  item.summary = Fmt::stripHTML(firstOf(metadata, "description"));
  item.creator = firstOf(metadata, "creator");
  item.subjects = subject.isString() ? splitSubjects(subject.toString())
                                     : json::strings(subject).value_or(QStringList());
  item.licenseURL = firstOf(metadata, "licenseurl");
  return item;
}

// `folder` is the address that the names of a record's files go behind.
std::optional<ArchiveFile> recordFile(const QJsonObject& object, const QString& folder) {
  const auto name = firstOf(object, "name");
  if (!name || name->size() > kLongestName) return std::nullopt;
  QStringList parts = name->split(u'/', Qt::SkipEmptyParts);
  for (QString& part : parts) part = percentEncodedPath(part);
  const QUrl url(folder + parts.join(u'/'), QUrl::StrictMode);
  if (!url.isValid()) return std::nullopt;
  return ArchiveFile{*name, firstOf(object, "format").value_or(QString()),
                     parseInt64(firstOf(object, "size").value_or(QString())), url};
}

// The most widely playable first, then the largest.
bool comesBefore(const ArchiveFile& a, const ArchiveFile& b) {
  const auto isPreferred = [](const ArchiveFile& file) {
    const QString format = file.format.toLower();
    return format.contains(QLatin1String("h.264")) || format == u"mpeg4";
  };
  if (isPreferred(a) != isPreferred(b)) return isPreferred(a);
  return a.size.value_or(0) > b.size.value_or(0);
}

std::optional<QJsonValue> parsed(const QByteArray& bytes) {
  try {
    return json::parse(bytes);
  } catch (const json::SyntaxError&) {
    return std::nullopt;
  }
}

} // namespace

std::optional<QString> ArchiveOrgProvider::first(const QJsonValue& value) {
  QJsonValue one = value;
  while (one.isArray()) one = one.toArray().at(0); // undefined where there is nothing
  if (one.isString()) return one.toString();
  if (one.isBool()) return QString::number(one.toBool() ? 1 : 0);
  if (const auto whole = json::integer(one)) return QString::number(*whole);
  if (one.isDouble()) return QString::number(one.toDouble(), 'g', QLocale::FloatingPointShortest);
  return std::nullopt;
}

MediaItems ArchiveOrgProvider::parseSearch(const QByteArray& bytes) {
  const auto document = parsed(bytes);
  if (!document) return {};
  const auto docs = json::objects((*document)[QLatin1String("response")][QLatin1String("docs")]);
  MediaItems items;
  for (const QJsonObject& doc : docs.value_or(std::vector<QJsonObject>()))
    if (auto item = searchItem(doc)) items.push_back(std::move(*item));
  return items;
}

std::optional<ArchiveDetails> ArchiveOrgProvider::parseDetails(const QByteArray& bytes,
                                                               const QString& id) {
  const auto document = parsed(bytes);
  if (!document || !(*document)[QLatin1String("metadata")].isObject()) return std::nullopt;
  if (id.size() > kLongestIdentifier) return std::nullopt;
  const QJsonObject metadata = (*document)[QLatin1String("metadata")].toObject();
  ArchiveDetails details{recordItem(metadata, id), {}, false};
  details.restricted = firstOf(metadata, "access-restricted-item") == QStringLiteral("true");
  const QString folder =
      addresses::catalogBase() + QStringLiteral("/download/") + percentEncodedPath(id) + u'/';
  const auto files = json::objects((*document)[QLatin1String("files")]);
  for (const QJsonObject& object : files.value_or(std::vector<QJsonObject>())) {
    if (details.files.size() == kMostFiles) break;
    if (auto file = recordFile(object, folder)) details.files.push_back(std::move(*file));
  }
  std::stable_sort(details.files.begin(), details.files.end(), comesBefore);
  return details;
}

} // namespace vellum
