// What the catalog answers: search results and item records in its loose types, pages, posters.
// Pure.
#pragma once
#include "world/CatalogSearch.h"
#include <QByteArray>

namespace vellum::world {

// `fields` as asked for with fl[]; all of them if it is empty.
QByteArray catalogSearchDocument(const CatalogPage& page, const QStringList& fields);
QByteArray catalogRecord(const CatalogItem& item);
QByteArray catalogDetailsPage(const CatalogItem& item);
// A PNG of 300 x 450 without words, the same for the same item.
QByteArray catalogPoster(const CatalogItem& item);

} // namespace vellum::world
