// Which rows of a table are selected, and on which one the keyboard stands.
#pragma once
#include <QSet>
#include <QString>
#include <functional>

namespace vellum::ui {

// Rows are remembered by key, so that they stay selected wherever late results move them. An index
// is a place in the table as it is shown now; whoever calls has checked it. Main thread.
class RowSelection {
public:
  enum class Pick {
    Only,   // this row alone
    Toggle, // this row too, or no longer
    Extend  // everything from the row picked last to this one
  };
  // The shown rows, as the table tells of them.
  struct Rows {
    std::function<QString(int)> key;
    std::function<int(const QString&)> indexOf; // -1 if it is not shown
  };

  void pick(int index, Pick how, const Rows& rows);
  void pickAll(int count, const Rows& rows);
  bool contains(const QString& key) const { return m_keys.contains(key); }
  const QSet<QString>& keys() const { return m_keys; }
  const QString& current() const { return m_current; }

private:
  QSet<QString> m_keys;
  QString m_current;
  QString m_anchor;
};

} // namespace vellum::ui
