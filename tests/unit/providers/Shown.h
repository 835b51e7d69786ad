// A row of results as a line of text, so that a table of cases can hold it.
#pragma once
#include "models/TorrentResult.h"
#include <QVariant>

namespace vellum::test {

// Id, title and sources; then the name and the value of every field that is known.
inline std::string shown(const TorrentResult& row) {
  QStringList fields{row.id, row.title, row.sources.join(u',')};
  const auto add = [&](const char* name, const auto& field) {
    if (field) fields += QLatin1String(name) + u'=' + QVariant(*field).toString();
  };
  add("size", row.size);
  add("seeders", row.seeders);
  add("leechers", row.leechers);
  add("hash", row.infoHash);
  if (row.magnet)
    fields += QStringLiteral("magnet=") + row.magnet->section(QStringLiteral("&tr="), 0, 0);
  add("torrent", row.torrentURL);
  add("archive", row.archiveID);
  add("page", row.pageURL);
  add("year", row.year);
  add("license", row.license);
  add("base", row.baseTitle);
  return fields.join(u"; ").toStdString();
}

// A line for each.
inline std::string shown(const TorrentResults& rows) {
  std::string lines;
  for (const TorrentResult& row : rows) lines += (lines.empty() ? "" : "\n") + shown(row);
  return lines;
}

} // namespace vellum::test
