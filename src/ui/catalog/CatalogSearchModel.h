// The search in the film catalog.
#pragma once
#include "app/CatalogState.h"
#include "app/Navigation.h"
#include "storage/SettingsStore.h"
#include "ui/catalog/MediaRows.h"

namespace vellum::ui {

// Main thread.
class CatalogSearchModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The window has the only one.")
  Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
  Q_PROPERTY(bool searching READ isSearching NOTIFY changed)
  Q_PROPERTY(QString errorText READ errorText NOTIFY changed) // "" when there is none
  Q_PROPERTY(QString emptyText READ emptyText NOTIFY changed) // "" when there are results
  Q_PROPERTY(vellum::ui::MediaList* results READ results CONSTANT)
  Q_PROPERTY(bool gridView READ gridView WRITE setGridView NOTIFY gridViewChanged)

public:
  // All outlive it.
  CatalogSearchModel(CatalogState& catalog, SettingsStore& settings, Navigation& navigation);

  QString query() const { return m_catalog.searchQuery(); }
  void setQuery(const QString& query) { m_catalog.setSearchQuery(query); }
  bool isSearching() const { return m_catalog.searching(); }
  QString errorText() const;
  QString emptyText() const;
  MediaList* results() { return &m_results; }
  bool gridView() const { return m_settings.gridView(); }
  void setGridView(bool grid) { m_settings.setGridView(grid); }

  Q_INVOKABLE void search() { m_catalog.runSearch(); }

Q_SIGNALS:
  void queryChanged();
  void changed();
  void gridViewChanged();

private:
  void take();

  CatalogState& m_catalog;
  SettingsStore& m_settings;
  MediaList m_results;
  bool m_hasSearched = false;
};

} // namespace vellum::ui
