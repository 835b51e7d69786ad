#include "support/CatalogDocuments.h"
#include "base/Sha1.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <array>

namespace vellum::test {

namespace {

constexpr int kLineLength = 13; // characters of a poster's title

struct Palette {
  const char* back;
  const char* disc;
  const char* ground;
};
constexpr std::array<Palette, 8> kPalettes{{{"#23395b", "#e0a458", "#161925"},
                                            {"#5b2333", "#f2b5a7", "#2b1118"},
                                            {"#1f4d44", "#b7d8a8", "#10281f"},
                                            {"#4a3b6b", "#d7b9e8", "#221a35"},
                                            {"#6b4a2b", "#f0d9a0", "#332213"},
                                            {"#2b5d6b", "#a8dadc", "#132c33"},
                                            {"#3f4a2b", "#d9d98a", "#1d2213"},
                                            {"#6b2b5d", "#f4a6c8", "#33132c"}}};

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

QStringList lines(const QString& title) {
  QStringList out;
  for (const QString& word : title.split(u' ')) {
    if (!out.isEmpty() && out.last().size() + 1 + word.size() <= kLineLength)
      out.last() += u' ' + word;
    else
      out.append(word);
  }
  return out;
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

QByteArray catalogPoster(const CatalogItem& item) {
  const Hash20 hash = Sha1::of(asBytes(item.id.toUtf8()));
  const Palette& palette = kPalettes[std::size_t(hash[0]) % kPalettes.size()];
  QString texts;
  const auto write = [&](int y, int size, const QString& line) {
    texts += QStringLiteral("<text x='24' y='%1' font-family='sans-serif' font-size='%2' "
                            "font-weight='bold' fill='#ffffff'>%3</text>")
                 .arg(QString::number(y), QString::number(size), line.toHtmlEscaped());
  };
  int y = 24;
  for (const QString& line : lines(item.title)) write(y += 36, 32, line);
  write(430, 24, QString::number(item.year));
  return QStringLiteral("<?xml version='1.0' encoding='UTF-8'?>\n"
                        "<svg xmlns='http://www.w3.org/2000/svg' width='300' height='450' "
                        "viewBox='0 0 300 450'>"
                        "<rect width='300' height='450' fill='%1'/>"
                        "<circle cx='%2' cy='%3' r='%4' fill='%5'/>"
                        "<rect y='390' width='300' height='60' fill='%6'/>"
                        "%7</svg>\n")
      .arg(text(palette.back))
      .arg(60 + int(hash[1]) * 180 / 256)
      .arg(220 + int(hash[2]) * 120 / 256)
      .arg(50 + int(hash[3]) * 70 / 256)
      .arg(text(palette.disc), text(palette.ground), texts)
      .toUtf8();
}

} // namespace vellum::test
