#include "world/IndexerDocuments.h"
#include <QRegularExpression>
#include <QXmlStreamWriter>

namespace vellum::world {

namespace {

QString text(const char* latin1) { return QString::fromLatin1(latin1); }

void writeAttribute(QXmlStreamWriter& xml, const char* prefix, const char* name,
                    const QString& value) {
  xml.writeEmptyElement(QLatin1String(prefix) + text(":attr"));
  xml.writeAttribute(text("name"), QLatin1String(name));
  xml.writeAttribute(text("value"), value);
}

void writeItem(QXmlStreamWriter& xml, const IndexedTorrent& torrent, const QUrl& base,
               const QStringList& trackers) {
  static const QRegularExpression gaps(text("[^A-Za-z0-9]+"));
  const QString name = QString(torrent.name() + text(" WEB x264 mp4")).replace(gaps, text("."));
  const QString hash = torrent.infoHash.toLower();
  QString magnet = QStringLiteral("magnet:?xt=urn:btih:%1&dn=%2").arg(hash, name);
  for (const QString& tracker : trackers)
    magnet += text("&tr=") + QString::fromLatin1(QUrl::toPercentEncoding(tracker));
  const QString page = base.resolved(QUrl(text("/torznab/details/") + hash)).toString();
  const bool hasFile = !torrent.torrentUrl.isEmpty();
  const QString link = hasFile ? base.resolved(QUrl(torrent.torrentUrl)).toString() : magnet;

  xml.writeStartElement(text("item"));
  xml.writeTextElement(text("title"), name);
  xml.writeTextElement(text("guid"), page);
  xml.writeTextElement(text("comments"), page);
  xml.writeTextElement(text("pubDate"), text("Sun, 13 Sep 2020 12:26:40 +0000"));
  xml.writeTextElement(text("size"), QString::number(torrent.size));
  xml.writeStartElement(text("description"));
  xml.writeCDATA(QStringLiteral("<b>%1</b> & more <item> in here").arg(torrent.title));
  xml.writeEndElement();
  xml.writeTextElement(text("link"), link);
  xml.writeTextElement(text("category"), text("2000"));
  if (hasFile) {
    xml.writeEmptyElement(text("enclosure"));
    xml.writeAttribute(text("url"), link);
    xml.writeAttribute(text("length"), QString::number(torrent.size));
    xml.writeAttribute(text("type"), text("application/x-bittorrent"));
  }
  writeAttribute(xml, "newznab", "category", text("2040"));
  writeAttribute(xml, "torznab", "seeders", QString::number(torrent.seeders));
  // Here the peers are everybody.
  writeAttribute(xml, "torznab", "peers", QString::number(torrent.seeders + torrent.leechers));
  writeAttribute(xml, "torznab", "infohash", hash);
  writeAttribute(xml, "torznab", "magneturl", magnet);
  xml.writeEndElement();
}

} // namespace

QByteArray torznabDocument(const IndexedTorrents& torrents, const QUrl& base,
                           const QStringList& trackers) {
  QByteArray out;
  QXmlStreamWriter xml(&out);
  xml.writeStartDocument();
  xml.writeStartElement(text("rss"));
  xml.writeAttribute(text("version"), text("2.0"));
  xml.writeAttribute(text("xmlns:torznab"), text("http://torznab.com/schemas/2015/feed"));
  xml.writeAttribute(text("xmlns:newznab"),
                     text("http://www.newznab.com/DTD/2010/feeds/attributes/"));
  xml.writeStartElement(text("channel"));
  xml.writeTextElement(text("title"), text("Loopback"));
  xml.writeTextElement(text("link"), base.toString());
  for (const IndexedTorrent& torrent : torrents) writeItem(xml, torrent, base, trackers);
  xml.writeEndDocument();
  return out;
}

QByteArray torznabError(int code, const QString& description) {
  return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                        "<error code=\"%1\" description=\"%2\"/>\n")
      .arg(code)
      .arg(description.toHtmlEscaped())
      .toUtf8();
}

} // namespace vellum::world
