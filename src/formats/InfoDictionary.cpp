#include "formats/InfoDictionary.h"

namespace vellum {

namespace {

const Bencode* firstOf(const Bencode& dict, const char* preferred, const char* otherwise) {
  const Bencode* found = dict.find(QLatin1String(preferred));
  return found != nullptr ? found : dict.find(QLatin1String(otherwise));
}

QStringList byteStrings(const Bencode* list) {
  QStringList texts;
  if (list == nullptr || list->list() == nullptr) return texts;
  for (const Bencode& element : *list->list())
    if (const auto text = element.string()) texts.append(*text);
  return texts;
}

} // namespace

QString torrentName(const Bencode& info, const QString& fallback) {
  for (const char* key : {"name.utf-8", "name"})
    if (const Bencode* value = info.find(QLatin1String(key)))
      if (const auto text = value->string()) return *text;
  return fallback;
}

std::optional<std::vector<TorrentFileEntry>> torrentFiles(const Bencode& info,
                                                          const QString& name) {
  std::vector<TorrentFileEntry> files;
  qsizetype pathText = 0;
  const Bencode* list = info.find(QStringLiteral("files"));
  if (list != nullptr && list->list() != nullptr) {
    for (const Bencode& entry : *list->list()) {
      const Bencode* length = entry.find(QStringLiteral("length"));
      if (length == nullptr || !length->integer()) continue;
      QStringList path = byteStrings(firstOf(entry, "path.utf-8", "path"));
      path.prepend(name);
      for (const QString& component : path) pathText += component.size() + 1;
      if (pathText > kMostPathText) return std::nullopt;
      files.push_back({path.join(u'/'), *length->integer()});
    }
    return files;
  }
  const Bencode* length = info.find(QStringLiteral("length"));
  if (length != nullptr && length->integer()) files.push_back({name, *length->integer()});
  return files;
}

QStringList torrentTrackers(const Bencode& root) {
  QStringList trackers;
  if (const Bencode* announce = root.find(QStringLiteral("announce")))
    if (const auto text = announce->string()) trackers.append(*text);
  const Bencode* tiers = root.find(QStringLiteral("announce-list"));
  if (tiers != nullptr && tiers->list() != nullptr)
    for (const Bencode& tier : *tiers->list()) trackers += byteStrings(&tier);
  return trackers;
}

} // namespace vellum
