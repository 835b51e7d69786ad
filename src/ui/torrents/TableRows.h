// The rows of a torrent search as the table shows them: filtered and sorted. Main thread.
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

// Whether there is anything to play.
bool isPlayable(const TorrentResult& result);

// A result with what is read from its texts, each once and when first asked for: of thousands of
// rows that arrive together few are ever looked at.
class ResultRow {
public:
  explicit ResultRow(const TorrentResult& made) : result(made) {}

  TorrentResult result;
  const QString& quality() const;
  const QString& format() const;
  const QString& titleKey() const; // to sort by
  const QString& sources() const;  // "A, B"
  // With another seeder count, source and so on; what was read from the same texts stays.
  void replace(const TorrentResult& newer);
  void readAll() const;

private:
  mutable QString m_quality; // each null until it is asked for
  mutable QString m_format;
  mutable QString m_titleKey;
  mutable QString m_sources;
};
using ResultRows = std::vector<ResultRow>;

// Rows that come again keep what was read from their texts.
class TableRows {
public:
  void setResults(const TorrentResults& results);
  // Reads the texts of some more rows ahead of whoever filters and sorts; false when all are read.
  bool readSome();
  const ResultRows& rows() const { return m_rows; } // all, as they came
  QStringList allSources() const;                   // sorted, without duplicates
  // Whether another row is the same film in another quality.
  bool hasVariants(const TorrentResult& result) const;
  // Indices into rows(): those that pass, in order; equal ones stay as they came.
  std::vector<std::size_t> shown(const ResultFilter& filter, const ResultOrder& order) const;

private:
  static constexpr std::size_t kReadAtOnce = 1000; // rows, some three milliseconds
  ResultRows m_rows;
  std::size_t m_read = 0;      // so many rows from the beginning
  QHash<QString, int> m_films; // how many rows have that base title
};

} // namespace vellum::ui
