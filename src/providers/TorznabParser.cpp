#include "providers/TorznabParser.h"
#include "base/Text.h"
#include <QCoreApplication>
#include <algorithm>
#include <array>

namespace vellum {

namespace {

constexpr std::array<QLatin1String, 5> kTextElements{QLatin1String("title"), QLatin1String("link"),
                                                     QLatin1String("guid"), QLatin1String("size"),
                                                     QLatin1String("comments")};

IndexerError indexerError(const QXmlStreamAttributes& attributes) {
  const auto code = parseInt64(attributes.value(QLatin1String("code"))).value_or(0);
  const bool fits = code >= INT_MIN && code <= INT_MAX;
  if (!attributes.hasAttribute(QLatin1String("description")))
    return {fits ? int(code) : 0, QCoreApplication::translate("Torznab", "Indexer error")};
  return {fits ? int(code) : 0,
          shortened(attributes.value(QLatin1String("description")).toString())};
}

std::optional<QString> valueOf(const QHash<QString, QString>& row, const char* key) {
  const auto found = row.constFind(QLatin1String(key));
  if (found == row.constEnd()) return std::nullopt;
  return *found;
}

std::optional<qint64> numberOf(const std::optional<QString>& text) {
  return text ? parseInt64(*text) : std::nullopt;
}

qint64 leechersAmong(qint64 peers, qint64 seeders) {
  qint64 leechers = 0;
  if (__builtin_sub_overflow(peers, seeders, &leechers)) return peers > 0 ? INT64_MAX : 0;
  return std::max<qint64>(0, leechers);
}

std::optional<QUrl> urlOf(const std::optional<QString>& text) {
  return ResultList::link(text.value_or(QString()));
}

} // namespace

void TorznabParser::startElement(QStringView name, const QXmlStreamAttributes& attributes) {
  m_text.clear();
  if (name == u"item") m_row.emplace();
  if (name == u"error") m_apiError = indexerError(attributes);
  if (!m_row) return;
  const auto value = [&](const char* key) {
    return attributes.value(QLatin1String(key)).toString();
  };
  const auto has = [&](const char* key) { return attributes.hasAttribute(QLatin1String(key)); };
  if (name.endsWith(u"attr") && has("name") && has("value"))
    m_row->insert(value("name"), value("value"));
  if (name == u"enclosure" && has("url")) {
    m_row->insert(QStringLiteral("enclosure"), value("url"));
    if (has("length")) m_row->insert(QStringLiteral("length"), value("length"));
  }
}

void TorznabParser::endElement(QStringView name) {
  if (!m_row) return;
  if (std::find(kTextElements.begin(), kTextElements.end(), name) != kTextElements.end())
    m_row->insert(name.toString(), m_text.trimmed());
  if (name != u"item") return;
  if (auto found = result(*m_row, m_source)) m_results.add(std::move(*found));
  m_row.reset();
}

std::optional<TorrentResult> TorznabParser::result(const Row& row, const QString& source) {
  const auto title = valueOf(row, "title");
  if (!title || !ResultList::isGoodTitle(*title)) return std::nullopt;
  const auto link = valueOf(row, "link");
  TorrentResult result;
  result.title = *title;
  const auto hash = valueOf(row, "infohash");
  if (hash && !hash->isEmpty()) result.infoHash = hash->toLower();
  const QString guid = valueOf(row, "guid").value_or(QString());
  result.id = result.infoHash.value_or(guid.isEmpty() ? *title : guid);

  result.size = numberOf(row.contains(QStringLiteral("size")) ? valueOf(row, "size")
                                                              : valueOf(row, "length"));
  result.seeders = numberOf(valueOf(row, "seeders"));
  // Torznab counts everybody as peers, seeders too.
  if (const auto peers = numberOf(valueOf(row, "peers")))
    result.leechers = leechersAmong(*peers, result.seeders.value_or(0));
  result.sources = {source};

  const auto magnet = valueOf(row, "magneturl");
  if (magnet)
    result.magnet = urlOf(magnet) ? magnet : std::nullopt;
  else if (link && link->startsWith(QLatin1String("magnet:")))
    result.magnet = urlOf(link) ? link : std::nullopt;
  const auto enclosure = valueOf(row, "enclosure");
  const auto torrent = urlOf(enclosure ? enclosure : link);
  if (torrent && torrent->scheme().startsWith(QLatin1String("http"))) result.torrentURL = torrent;
  result.pageURL = urlOf(valueOf(row, "comments"));
  return result;
}

} // namespace vellum
