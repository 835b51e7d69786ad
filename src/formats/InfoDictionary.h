// What both torrent readers take from an info dictionary by the same rules. Pure.
#pragma once
#include "formats/Bencode.h"
#include "formats/TorrentMeta.h"

namespace vellum {

// "name.utf-8", else "name", else the fallback.
QString torrentName(const Bencode& info, const QString& fallback);

// The entries of "files", else the single file of "length"; each path of a multi-file torrent
// begins with its name. Nothing if all paths together are longer than kMostPathText: a long name
// before very many files would fill the memory from a small dictionary.
inline constexpr qsizetype kMostPathText = qsizetype{32} * 1024 * 1024; // UTF-16 units
std::optional<std::vector<TorrentFileEntry>> torrentFiles(const Bencode& info, const QString& name);

// "announce" and the flattened tiers of "announce-list", in file order.
QStringList torrentTrackers(const Bencode& root);

} // namespace vellum
