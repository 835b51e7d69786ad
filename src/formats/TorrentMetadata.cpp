#include "formats/TorrentMetadata.h"
#include "base/Addresses.h"
#include "base/Sha1.h"
#include "formats/InfoDictionary.h"
#include "formats/Utf8.h"
#include <QCoreApplication>
#include <algorithm>
#include <limits>

namespace vellum {

namespace {

constexpr QStringView kMagnetScheme = u"magnet:";
constexpr QStringView kHashPrefix = u"urn:btih:";
constexpr QStringView kBase32 = u"ABCDEFGHIJKLMNOPQRSTUVWXYZ234567";

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// A "%" without two digits behind it stands for itself; Qt's own decoder makes noise of it.
QString percentDecoded(QStringView text) {
  const QByteArray in = text.toUtf8();
  QByteArray out;
  for (qsizetype i = 0; i < in.size(); ++i) {
    const bool escaped =
        in[i] == '%' && i + 2 < in.size() && hexDigit(in[i + 1]) >= 0 && hexDigit(in[i + 2]) >= 0;
    out += escaped ? static_cast<char>(hexDigit(in[i + 1]) << 4 | hexDigit(in[i + 2])) : in[i];
    if (escaped) i += 2;
  }
  return utf8Text(asBytes(out));
}

// Only letters and digits stay as they are.
QString percentEncoded(const QString& text) {
  return QString::fromLatin1(text.toUtf8().toPercentEncoding({}, "-._~"));
}

const QueryItem* firstNamed(const std::vector<QueryItem>& items, QStringView name) {
  const auto found = std::find_if(items.begin(), items.end(),
                                  [&](const QueryItem& item) { return item.name == name; });
  return found != items.end() ? &*found : nullptr;
}

} // namespace

std::int64_t TorrentInfo::totalSize() const {
  using Limits = std::numeric_limits<std::int64_t>;
  std::int64_t total = 0;
  for (const TorrentFileEntry& file : files)
    if (__builtin_add_overflow(total, file.size, &total))
      return file.size < 0 ? Limits::min() : Limits::max();
  return total;
}

TorrentInfo TorrentMetadata::parseTorrent(ByteSpan data) {
  BencodeParser parser(data);
  const auto root = parser.parse();
  const Bencode* info = root ? root->find(QStringLiteral("info")) : nullptr;
  if (info == nullptr || info->dict() == nullptr || !parser.infoRange()) throw TorrentParseError();
  const auto [start, end] = *parser.infoRange();

  TorrentInfo torrent;
  torrent.infoHash = toHex(Sha1::of(data.subspan(start, end - start)));
  torrent.name = torrentName(*info, QCoreApplication::translate("TorrentFile", "Unnamed torrent"));
  auto files = torrentFiles(*info, torrent.name);
  if (!files) throw TorrentParseError();
  torrent.files = std::move(*files);
  torrent.trackers = torrentTrackers(*root);
  torrent.trackers.removeDuplicates();
  torrent.trackers.sort();
  torrent.magnet = makeMagnet(torrent.infoHash, torrent.name);
  return torrent;
}

std::optional<std::vector<QueryItem>> queryItems(const QString& url) {
  const QString beforeFragment = url.section(u'#', 0, 0);
  const qsizetype mark = beforeFragment.indexOf(u'?');
  if (mark < 0) return std::nullopt;
  std::vector<QueryItem> items;
  for (const QStringView part : QStringView(beforeFragment).mid(mark + 1).split(u'&')) {
    const qsizetype equals = part.indexOf(u'=');
    if (equals < 0)
      items.push_back({percentDecoded(part), std::nullopt});
    else
      items.push_back({percentDecoded(part.left(equals)), percentDecoded(part.mid(equals + 1))});
  }
  return items;
}

std::optional<TorrentInfo> TorrentMetadata::parseMagnet(const QString& text) {
  const QString link = text.trimmed();
  const auto items = queryItems(link);
  if (!link.startsWith(kMagnetScheme) || !items) return std::nullopt;
  const QueryItem* topic = firstNamed(*items, u"xt");
  if (topic == nullptr || !topic->value) return std::nullopt;
  if (!topic->value->startsWith(kHashPrefix, Qt::CaseInsensitive)) return std::nullopt;

  QString hash = topic->value->mid(kHashPrefix.size());
  if (hash.size() == 32) hash = base32ToHex(hash).value_or(hash);
  if (!hash20FromHex(hash)) return std::nullopt;

  TorrentInfo torrent;
  const QueryItem* name = firstNamed(*items, u"dn");
  torrent.name = name != nullptr && name->value ? *name->value : hash;
  torrent.infoHash = hash.toLower();
  for (const QueryItem& item : *items)
    if (item.name == u"tr" && item.value) torrent.trackers.append(*item.value);
  torrent.magnet = link;
  return torrent;
}

std::optional<QString> TorrentMetadata::base32ToHex(const QString& text) {
  ByteVector bytes;
  std::uint32_t accumulator = 0;
  int bits = 0;
  for (const QChar c : text.toUpper()) {
    const qsizetype index = kBase32.indexOf(c);
    if (index < 0) return std::nullopt;
    accumulator = accumulator << 5 | static_cast<std::uint32_t>(index);
    bits += 5;
    if (bits < 8) continue;
    bits -= 8;
    bytes.push_back(std::byte(accumulator >> bits & 0xFF));
  }
  return toHex(bytes);
}

QString makeMagnet(const QString& hash, const QString& name) {
  QString link = QStringLiteral("magnet:?xt=") + percentEncoded(kHashPrefix.toString() + hash) +
                 QStringLiteral("&dn=") + percentEncoded(name);
  for (const QString& tracker : addresses::defaultTrackers())
    link += QStringLiteral("&tr=") + percentEncoded(tracker);
  return link;
}

} // namespace vellum
