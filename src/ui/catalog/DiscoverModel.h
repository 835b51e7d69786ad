// The collections of the catalog, and what the chosen one holds.
#pragma once
#include "app/CatalogState.h"
#include "app/Navigation.h"
#include "storage/SettingsStore.h"
#include "ui/catalog/MediaRows.h"
#include <QVariantList>

namespace vellum::ui {

// Main thread.
class DiscoverModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The window has the only one.")
  Q_PROPERTY(QVariantList collections READ collections CONSTANT) // {id, title}
  Q_PROPERTY(QString current READ current NOTIFY changed)        // the id of the chosen one, or ""
  Q_PROPERTY(bool loading READ isLoading NOTIFY changed)
  Q_PROPERTY(vellum::ui::MediaList* results READ results CONSTANT)
  Q_PROPERTY(bool gridView READ gridView WRITE setGridView NOTIFY gridViewChanged)

public:
  // All outlive it.
  DiscoverModel(CatalogState& catalog, SettingsStore& settings, Navigation& navigation);

  static QVariantList collections();
  QString current() const;
  bool isLoading() const { return m_catalog.discoverLoading(); }
  MediaList* results() { return &m_results; }
  bool gridView() const { return m_settings.gridView(); }
  void setGridView(bool grid) { m_settings.setGridView(grid); }

  // When the screen appears: the first collection, unless one is chosen.
  Q_INVOKABLE void appear();
  Q_INVOKABLE void choose(const QString& id);

Q_SIGNALS:
  void changed();
  void gridViewChanged();

private:
  CatalogState& m_catalog;
  SettingsStore& m_settings;
  MediaList m_results;
};

} // namespace vellum::ui
