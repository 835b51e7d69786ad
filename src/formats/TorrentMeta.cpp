#include "formats/TorrentMeta.h"
#include "base/Sha1.h"
#include "formats/InfoDictionary.h"
#include <algorithm>

namespace vellum {

namespace {

// False if a size is negative or the sum does not fit 64 bits: no torrent of ours.
bool addUp(TorrentMeta& meta) {
  for (const TorrentFileEntry& file : meta.files) {
    if (file.size < 0) return false;
    meta.offsets.push_back(meta.total);
    if (__builtin_add_overflow(meta.total, file.size, &meta.total)) return false;
  }
  return true;
}

bool hashesCover(const TorrentMeta& meta) {
  std::int64_t covered = 0;
  if (__builtin_mul_overflow(meta.pieceCount(), meta.pieceLength, &covered)) return false;
  return meta.total <= covered;
}

std::vector<Hash20> cut(const ByteVector& pieces) {
  std::vector<Hash20> hashes(pieces.size() / 20);
  for (std::size_t i = 0; i < hashes.size(); ++i)
    std::copy_n(pieces.begin() + static_cast<std::ptrdiff_t>(i * 20), 20, hashes[i].begin());
  return hashes;
}

} // namespace

std::optional<TorrentMeta> TorrentMeta::parse(ByteSpan infoRaw) {
  // Wrapped, so that one parser and its top-level rule serve files and peers alike.
  ByteVector wrapped = toVector(asBytes(std::string_view("d4:info")));
  wrapped.insert(wrapped.end(), infoRaw.begin(), infoRaw.end());
  wrapped.push_back(std::byte{'e'});
  const auto root = BencodeParser(wrapped).parse();
  const Bencode* info = root ? root->find(QStringLiteral("info")) : nullptr;
  if (info == nullptr || info->dict() == nullptr || info->dict()->empty()) return std::nullopt;

  const Bencode* pieceLength = info->find(QStringLiteral("piece length"));
  const Bencode* pieces = info->find(QStringLiteral("pieces"));
  if (pieceLength == nullptr || pieceLength->integer().value_or(0) < 1) return std::nullopt;
  if (pieces == nullptr || pieces->bytes() == nullptr || pieces->bytes()->size() % 20 != 0)
    return std::nullopt;

  TorrentMeta meta;
  meta.name = torrentName(*info, QStringLiteral("Unnamed"));
  meta.pieceLength = *pieceLength->integer();
  auto files = torrentFiles(*info, meta.name);
  if (!files || files->empty()) return std::nullopt;
  meta.files = std::move(*files);
  if (!addUp(meta)) return std::nullopt;
  meta.hashes = cut(*pieces->bytes());
  if (!hashesCover(meta)) return std::nullopt;
  return meta;
}

std::optional<TorrentMeta::TorrentFile> TorrentMeta::parseTorrentFile(ByteSpan data) {
  BencodeParser parser(data);
  auto root = parser.parse();
  if (!root || root->dict() == nullptr || !parser.infoRange()) return std::nullopt;
  const auto [start, end] = *parser.infoRange();
  const ByteSpan infoRaw = data.subspan(start, end - start);
  QStringList trackers = torrentTrackers(*root);
  root.reset(); // a second tree is about to be made
  auto meta = parse(infoRaw);
  if (!meta) return std::nullopt;
  return TorrentFile{Sha1::of(infoRaw), std::move(*meta), std::move(trackers)};
}

} // namespace vellum
