// What the catalog screens show: shelves, a search, a collection. They keep nothing themselves.
#pragma once
#include "base/IoPool.h"
#include "base/MainLoop.h"
#include "models/HistoryEntry.h"
#include "models/MediaItem.h"
#include "providers/ArchiveOrgProvider.h"
#include <QObject>

namespace vellum {

// A part of the catalog that is offered by name.
struct Collection {
  QString id;
  QString title;
  QString query; // a clause of the catalog's query language
  bool operator==(const Collection&) const = default;
};

// Main thread; answers are parsed on a worker.
class CatalogState final : public QObject {
  Q_OBJECT

public:
  // One catalog search; may be awaited on any executor, where it also parses. Throws errors with a
  // sentence.
  using Search = std::function<Flow<MediaItems>(CatalogQuery)>;

  static constexpr int kShelfRows = 24;
  static constexpr int kResultRows = 60;
  static constexpr int kRecentRows = 20;
  static constexpr std::size_t kSuggestions = 10;

  // Loop and pool outlive it.
  CatalogState(MainLoop& main, IoPool& pool, Search search);
  // Requests under way end by themselves on the pool.
  ~CatalogState() override;

  static std::vector<Collection> collections();

  const MediaItems& featured() const { return m_featured; }
  const MediaItems& popular() const { return m_popular; }
  bool homeLoading() const { return m_homeLoading; }
  const std::optional<QString>& homeError() const { return m_homeError; }

  const QString& searchQuery() const { return m_searchQuery; }
  void setSearchQuery(const QString& query);
  const MediaItems& searchResults() const { return m_searchResults; }
  bool searching() const { return m_searching; }
  const std::optional<QString>& searchError() const { return m_searchError; }

  const std::optional<Collection>& collection() const { return m_collection; }
  const MediaItems& discoverResults() const { return m_discoverResults; }
  bool discoverLoading() const { return m_discoverLoading; }

  // Each returns at once and shows its progress in the values above. What overlaps is not ended:
  // the answer that comes last stays, except of a collection that is no longer the chosen one.
  void loadHome();  // does nothing when both shelves hold items
  void runSearch(); // does nothing for a blank query
  void searchFor(const QString& text);
  void loadCollection(const Collection& collection);

  // Words to search for, the most frequent subjects of both shelves first.
  QStringList suggestions() const;
  // What was watched of the catalog or the web, in the order given.
  static HistoryEntries recentlyViewed(const HistoryEntries& history);

Q_SIGNALS:
  void homeChanged();
  void searchQueryChanged();
  void searchChanged();
  void discoverChanged();
  void searchScreenWanted();

private:
  // What a request came to: items, or else the sentence.
  struct Answer {
    std::optional<MediaItems> items;
    QString error;
  };
  struct HomeLoad;

  // `done` runs on the main thread, and not at all once the state is gone.
  void request(const CatalogQuery& query, std::function<void(Answer)> done);
  static Flow<> ask(std::weak_ptr<bool> alive, Flow<MediaItems> search, WorkerStrand strand,
                    std::function<void(Answer)> done);
  void show(HomeLoad& load);

  IoPool& m_pool;
  Search m_search;
  FlowGroup m_flows;
  std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);

  MediaItems m_featured;
  MediaItems m_popular;
  bool m_homeLoading = false;
  std::optional<QString> m_homeError;
  QString m_searchQuery;
  MediaItems m_searchResults;
  bool m_searching = false;
  std::optional<QString> m_searchError;
  std::optional<Collection> m_collection;
  MediaItems m_discoverResults;
  bool m_discoverLoading = false;
};

} // namespace vellum
