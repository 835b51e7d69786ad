#include "ui/torrents/RowSelection.h"
#include <algorithm>

namespace vellum::ui {

void RowSelection::pick(int index, Pick how, const Rows& rows) {
  m_current = rows.key(index);
  const int anchor = how == Pick::Extend ? rows.indexOf(m_anchor) : -1;
  if (how == Pick::Toggle) {
    if (!m_keys.remove(m_current)) m_keys.insert(m_current);
  } else {
    const int other = anchor < 0 ? index : anchor;
    m_keys.clear();
    for (int i = std::min(index, other); i <= std::max(index, other); ++i)
      m_keys.insert(rows.key(i));
  }
  if (anchor < 0) m_anchor = m_current;
}

void RowSelection::pickAll(int count, const Rows& rows) {
  m_keys.clear();
  for (int i = 0; i < count; ++i) m_keys.insert(rows.key(i));
}

} // namespace vellum::ui
