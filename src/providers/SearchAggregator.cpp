#include "providers/SearchAggregator.h"
#include "net/NetError.h"
#include "providers/ProviderError.h"
#include "providers/SearchMerge.h"
#include <algorithm>

namespace vellum {

struct SearchAggregator::Run {
  FlowGroup flows;
  std::size_t pending; // providers that have not answered
};

// What one provider answered.
struct SearchAggregator::Delivery {
  QUuid id;
  std::optional<TorrentResults> results; // nothing if it failed
  QString failure;
  bool offersSettings = false;
};

SearchAggregator::SearchAggregator(MainLoop& main, IoPool& pool) : m_main(main), m_pool(pool) {}

SearchAggregator::~SearchAggregator() { cancel(); }

void SearchAggregator::search(const QString& query, const TorrentSearchProviders& providers) {
  cancel();
  const QString trimmed = query.trimmed();
  if (!trimmed.isEmpty()) begin(trimmed, providers);
}

void SearchAggregator::cancel() {
  if (!m_run) return;
  m_run->flows.cancelAll();
  m_run.reset();
}

void SearchAggregator::begin(const QString& query, const TorrentSearchProviders& providers) {
  m_lastQuery = query;
  m_perProvider.clear();
  m_results.clear();
  m_statuses.clear();
  for (const auto& provider : providers)
    m_statuses.push_back({provider->config().id, provider->config().name});
  m_isSearching = true;
  const auto run = std::make_shared<Run>(Run{FlowGroup(m_main.executor()), providers.size()});
  m_run = run;
  for (const auto& provider : providers)
    run->flows.spawn(ask(*this, run, provider, query, m_pool.makeWorkerStrand()));
  Q_EMIT lastQueryChanged();
  Q_EMIT resultsChanged();
  Q_EMIT statusesChanged();
  Q_EMIT isSearchingChanged();
  // Whoever was told may have begun another search.
  if (m_run == run && run->pending == 0) finish();
}

Flow<> SearchAggregator::ask(SearchAggregator& owner, std::weak_ptr<Run> run,
                             std::shared_ptr<const TorrentSearchProvider> provider, QString query,
                             WorkerStrand strand) {
  Delivery answer = co_await delivery(*provider, query, strand);
  const auto alive = run.lock();
  if (!alive) co_return; // and so may be the owner
  owner.take(std::move(answer));
  if (--alive->pending == 0 && owner.m_run == alive) owner.finish();
}

Flow<SearchAggregator::Delivery> SearchAggregator::delivery(const TorrentSearchProvider& provider,
                                                            const QString& query,
                                                            const WorkerStrand& strand) {
  Delivery answer{.id = provider.config().id};
  try {
    answer.results = co_await flowOn(strand, provider.search(query));
  } catch (const ProviderError& error) {
    answer.failure = error.errorDescription();
    answer.offersSettings = true;
  } catch (const NetError& error) {
    const bool timedOut = error.reason() == NetError::Reason::TimedOut;
    answer.failure = timedOut ? tr("Timed out") : error.errorDescription();
  } catch (const std::exception& error) {
    answer.failure = QString::fromUtf8(error.what());
  }
  co_return answer;
}

void SearchAggregator::take(Delivery delivery) {
  const auto row =
      std::find_if(m_statuses.begin(), m_statuses.end(),
                   [&](const ProviderStatus& status) { return status.id == delivery.id; });
  if (row == m_statuses.end()) return;
  if (delivery.results) {
    row->state = ProviderStatus::State::Ok;
    row->count = delivery.results->size();
    m_perProvider[delivery.id] = std::move(*delivery.results);
  } else {
    row->state = ProviderStatus::State::Failed;
    row->text = delivery.failure;
    row->offersSettings = delivery.offersSettings;
  }
  m_results = mergeResults(allResults());
  Q_EMIT resultsChanged();
  Q_EMIT statusesChanged();
}

// In the order of the providers, so that the same answers give the same list.
TorrentResults SearchAggregator::allResults() const {
  TorrentResults all;
  for (const ProviderStatus& status : m_statuses) {
    const auto own = m_perProvider.constFind(status.id);
    if (own != m_perProvider.constEnd()) all.insert(all.end(), own->begin(), own->end());
  }
  return all;
}

void SearchAggregator::finish() {
  m_isSearching = false;
  Q_EMIT isSearchingChanged();
}

} // namespace vellum
