// The rows of one answer while a parser makes them, bounded. Pure.
#pragma once
#include "models/TorrentResult.h"

namespace vellum {

// A row repeats texts of its answer, so that a small answer could become any amount of memory.
class ResultList {
public:
  static constexpr qsizetype kLongestTitle = 4096;     // characters; a row with more is no good
  static constexpr qsizetype kMaxCharacters = 8 << 20; // in all rows; what is beyond is left out
  static constexpr qsizetype kRowOverhead = 200;       // what a row costs beside its texts

  // False once nothing more is taken.
  bool add(TorrentResult row) {
    m_left -= kRowOverhead + row.title.size() + row.magnet.value_or(QString()).size();
    if (m_left >= 0) m_rows.push_back(std::move(row));
    return m_left >= 0;
  }
  static bool isGoodTitle(const QString& title) { return title.size() <= kLongestTitle; }
  TorrentResults take() { return std::move(m_rows); }

private:
  TorrentResults m_rows;
  qsizetype m_left = kMaxCharacters;
};

} // namespace vellum
