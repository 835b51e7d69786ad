// The providers of the settings screen.
#pragma once
#include "ui/manage/KeyedRows.h"
#include "ui/manage/ProviderRowModel.h"

namespace vellum::ui {

struct ProviderRowItem {
  Q_GADGET
  Q_PROPERTY(vellum::ui::ProviderRowModel* row MEMBER row)

public:
  const void* id = nullptr; // the row's object is its own
  ProviderRowModel* row = nullptr;
  bool operator==(const ProviderRowItem&) const = default;
};

// Main thread. One object for each record of the settings, in their order; it stays while its
// record is there, whatever happens to others.
class ProviderRowsModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The settings' model has it.")
  Q_PROPERTY(QAbstractListModel* rows READ rows CONSTANT) // with the role "row"

public:
  explicit ProviderRowsModel(const ProviderRowModel::Services& services);

  QAbstractListModel* rows() { return &m_rows; }
  int count() const { return m_rows.rowCount(); }
  ProviderRowModel* at(int index) const { return m_rows.rows().at(std::size_t(index)).row; }

  // Every row as it first shows: what is typed and not stored is gone.
  void startOver();

private:
  std::vector<ProviderRowModel*> all() const;
  // Rows that are in `reusable` stay.
  void update(std::vector<ProviderRowModel*> reusable);

  ProviderRowModel::Services m_services;
  KeyedRows<ProviderRowItem> m_rows;
};

} // namespace vellum::ui
