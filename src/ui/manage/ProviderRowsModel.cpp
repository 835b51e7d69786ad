#include "ui/manage/ProviderRowsModel.h"

namespace vellum::ui {

ProviderRowsModel::ProviderRowsModel(const ProviderRowModel::Services& services)
    : m_services(services) {
  connect(&services.settings, &SettingsStore::providersChanged, this, [this] { update(all()); });
  update({});
}

void ProviderRowsModel::startOver() { update({}); }

std::vector<ProviderRowModel*> ProviderRowsModel::all() const {
  std::vector<ProviderRowModel*> list;
  for (const ProviderRowItem& item : m_rows.rows()) list.push_back(item.row);
  return list;
}

void ProviderRowsModel::update(std::vector<ProviderRowModel*> reusable) {
  const auto before = all();
  std::vector<ProviderRowItem> wanted;
  for (const ProviderConfig& config : m_services.settings.providers()) {
    const auto found =
        std::find_if(reusable.begin(), reusable.end(), [&](const ProviderRowModel* row) {
          return row->config().id == config.id && row->config().kind == config.kind;
        });
    ProviderRowModel* row = nullptr;
    if (found == reusable.end()) {
      row = new ProviderRowModel(m_services, config);
      row->setParent(this);
    } else {
      row = *found;
      reusable.erase(found);
      row->setConfig(config);
    }
    wanted.push_back({row, row});
  }
  m_rows.setRows(wanted);
  // Later: the row itself may have asked for this, and its view still looks at it.
  for (ProviderRowModel* row : before)
    if (!std::any_of(wanted.begin(), wanted.end(),
                     [&](const ProviderRowItem& item) { return item.row == row; }))
      row->deleteLater();
}

} // namespace vellum::ui
