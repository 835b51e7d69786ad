// One search across all providers at once, shown as each of them answers.
#pragma once
#include "base/IoPool.h"
#include "base/MainLoop.h"
#include "providers/TorrentSearchProvider.h"
#include <QHash>
#include <QObject>

namespace vellum {

// One provider in the search that runs, or ran last.
struct ProviderStatus {
  enum class State { Ok, Failed, Pending };
  QUuid id;
  QString name;
  State state = State::Pending;
  std::size_t count = 0;       // Ok: its own results, before merging
  QString text = {};           // Failed: the sentence to show
  bool offersSettings = false; // whether another address could help
  bool operator==(const ProviderStatus&) const = default;
};

// Main thread; the providers ask and parse on workers. What is shown stays until the next search.
class SearchAggregator final : public QObject {
  Q_OBJECT

public:
  // Both outlive it.
  SearchAggregator(MainLoop& main, IoPool& pool);
  // Cancels the search; what is under way ends by itself on the pool.
  ~SearchAggregator() override;

  const TorrentResults& results() const { return m_results; }                // merged
  const std::vector<ProviderStatus>& statuses() const { return m_statuses; } // as they were given
  bool isSearching() const { return m_isSearching; }
  const QString& lastQuery() const { return m_lastQuery; } // trimmed

  // Cancels the search before, which writes nothing more. A blank query does just that, and leaves
  // everything that is shown as it stands, isSearching too.
  void search(const QString& query, const TorrentSearchProviders& providers);

Q_SIGNALS:
  void resultsChanged();
  void statusesChanged();
  void isSearchingChanged();
  void lastQueryChanged();

private:
  struct Run;
  struct Delivery;

  void cancel();
  void begin(const QString& query, const TorrentSearchProviders& providers);
  static Flow<> ask(SearchAggregator& owner, std::weak_ptr<Run> run,
                    std::shared_ptr<const TorrentSearchProvider> provider, QString query,
                    WorkerStrand strand);
  static Flow<Delivery> delivery(const TorrentSearchProvider& provider, const QString& query,
                                 const WorkerStrand& strand);
  void take(Delivery delivery);
  TorrentResults allResults() const;
  void finish();

  MainLoop& m_main;
  IoPool& m_pool;
  TorrentResults m_results;
  std::vector<ProviderStatus> m_statuses;
  bool m_isSearching = false;
  QString m_lastQuery;
  QHash<QUuid, TorrentResults> m_perProvider; // raw
  std::shared_ptr<Run> m_run;                 // the only owner: a run that is gone writes nothing
};

} // namespace vellum
