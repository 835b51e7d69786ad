// The rows of one answer while a parser makes them, bounded. Pure.
#pragma once
#include "models/TorrentResult.h"

namespace vellum {

// A row repeats texts of its answer, so that a small answer could become any amount of memory; and
// all rows are merged and shown on the main thread. Ten times what any indexer sends has room.
class ResultList {
public:
  static constexpr qsizetype kLongestTitle = 4096;     // characters; a row with more is no good
  static constexpr qsizetype kLongestLink = 16'384;    // characters; what is longer is no address
  static constexpr qsizetype kMaxCharacters = 8 << 20; // in all rows; what is beyond is left out
  static constexpr qsizetype kRowOverhead = 200;       // what a row costs beside its texts

  void add(TorrentResult row) {
    m_left -= kRowOverhead + row.title.size() + row.magnet.value_or(QString()).size();
    if (!isFull()) m_rows.push_back(std::move(row));
  }
  bool isFull() const { return m_left < 0; } // takes nothing more
  TorrentResults take() { return std::move(m_rows); }

  static bool isGoodTitle(const QString& title) { return title.size() <= kLongestTitle; }
  // An address as it stands in a document; nothing if it is none.
  static std::optional<QUrl> link(const QString& text) {
    const QUrl url = text.size() <= kLongestLink ? QUrl(text) : QUrl();
    if (url.isEmpty() || !url.isValid()) return std::nullopt;
    return url;
  }

private:
  TorrentResults m_rows;
  qsizetype m_left = kMaxCharacters;
};

} // namespace vellum
