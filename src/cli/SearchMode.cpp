#include "cli/SearchMode.h"
#include "cli/SearchReport.h"
#include "providers/ProviderRegistry.h"
#include "providers/SearchAggregator.h"
#include <QCoreApplication>
#include <algorithm>
#include <cstdio>

namespace vellum {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("SearchMode", text); }

void print(const QString& line) {
  std::printf("%s\n", qUtf8Printable(line));
  std::fflush(stdout);
}

// Prints each status once, when it is no longer pending.
class StatusPrinter {
public:
  void update(const std::vector<ProviderStatus>& statuses) {
    m_told.resize(statuses.size());
    for (std::size_t i = 0; i < statuses.size(); ++i) {
      if (statuses[i].state == ProviderStatus::State::Pending || m_told[i]) continue;
      m_told[i] = true;
      print(statusReport(statuses[i]));
    }
  }

private:
  std::vector<bool> m_told;
};

int finish(const SearchAggregator& aggregator) {
  const QStringList lines = resultReport(aggregator.results());
  if (!lines.isEmpty()) print(QString());
  for (const QString& line : lines) print(line);
  const auto& statuses = aggregator.statuses();
  return std::any_of(
             statuses.begin(), statuses.end(),
             [](const ProviderStatus& status) { return status.state == ProviderStatus::State::Ok; })
             ? 0
             : 1;
}

} // namespace

int runSearchMode(Runtime& runtime, const QString& words) {
  // Of all services those that a search needs: it leaves the cache and the downloads alone.
  SettingsStore settings(runtime.preferences);
  const ProviderRegistry registry(settings, runtime.preferences, runtime.http.transport(),
                                  ArchiveOrgProvider(runtime.http.fetcher()));
  const auto providers = registry.enabledProviders();
  if (providers.empty()) {
    std::fprintf(stderr, "%s\n", qUtf8Printable(tr("No provider is switched on.")));
    return 1;
  }
  SearchAggregator aggregator(runtime.main, runtime.pool);
  StatusPrinter statuses;
  QObject::connect(&aggregator, &SearchAggregator::statusesChanged, &aggregator,
                   [&] { statuses.update(aggregator.statuses()); });
  QObject::connect(&aggregator, &SearchAggregator::isSearchingChanged, &aggregator, [&] {
    if (!aggregator.isSearching()) QCoreApplication::exit(finish(aggregator));
  });
  // From within the main loop: a loop that has not begun cannot be ended.
  runtime.main.post([&] { aggregator.search(words, providers); });
  return QCoreApplication::exec();
}

} // namespace vellum
