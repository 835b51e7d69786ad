// A list of values for a view that keeps its rows: a change moves, adds and drops only what moved,
// came and went, so that an editor in another row keeps its text and the focus.
#pragma once
#include <QAbstractListModel>
#include <QHash>
#include <QMetaProperty>
#include <algorithm>
#include <vector>

namespace vellum::ui {

// Main thread. A Row is a gadget with a comparable `id`, and comparable itself; its properties are
// the roles. Equal ids are told apart by their order. A change costs as much as there are rows, and
// as much again for each that moves.
template <class Row>
class KeyedRows final : public QAbstractListModel {
public:
  using QAbstractListModel::QAbstractListModel;
  using Rows = std::vector<Row>;

  const Rows& rows() const { return m_rows; }

  void setRows(const Rows& wanted) {
    dropAllBut(wanted);
    Ids later = idsOf(m_rows); // of the rows that are not in place yet
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      if (const std::size_t end = endOfNew(wanted, i, later); end > i) {
        insert(i, wanted, end);
        i = end - 1;
        continue;
      }
      --later[wanted[i].id];
      fetch(i, wanted[i]);
      if (m_rows[i] == wanted[i]) continue;
      m_rows[i] = wanted[i];
      Q_EMIT dataChanged(index(int(i)), index(int(i)));
    }
    if (m_rows.size() > wanted.size()) drop(wanted.size(), m_rows.size());
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
  using Ids = QHash<decltype(Row::id), int>; // with how often each is there
  using Place = std::ptrdiff_t;

  static Ids idsOf(const Rows& rows) {
    Ids ids;
    for (const Row& row : rows) ++ids[row.id];
    return ids;
  }
  // Of those at and after `from`, the first that is there already.
  static std::size_t endOfNew(const Rows& wanted, std::size_t from, const Ids& there) {
    while (from < wanted.size() && there.value(wanted[from].id) == 0) ++from;
    return from;
  }
  void dropAllBut(const Rows& wanted) {
    const Ids ids = idsOf(wanted);
    for (std::size_t end = m_rows.size(); end > 0;) {
      std::size_t first = end;
      while (first > 0 && !ids.contains(m_rows[first - 1].id)) --first;
      if (first < end) drop(first, end);
      end = first == 0 ? 0 : first - 1;
    }
  }
  void drop(std::size_t first, std::size_t end) {
    beginRemoveRows({}, int(first), int(end) - 1);
    m_rows.erase(m_rows.begin() + Place(first), m_rows.begin() + Place(end));
    endRemoveRows();
  }
  // Those from `at` to `end`, to where they are wanted.
  void insert(std::size_t at, const Rows& wanted, std::size_t end) {
    beginInsertRows({}, int(at), int(end) - 1);
    m_rows.insert(m_rows.begin() + Place(at), wanted.begin() + Place(at),
                  wanted.begin() + Place(end));
    endInsertRows();
  }
  // Brings the row with the wanted one's id to `at`; before it, everything is in place already.
  void fetch(std::size_t at, const Row& wanted) {
    std::size_t from = at;
    while (!(m_rows[from].id == wanted.id)) ++from;
    if (from == at) return;
    const auto row = m_rows.begin() + Place(from);
    beginMoveRows({}, int(from), int(from), {}, int(at));
    std::rotate(m_rows.begin() + Place(at), row, row + 1);
    endMoveRows();
  }

  Rows m_rows;
};

} // namespace vellum::ui
