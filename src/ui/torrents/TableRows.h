// The rows of a torrent search as the table shows them: filtered and sorted. Pure.
#pragma once
#include "models/TorrentResult.h"
#include <QHash>
#include <QSet>
#include <array>

namespace vellum::ui {

enum class ResultColumn { Title, Size, Seeds, Peers, Source };

// "Any" and 0 let everything through.
struct ResultFilter {
  static constexpr std::array kResolutions{"Any", "2160p", "1080p", "720p", "480p", "SD"};
  static constexpr std::array kFormats{"Any", "mkv", "mp4", "avi", "m4v", "mov", "webm"};
  static constexpr std::array kMaxSizes{0, 1, 2, 5, 10, 20}; // in units of 2^30 bytes

  QString resolution = QStringLiteral("Any");
  QString format = QStringLiteral("Any");
  int maxSizeGB = 0;
  QSet<QString> hiddenSources;
  bool operator==(const ResultFilter&) const = default;
};

struct ResultOrder {
  ResultColumn column = ResultColumn::Seeds;
  bool ascending = false;
  bool operator==(const ResultOrder&) const = default;
};

// A result with what is read from its title, which is done once for each.
struct ResultRow {
  TorrentResult result;
  QString quality;
  QString format;
  QString titleKey; // to sort by
  QString sources;  // "A, B"
};
using ResultRows = std::vector<ResultRow>;

// Every row is kept while its id and title stay, so that late results cost only themselves.
class TableRows {
public:
  void setResults(const TorrentResults& results);
  const ResultRows& rows() const { return m_rows; } // all, as they came
  QStringList allSources() const;                   // sorted, without duplicates
  // Indices into rows(): those that pass, in order; equal ones stay as they came.
  std::vector<std::size_t> shown(const ResultFilter& filter, const ResultOrder& order) const;

private:
  ResultRows m_rows;
};

} // namespace vellum::ui
