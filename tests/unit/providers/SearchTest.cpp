#include "Shown.h"
#include "net/NetError.h"
#include "providers/ProviderError.h"
#include "providers/ProviderRegistry.h"
#include "providers/SearchAggregator.h"
#include "providers/SearchMerge.h"
#include "providers/TorznabParser.h"
#include "support/RunFlow.h"
#include "support/ScriptedTransport.h"
#include "world/MainThread.h"
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;
namespace {

using State = ProviderStatus::State;
using Count = std::optional<qint64>;

QString text(const char* latin1) { return QString::fromLatin1(latin1); }

TorrentResult row(const char* hash, const char* source, Count seeders = {}, Count size = {}) {
  TorrentResult result;
  result.id = result.title = text(source) + text(hash);
  result.infoHash = text(hash);
  result.sources = {text(source)};
  result.seeders = seeders;
  result.size = size;
  return result;
}

TEST(SearchMerge, FoldsRowsOfOneHash) {
  TorrentResult late = row("AB", "B", 7, 20);
  late.magnet = text("magnet:?");
  late.leechers = 1;
  late.torrentURL = QUrl(text("http://t/"));
  late.pageURL = QUrl(text("http://p/"));
  late.year = text("1999");
  TorrentResult item;
  item.id = text("archive:ab");
  EXPECT_EQ(shown(mergeResults({row("ab", "C", 5), item, late, row("cd", "A"),
                                row("Ab", "A", {}, 30), row("ab", "C", 6), item})),
            "Cab; Cab; A,B,C; size=20; seeders=7; leechers=1; hash=ab; magnet=magnet:?; "
            "torrent=http://t/; page=http://p/\narchive:ab; ; \nAcd; Acd; A; hash=cd");
}

// A provider that answers when it is told to.
class GatedProvider final : public TorrentSearchProvider {
public:
  using Outcome = std::function<TorrentResults()>;
  GatedProvider(const char* name, Outcome outcome)
      : TorrentSearchProvider(named(name)), m_outcome(std::move(outcome)) {}

  Flow<TorrentResults> search(QString query) const override {
    setAsked(query);
    wasOnMain = QThread::currentThread() == QCoreApplication::instance()->thread();
    ++running;
    const Leaving leaving{running};
    while (!open) co_await sleepFor(std::chrono::milliseconds(1));
    co_return m_outcome();
  }

  mutable std::atomic<bool> open = false;
  mutable std::atomic<int> running = 0;
  mutable std::atomic<bool> wasOnMain = false;
  QString asked() const {
    const std::lock_guard lock(m_mutex);
    return m_asked;
  }

private:
  void setAsked(const QString& query) const {
    const std::lock_guard lock(m_mutex);
    m_asked = query;
  }
  struct Leaving {
    std::atomic<int>& count;
    ~Leaving() { --count; }
  };
  static ProviderConfig named(const char* name) {
    ProviderConfig config;
    config.name = text(name);
    return config;
  }
  Outcome m_outcome;
  mutable std::mutex m_mutex; // guards m_asked
  mutable QString m_asked;
};

struct SearchAggregatorTest : testing::Test, MainThread {
  std::shared_ptr<GatedProvider> provider(const char* name, GatedProvider::Outcome outcome) {
    auto made = std::make_shared<GatedProvider>(name, std::move(outcome));
    providers.push_back(made);
    return made;
  }
  const ProviderStatus& status(std::size_t index) const { return aggregator->statuses()[index]; }
  bool answered(std::size_t index) {
    return turnUntil([&] { return status(index).state != State::Pending; });
  }
  bool finished() {
    return turnUntil([&] { return !aggregator->isSearching(); });
  }

  IoPool pool;
  TorrentSearchProviders providers;
  std::optional<SearchAggregator> aggregator{std::in_place, main, pool};
};

TEST_F(SearchAggregatorTest, ShowsResultsAsEachProviderAnswers) {
  const auto slow = provider("A", [] { return TorrentResults{row("ab", "A", 1)}; });
  const auto quick = provider("B", [] {
    return TorrentResults{row("AB", "B", 9), row("cd", "B")};
  });
  aggregator->search(text("  words "), providers);
  EXPECT_TRUE(aggregator->isSearching() && status(0).state == State::Pending);
  EXPECT_EQ(aggregator->lastQuery(), text("words"));
  quick->open = true;
  ASSERT_TRUE(answered(1));
  EXPECT_EQ(aggregator->results().size(), 2U);
  EXPECT_TRUE(aggregator->isSearching() && status(0).state == State::Pending);
  slow->open = true;
  ASSERT_TRUE(finished());
  EXPECT_EQ(aggregator->results()[0].sources, QStringList({text("A"), text("B")}));
  EXPECT_EQ(aggregator->results()[0].seeders, 9);
  EXPECT_EQ(status(1).count, 2U);
  EXPECT_EQ(slow->asked(), text("words"));
  EXPECT_FALSE(slow->wasOnMain || quick->wasOnMain);
}

TEST_F(SearchAggregatorTest, AFailureCostsItsOwnRow) {
  struct Case {
    GatedProvider::Outcome outcome;
    const char* sentence;
    bool offersSettings;
  };
  const std::vector<Case> cases{
      {[]() -> TorrentResults {
         throw ProviderError::unreachable(text("P"), text("h"), text("d"));
       },
       "P unreachable at h. Check the address in Settings \xe2\x86\x92 Providers", true},
      {[]() -> TorrentResults { throw NetError::timedOut(); }, "Timed out", false},
      {[]() -> TorrentResults { throw NetError::http(500); }, "HTTP 500", false},
      {[]() -> TorrentResults { throw IndexerError(1, text("Wrong key")); }, "Wrong key", false}};
  for (const Case& one : cases) provider("P", one.outcome)->open = true;
  provider("empty", [] { return TorrentResults(); })->open = true;
  provider("good", [] { return TorrentResults{row("ab", "A")}; })->open = true;
  aggregator->search(text("x"), providers);
  ASSERT_TRUE(finished());
  for (std::size_t i = 0; i < cases.size(); ++i) {
    EXPECT_EQ(status(i).state, State::Failed);
    EXPECT_EQ(status(i).text, QString::fromUtf8(cases[i].sentence));
    EXPECT_EQ(status(i).offersSettings, cases[i].offersSettings);
  }
  EXPECT_TRUE(status(4).state == State::Ok && status(4).count == 0);
  EXPECT_EQ(aggregator->results().size(), 1U);
  aggregator->search(text("y"), {});
  EXPECT_FALSE(aggregator->isSearching());
  EXPECT_TRUE(aggregator->results().empty() && aggregator->statuses().empty());
}

TEST_F(SearchAggregatorTest, ASupersededSearchNeverWrites) {
  const auto stuck = provider("stuck", [] { return TorrentResults{row("ab", "A")}; });
  const auto late = provider("late", [] { return TorrentResults{row("cd", "A")}; });
  aggregator->search(text("first"), providers);
  ASSERT_TRUE(turnUntil([&] { return stuck->running == 1 && late->running == 1; }));
  late->open = true; // its answer is under way when the search is superseded
  while (late->running != 0) std::this_thread::yield();
  late->open = false;
  aggregator->search(text("second"), providers);
  const auto asksForSecond = [](const auto& one) {
    return one->running == 1 && one->asked() == text("second");
  };
  EXPECT_TRUE(turnUntil([&] { return asksForSecond(stuck) && asksForSecond(late); }));
  QCoreApplication::processEvents();
  EXPECT_TRUE(aggregator->results().empty());
  for (const ProviderStatus& one : aggregator->statuses()) EXPECT_EQ(one.state, State::Pending);

  aggregator->search(text("third"), {stuck});
  aggregator->search(text(" \n"), {}); // cancels, and leaves all that is shown as it stands
  EXPECT_TRUE(turnUntil([&] { return stuck->running == 0; }));
  QCoreApplication::processEvents();
  EXPECT_TRUE(aggregator->isSearching());
  EXPECT_EQ(status(0).state, State::Pending);
  EXPECT_EQ(aggregator->lastQuery(), text("third"));

  aggregator->search(text("fourth"), {stuck, stuck}); // two searches of one provider at once
  ASSERT_TRUE(turnUntil([&] { return stuck->running == 2; }));
  aggregator.reset();
  EXPECT_TRUE(turnUntil([&] { return stuck->running == 0; }));
}

TEST(ProviderRegistry, KeepsItsListInTheSettings) {
  PreferenceStore memory;
  SettingsStore settings(memory);
  settings.setProviders({});
  ScriptedTransport net;
  net.hosts[text("h")] = reply(R"([{"name":"n","info_hash":")" + QByteArray(40, 'a') + "\"}]");
  const FetchData fetch = [](QUrl, std::chrono::milliseconds) -> Flow<QByteArray> {
    co_return R"({"response":{"docs":[{"identifier":"i","title":"t","year":1999,"licenseurl":"l"}]}})";
  };
  ProviderRegistry registry(settings, memory, net.transport(), ArchiveOrgProvider(fetch));
  int changes = 0;
  QObject::connect(&registry, &ProviderRegistry::changed, &registry, [&] { ++changes; });
  ProviderConfig indexer{.name = text("I"),
                         .kind = ProviderKind::Apibay,
                         .baseURL = text("http://h"),
                         .apiKey = {},
                         .mirrors = {}};
  ProviderConfig catalog{.name = text("C"), .baseURL = {}, .apiKey = {}, .mirrors = {}};
  registry.add(indexer);
  registry.add(catalog);
  registry.setEnabled(QUuid::createUuid(), false);
  EXPECT_EQ(changes, 2);
  const auto enabled = registry.enabledProviders();
  ASSERT_EQ(enabled.size(), 2U);
  EXPECT_EQ(runFlow(enabled[0]->search(text("x"))).front().sources, QStringList(text("I")));
  EXPECT_EQ(shown(runFlow(enabled[1]->search(text("x")))),
            "archive:i; t; C; archive=i; page=https://archive.org/details/i; year=1999; license=l");
  registry.setEnabled(indexer.id, false);
  EXPECT_EQ(registry.enabledProviders().size(), 1U);
  registry.remove(catalog.id);
  EXPECT_TRUE(registry.enabledProviders().empty());
  EXPECT_EQ(settings.providers().size(), 1U);
  EXPECT_EQ(changes, 4);
}

} // namespace
} // namespace vellum::test
