#include "cli/SearchReport.h"
#include "base/Text.h"
#include <QCoreApplication>
#include <algorithm>
#include <array>

namespace vellum {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("SearchReport", text); }

constexpr std::size_t kColumns = 6;
constexpr qsizetype kWidestTitle = 60; // characters
using Row = std::array<QString, kColumns>;

QString count(const std::optional<qint64>& value) {
  return value ? QString::number(*value) : QStringLiteral("—");
}

Row rowOf(const TorrentResult& result) {
  return {shortened(printable(result.title), kWidestTitle),
          formatByteCount(result.sizeSort()),
          count(result.seeders),
          count(result.leechers),
          result.quality(),
          printable(result.sourceSort())};
}

// Text to the left, numbers to the right; nothing is padded behind the last column.
QString lineOf(const Row& row, const std::array<qsizetype, kColumns>& widths) {
  const auto isNumber = [](std::size_t column) { return column >= 1 && column <= 3; };
  QStringList cells;
  for (std::size_t i = 0; i < kColumns; ++i)
    cells.append(isNumber(i) ? row[i].rightJustified(widths[i]) : row[i].leftJustified(widths[i]));
  QString line = cells.join(QStringLiteral("  "));
  while (line.endsWith(u' ')) line.chop(1);
  return line;
}

} // namespace

QString statusReport(const ProviderStatus& status) {
  const QString name = printable(status.name);
  if (status.state == ProviderStatus::State::Failed)
    return tr("%1 failed: %2").arg(name, printable(status.text));
  return status.count == 1 ? tr("%1: 1 result").arg(name)
                           : tr("%1: %2 results").arg(name, QString::number(status.count));
}

QStringList resultReport(TorrentResults results) {
  if (results.empty()) return {};
  std::stable_sort(results.begin(), results.end(),
                   [](const TorrentResult& a, const TorrentResult& b) {
                     return a.seedersSort() > b.seedersSort();
                   });
  std::vector<Row> rows{
      {tr("TITLE"), tr("SIZE"), tr("SEEDS"), tr("PEERS"), tr("QUALITY"), tr("SOURCES")}};
  for (const TorrentResult& result : results) rows.push_back(rowOf(result));
  std::array<qsizetype, kColumns> widths{};
  for (const Row& row : rows)
    for (std::size_t i = 0; i < kColumns; ++i) widths[i] = std::max(widths[i], row[i].size());
  QStringList lines;
  for (const Row& row : rows) lines.append(lineOf(row, widths));
  return lines;
}

} // namespace vellum
