#include "ui/catalog/HomeModel.h"
#include "base/Text.h"
#include <algorithm>

namespace vellum::ui {

HomeModel::HomeModel(Services services)
    : m_services(std::move(services)), m_continueWatching([this](const QString& k) { resume(k); }),
      m_featured([this](const QString& id) { openItem(id); }),
      m_popular([this](const QString& id) { openItem(id); }),
      m_recentlyViewed([this](const QString& key) { resume(key); }),
      m_local([this](const QString& path) {
        m_services.entries.playLocal(QUrl::fromLocalFile(path));
      }) {
  connect(&m_services.catalog, &CatalogState::homeChanged, this, &HomeModel::catalogTold);
  connect(&m_services.library, &LibraryStore::historyChanged, this, &HomeModel::historyTold);
  catalogTold();
  historyTold();
  savedChanged();
}

bool HomeModel::isLoading() const {
  return m_services.catalog.homeLoading() && m_services.catalog.featured().empty();
}

bool HomeModel::isEmpty() const {
  const CatalogState& catalog = m_services.catalog;
  return !catalog.homeLoading() && !catalog.homeError() && catalog.featured().empty() &&
         catalog.popular().empty();
}

QString HomeModel::errorText() const {
  const CatalogState& catalog = m_services.catalog;
  if (!catalog.homeError() || !catalog.featured().empty() || !catalog.popular().empty()) return {};
  return tr("Couldn't reach Vidarium: %1").arg(oneLine(*catalog.homeError()));
}

void HomeModel::searchFor(const QString& suggestion) { m_services.catalog.searchFor(suggestion); }

void HomeModel::savedChanged() { m_local.setRows(rowsOf(m_services.saved())); }

void HomeModel::catalogTold() {
  const CatalogState& catalog = m_services.catalog;
  MediaRows featured = rowsOf(catalog.featured());
  MediaRows popular = rowsOf(catalog.popular());
  if (featured != m_featured.rows() || popular != m_popular.rows())
    m_suggestions = catalog.suggestions(); // in an order that may differ from call to call
  m_featured.setRows(std::move(featured));
  m_popular.setRows(std::move(popular));
  Q_EMIT catalogChanged();
}

void HomeModel::historyTold() {
  const LibraryStore& library = m_services.library;
  m_continueWatching.setRows(rowsOf(library.continueWatching(), true));
  m_recentlyViewed.setRows(rowsOf(CatalogState::recentlyViewed(library.history()), false));
}

void HomeModel::openItem(const QString& id) {
  for (const MediaItems* shelf : {&m_services.catalog.featured(), &m_services.catalog.popular()})
    for (const MediaItem& item : *shelf)
      if (item.id == id) return m_services.navigation.setSelectedItem(item);
}

void HomeModel::resume(const QString& key) {
  if (const auto entry = m_services.library.entry(key)) m_services.entries.resume(*entry);
}

} // namespace vellum::ui
