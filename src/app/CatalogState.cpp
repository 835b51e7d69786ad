#include "app/CatalogState.h"
#include "app/Suggestions.h"
#include <array>

namespace vellum {

// Both shelves on their way: their answers are shown in the order of the shelves.
struct CatalogState::HomeLoad {
  std::array<std::optional<Answer>, 2> answers{};
  std::size_t shown = 0;
};

CatalogState::CatalogState(MainLoop& main, IoPool& pool, Search search)
    : m_pool(pool), m_search(std::move(search)), m_flows(main.executor()) {}

CatalogState::~CatalogState() { m_flows.cancelAll(); }

std::vector<Collection> CatalogState::collections() {
  const auto named = [](const char* id, const QString& title, const char* query) {
    return Collection{QLatin1String(id), title, QLatin1String(query)};
  };
  return {named("feature_films", tr("Feature Films"), "collection:(feature_films)"),
          named("silent", tr("Silent Films"), "collection:(silent_films)"),
          named("noir", tr("Film Noir"), "collection:(film_noir)"),
          named("scifi", tr("Sci-Fi & Horror"), "collection:(SciFi_Horror)"),
          named("classic_tv", tr("Classic TV"), "collection:(classic_tv)"),
          named("animation", tr("Animation"), "collection:(animationandcartoons)"),
          named("prelinger", tr("Prelinger Archives"), "collection:(prelinger)"),
          named("comedy", tr("Comedy"), "collection:(comedy_films)")};
}

void CatalogState::loadHome() {
  if (!m_featured.empty() && !m_popular.empty()) return;
  m_homeLoading = true;
  m_homeError.reset();
  Q_EMIT homeChanged();
  const std::array queries{
      CatalogQuery{
          .text = {}, .extra = QStringLiteral("collection:(feature_films)"), .rows = kShelfRows},
      CatalogQuery{
          .text = {}, .extra = {}, .sort = QStringLiteral("week desc"), .rows = kShelfRows}};
  const auto load = std::make_shared<HomeLoad>();
  for (std::size_t shelf = 0; shelf < queries.size(); ++shelf)
    request(queries[shelf], [this, load, shelf](Answer answer) {
      load->answers[shelf] = std::move(answer);
      show(*load);
    });
}

void CatalogState::show(HomeLoad& load) {
  const std::array shelves{&m_featured, &m_popular};
  while (load.shown < shelves.size() && load.answers[load.shown]) {
    const Answer& answer = *load.answers[load.shown];
    if (answer.items)
      *shelves[load.shown] = *answer.items;
    else
      m_homeError = answer.error;
    ++load.shown;
  }
  if (load.shown == shelves.size()) m_homeLoading = false;
  Q_EMIT homeChanged();
}

void CatalogState::setSearchQuery(const QString& query) {
  if (m_searchQuery == query) return;
  m_searchQuery = query;
  Q_EMIT searchQueryChanged();
}

void CatalogState::runSearch() {
  const QString text = m_searchQuery.trimmed();
  if (text.isEmpty()) return;
  m_searching = true;
  m_searchError.reset();
  Q_EMIT searchChanged();
  request({.text = text, .extra = {}, .rows = kResultRows}, [this](Answer answer) {
    if (!answer.items) m_searchError = answer.error;
    m_searchResults = std::move(answer.items).value_or(MediaItems());
    m_searching = false;
    Q_EMIT searchChanged();
  });
}

void CatalogState::searchFor(const QString& text) {
  setSearchQuery(text);
  Q_EMIT searchScreenWanted();
  runSearch();
}

void CatalogState::loadCollection(const Collection& collection) {
  m_collection = collection;
  m_discoverLoading = true;
  Q_EMIT discoverChanged();
  request({.text = {}, .extra = collection.query, .rows = kResultRows},
          [this, collection](Answer answer) {
            if (m_collection != collection) return;
            m_discoverResults = std::move(answer.items).value_or(MediaItems());
            m_discoverLoading = false;
            Q_EMIT discoverChanged();
          });
}

QStringList CatalogState::suggestions() const {
  return frequentSubjects({&m_featured, &m_popular}, kSuggestions);
}

HistoryEntries CatalogState::recentlyViewed(const HistoryEntries& history) {
  HistoryEntries recent;
  for (const HistoryEntry& entry : history)
    if (!entry.isLocal && recent.size() < kRecentRows) recent.push_back(entry);
  return recent;
}

void CatalogState::request(const CatalogQuery& query, std::function<void(Answer)> done) {
  m_flows.spawn(ask(m_alive, m_search(query), m_pool.makeWorkerStrand(), std::move(done)));
}

Flow<> CatalogState::ask(std::weak_ptr<bool> alive, Flow<MediaItems> search, WorkerStrand strand,
                         std::function<void(Answer)> done) {
  Answer answer;
  try {
    answer.items = co_await flowOn(strand, std::move(search));
  } catch (const std::exception& error) {
    answer.error = QString::fromUtf8(error.what());
  }
  if (!alive.expired()) done(std::move(answer));
}

} // namespace vellum
