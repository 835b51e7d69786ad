#include "ui/catalog/CatalogSearchModel.h"
#include "base/Text.h"

namespace vellum::ui {

CatalogSearchModel::CatalogSearchModel(CatalogState& catalog, SettingsStore& settings,
                                       Navigation& navigation)
    : m_catalog(catalog), m_settings(settings), m_results([&](const QString& id) {
        for (const MediaItem& item : catalog.searchResults())
          if (item.id == id) return navigation.setSelectedItem(item);
      }) {
  connect(&catalog, &CatalogState::searchQueryChanged, this, &CatalogSearchModel::queryChanged);
  connect(&catalog, &CatalogState::searchChanged, this, &CatalogSearchModel::take);
  connect(&settings, &SettingsStore::gridViewChanged, this, &CatalogSearchModel::gridViewChanged);
  m_results.setRows(rowsOf(catalog.searchResults()));
}

void CatalogSearchModel::take() {
  m_hasSearched = true;
  m_results.setRows(rowsOf(m_catalog.searchResults()));
  Q_EMIT changed();
}

QString CatalogSearchModel::errorText() const {
  if (!m_catalog.searchError()) return {};
  return tr("Search failed: %1").arg(oneLine(*m_catalog.searchError()));
}

QString CatalogSearchModel::emptyText() const {
  if (isSearching() || m_catalog.searchError() || m_results.count() > 0) return {};
  return m_hasSearched ? tr("No results.") : tr("Enter a search to browse the catalog.");
}

} // namespace vellum::ui
