// The catalog's search: the part of its query language that a film player uses. Pure.
#pragma once
#include "world/CatalogItems.h"
#include <QUrlQuery>

namespace vellum::world {

struct CatalogPage {
  std::vector<const CatalogItem*> items; // those of this page
  std::size_t found = 0;                 // on all pages
};

// Understands title:(..), description:(..) and subject:(..), of which one must hold all its words;
// collection:(..) and mediatype:(..), which must be; -access-restricted-item:true; the sorts
// downloads, week and year with asc or desc; rows and page. Any other clause finds nothing.
CatalogPage searchCatalog(const CatalogItems& items, const QUrlQuery& query);

} // namespace vellum::world
