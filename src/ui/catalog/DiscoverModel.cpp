#include "ui/catalog/DiscoverModel.h"

namespace vellum::ui {

DiscoverModel::DiscoverModel(CatalogState& catalog, SettingsStore& settings, Navigation& navigation)
    : m_catalog(catalog), m_settings(settings), m_results([&](const QString& id) {
        for (const MediaItem& item : catalog.discoverResults())
          if (item.id == id) return navigation.setSelectedItem(item);
      }) {
  const auto take = [this] {
    m_results.setRows(rowsOf(m_catalog.discoverResults()));
    Q_EMIT changed();
  };
  connect(&catalog, &CatalogState::discoverChanged, this, take);
  connect(&settings, &SettingsStore::gridViewChanged, this, &DiscoverModel::gridViewChanged);
  take();
}

QVariantList DiscoverModel::collections() {
  QVariantList list;
  for (const Collection& one : CatalogState::collections())
    list.append(QVariantMap{{QStringLiteral("id"), one.id}, {QStringLiteral("title"), one.title}});
  return list;
}

QString DiscoverModel::current() const {
  return m_catalog.collection() ? m_catalog.collection()->id : QString();
}

void DiscoverModel::appear() {
  if (!m_catalog.collection()) m_catalog.loadCollection(CatalogState::collections().front());
}

void DiscoverModel::choose(const QString& id) {
  for (const Collection& one : CatalogState::collections())
    if (one.id == id) return m_catalog.loadCollection(one);
}

} // namespace vellum::ui
