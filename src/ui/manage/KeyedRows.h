// A list of values for a view that keeps its rows: a change moves, adds and drops only what moved,
// came and went, so that an editor in another row keeps its text and the focus.
#pragma once
#include <QAbstractListModel>
#include <QMetaProperty>
#include <algorithm>
#include <vector>

namespace vellum::ui {

// Main thread. A Row is a gadget with a comparable `id`, and comparable itself; its properties are
// the roles. Equal ids are told apart by their order.
template <class Row>
class KeyedRows final : public QAbstractListModel {
public:
  using QAbstractListModel::QAbstractListModel;
  using Rows = std::vector<Row>;

  const Rows& rows() const { return m_rows; }

  void setRows(const Rows& wanted) {
    for (std::size_t i = m_rows.size(); i-- > 0;)
      if (!has(wanted, m_rows[i])) drop(i, i);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      settle(i, wanted[i]);
      if (m_rows[i] == wanted[i]) continue;
      m_rows[i] = wanted[i];
      Q_EMIT dataChanged(index(int(i)), index(int(i)));
    }
    if (m_rows.size() > wanted.size()) drop(wanted.size(), m_rows.size() - 1);
  }

  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : int(m_rows.size());
  }
  QVariant data(const QModelIndex& index, int role) const override {
    const QMetaObject& type = Row::staticMetaObject;
    const int property = role - Qt::UserRole;
    const bool isThere = index.isValid() && index.row() < rowCount() && property >= 0 &&
                         property < type.propertyCount();
    return isThere ? type.property(property).readOnGadget(&m_rows[std::size_t(index.row())])
                   : QVariant();
  }
  QHash<int, QByteArray> roleNames() const override {
    QHash<int, QByteArray> names;
    for (int i = 0; i < Row::staticMetaObject.propertyCount(); ++i)
      names[Qt::UserRole + i] = Row::staticMetaObject.property(i).name();
    return names;
  }

private:
  static bool has(const Rows& rows, const Row& row) {
    return std::any_of(rows.begin(), rows.end(), [&](const Row& one) { return one.id == row.id; });
  }
  void drop(std::size_t first, std::size_t last) {
    beginRemoveRows({}, int(first), int(last));
    m_rows.erase(m_rows.begin() + std::ptrdiff_t(first), m_rows.begin() + std::ptrdiff_t(last) + 1);
    endRemoveRows();
  }
  // Brings a row with the wanted one's id to `at`; before it, everything is in place already.
  void settle(std::size_t at, const Row& wanted) {
    std::size_t from = at;
    while (from < m_rows.size() && !(m_rows[from].id == wanted.id)) ++from;
    if (from == at && at < m_rows.size()) return;
    const auto place = m_rows.begin() + std::ptrdiff_t(at);
    if (from == m_rows.size()) {
      beginInsertRows({}, int(at), int(at));
      m_rows.insert(place, wanted);
      endInsertRows();
    } else {
      beginMoveRows({}, int(from), int(from), {}, int(at));
      std::rotate(place, m_rows.begin() + std::ptrdiff_t(from),
                  m_rows.begin() + std::ptrdiff_t(from) + 1);
      endMoveRows();
    }
  }

  Rows m_rows;
};

} // namespace vellum::ui
