// A row of results as a line of text, so that a table of cases can hold it.
#pragma once
#include "models/TorrentResult.h"
#include <QVariant>

namespace vellum::test {

// A line for each: id, title and sources; then the name and the value of every field that is known.
inline std::string shown(const TorrentResults& rows) {
  QStringList lines;
  for (const TorrentResult& row : rows) {
    QStringList fields{row.id, row.title, row.sources.join(u',')};
    const auto add = [&](const char* name, const auto& field) {
      if (field) fields += QLatin1String(name) + u'=' + QVariant(*field).toString();
    };
    add("size", row.size), add("seeders", row.seeders), add("leechers", row.leechers);
    add("hash", row.infoHash), add("torrent", row.torrentURL), add("archive", row.archiveID);
    add("page", row.pageURL), add("year", row.year), add("license", row.license);
    add("base", row.baseTitle);
    if (row.magnet) add("magnet", std::optional(row.magnet->section(QStringLiteral("&tr="), 0, 0)));
    lines += fields.join(QStringLiteral("; "));
  }
  return lines.join(u'\n').toStdString();
}

} // namespace vellum::test
