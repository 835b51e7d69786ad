#include "world/CatalogDocuments.h"
#include "base/Sha1.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <array>

namespace vellum::world {

namespace {

QString text(const char* latin1) { return QString::fromLatin1(latin1); }

// One text where there is one, else a list, as the catalog has it.
QJsonValue loose(const QStringList& list) {
  if (list.size() == 1) return list.front();
  return QJsonArray::fromStringList(list);
}

// Differs from item to item, as if different hands had typed them in.
bool isTypedDifferently(const CatalogItem& item) { return item.year % 2 == 1; }

QJsonObject fieldsOf(const CatalogItem& item) {
  const bool odd = isTypedDifferently(item);
  QJsonObject fields{{text("identifier"), item.id},
                     {text("title"), item.title},
                     {text("description"), item.description},
                     {text("creator"), loose(item.creators)},
                     {text("mediatype"), text("movies")}};
  fields[text("year")] = odd ? QJsonValue(QString::number(item.year)) : QJsonValue(item.year);
  fields[text("subject")] = odd ? QJsonValue(item.subjects.join(u';')) : loose(item.subjects);
  fields[text("collection")] = QJsonArray{item.collection, text("moviesandfilms")};
  if (!item.licence.isEmpty()) fields[text("licenseurl")] = item.licence;
  return fields;
}

QJsonObject fileRecord(const CatalogItemFile& file) {
  const bool isOriginal = file.format == u"h.264" || file.format == u"Matroska";
  return {{text("name"), file.name},
          {text("source"), text(isOriginal ? "original" : "derivative")},
          {text("format"), file.format},
          {text("size"), QString::number(file.size)}};
}

} // namespace

QByteArray catalogSearchDocument(const CatalogPage& page, const QStringList& fields) {
  QJsonArray docs;
  for (const CatalogItem* item : page.items) {
    QJsonObject all = fieldsOf(*item);
    all[text("downloads")] = qint64(item->downloads);
    all[text("week")] = qint64(item->week);
    for (const QString& key : all.keys())
      if (!fields.isEmpty() && !fields.contains(key)) all.remove(key);
    docs.append(all);
  }
  const QJsonObject response{
      {text("numFound"), qint64(page.found)}, {text("start"), 0}, {text("docs"), docs}};
  const QJsonObject header{{text("status"), 0}, {text("QTime"), 7}};
  return QJsonDocument(QJsonObject{{text("responseHeader"), header}, {text("response"), response}})
      .toJson(QJsonDocument::Compact);
}

QByteArray catalogRecord(const CatalogItem& item) {
  QJsonObject metadata = fieldsOf(item);
  // Some records have a date and no year.
  if (isTypedDifferently(item)) {
    metadata.remove(text("year"));
    metadata[text("date")] = QString::number(item.year) + text("-01-01");
  }
  if (item.restricted) metadata[text("access-restricted-item")] = text("true");
  QJsonArray files;
  qint64 size = 0;
  for (const CatalogItemFile& file : item.files) {
    files.append(fileRecord(file));
    size += file.size;
  }
  return QJsonDocument(QJsonObject{{text("created"), 1'600'000'000},
                                   {text("files"), files},
                                   {text("files_count"), files.size()},
                                   {text("item_size"), size},
                                   {text("metadata"), metadata}})
      .toJson(QJsonDocument::Compact);
}

QByteArray catalogDetailsPage(const CatalogItem& item) {
  return QStringLiteral("<!doctype html>\n<html><head><title>%1</title></head>"
                        "<body><h1>%1</h1><p>%2</p></body></html>\n")
      .arg(item.title.toHtmlEscaped(), QString::number(item.year))
      .toUtf8();
}

} // namespace vellum::world
